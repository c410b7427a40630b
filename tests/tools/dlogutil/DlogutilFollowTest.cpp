#include "orvo/testing/Process.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>

// Without -d, dlogutil prints what is appended to its one buffer until a signal stops it.
TEST(DlogutilFollowTest, PrintsNewRecordsAsTheyComeAndStopsCleanlyOnSignals) {
    const Orvo::Testing::TestDevice device;
    const std::string script =
        "log=$ORVO_DEVICE_DIR/log; out=$ORVO_DEVICE_DIR/followed\n"
        "record() { printf '%s\\t1\\t1\\t4\\tT\\t%s\\n' \"$(date +%s.%N)\" \"$2\" >> $log/$1.log; }\n"
        "await() { for i in $(seq 600); do grep -q \"$1\" $out && return; sleep 0.1; done; }\n"
        "record apps before; \"$0\" -v raw -b main -b apps > $out & follower=$!; await before\n"
        "record main 'main not followed'; record apps 'apps after'; await 'apps after'\n"
        "kill -$1 $follower; wait $follower; echo \"exit $?\"; cat $out; rm $out $log/*\n";
    for (const char* signal : {"INT", "TERM"})
        EXPECT_EQ("exit 0\nbefore\napps after\n",
                  Orvo::Testing::runProcess({"sh", "-c", script, Orvo::Testing::toolPath("dlogutil"), signal}).out)
            << signal;
}

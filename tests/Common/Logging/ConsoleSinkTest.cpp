// The console sink, run in child processes that see their own /dev/console.
#include "ChildProcess.h"
#include "Common/Logging/Logging.h"
#include "orvo/testing/LogLines.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

namespace Orvo {
namespace Testing {
namespace {

using namespace Orvo::Common::Logging;

void writeToConsole(const char* text) {
    std::string copy = text;
    consoleSink(kLogTag, FTL, &copy[0]);
}

// The expected line after the thread text, which only the child knows.
void expectDirectLine(const std::string& output, const std::string& before, const std::string& text) {
    const std::string head = before + "orvotv.Orvo: Direct [FTL][";
    ASSERT_EQ(output.compare(0, head.size(), head), 0) << output;
    const std::string tail = "] " + text + "\n";
    ASSERT_GE(output.size(), head.size() + tail.size()) << output;
    EXPECT_EQ(output.substr(output.size() - tail.size()), tail) << output;
    const LogLine thread = parseLogLine("[][" + output.substr(head.size(), output.size() - head.size() - tail.size()) +
                                        "][1][FTL] x");
    EXPECT_TRUE(thread.wellFormed) << output;
}

TEST(ConsoleSinkTest, WithoutAConsoleTheLineGoesToStandardError) {
    const ChildResult child = runInChild([] {
        if (!hideConsole()) std::_Exit(kChildCannotRun);
        writeToConsole("console text");
    });
    if (child.exitCode == kChildCannotRun) GTEST_SKIP() << "cannot hide /dev/console (needs a private mount namespace)";
    ASSERT_EQ(child.exitCode, 0) << child.err;
    expectDirectLine(child.err, "Cannot open /dev/console\n", "console text");
}

TEST(ConsoleSinkTest, WritesTheLineOnTheConsole) {
    TemporaryDirectory directory;
    const std::string console = directory.path() + "/console";
    std::ofstream(console).close();
    const ChildResult child = runInChild([&console] {
        if (!redirectConsole(console)) std::_Exit(kChildCannotRun);
        writeToConsole("to the console");
    });
    if (child.exitCode == kChildCannotRun) GTEST_SKIP() << "cannot bind a file on /dev/console (needs a private mount namespace)";
    ASSERT_EQ(child.exitCode, 0) << child.err;
    EXPECT_EQ(child.err, "");
    std::ifstream in(console);
    expectDirectLine(std::string(std::istreambuf_iterator<char>(in), {}), "", "to the console");
}

} // namespace
} // namespace Testing
} // namespace Orvo

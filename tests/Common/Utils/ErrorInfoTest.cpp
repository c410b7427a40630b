// Exceptions and assertions: errno texts, support codes, the rethrow trail, and failed assertions
// (ours and Boost's) with their console line, here the console sink's fallback to standard error,
// their log line and the abort, in every build.
#include "ChildProcess.h"
#include "Common/Utils/ErrorInfo.h"
#include "Common/Utils/OrvoAssert.h"
#include "orvo/testing/LogLines.h"
#include "orvo/testing/UserModeEmulation.h"

#include <boost/shared_ptr.hpp>
#include <dlog.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <cstring>
#include <stdexcept>
#include <string>

namespace Orvo::Testing {
namespace {

using namespace Orvo::Common::Utils;
using namespace ::testing;

// The text of one piece of error information, or "(none)".
template <typename ErrorInfo>
std::string infoOf(const boost::exception& exception) {
    const auto* value = boost::get_error_info<ErrorInfo>(exception);
    return value != nullptr ? std::string(*value) : "(none)";
}

TEST(ErrorInfoTest, ErrnoTextNamesTheNumberAndTheSystemMessage) {
    EXPECT_EQ(errnoText(2), std::string(" errno=2 (") + std::strerror(2) + ")");
}

TEST(ErrorInfoTest, NewSupportCodesStandBeforeExistingOnesAndReplaceAnEmptyOne) {
    GenericException exception;
    extendSupportCode(exception, "inner");
    extendSupportCode(exception, "outer");
    EXPECT_EQ(infoOf<errinfo_supportcode>(exception), "outer-inner");
    GenericException emptyCode;
    emptyCode << errinfo_supportcode("");
    extendSupportCode(emptyCode, "code");
    EXPECT_EQ(infoOf<errinfo_supportcode>(emptyCode), "code");
}

// Throws what `thrower` throws, passed on once with `context`.
template <typename Thrower>
void passOn(Thrower thrower, const std::string& context) {
    try {
        thrower();
    } catch (...) {
        RethrowExceptionStream(boost::current_exception()) << context << ' ' << 1;
    }
}

// Thrown without a location, an exception cannot be copied as it is: Boost holds it as
// boost::unknown_exception, which keeps its error information and gets the trail all the same.
TEST(RethrowExceptionStreamTest, TrailListsTheNewestContextFirst) {
    TestDevice device;
    const std::function<void()> throwers[] = {
        [] { ORVO_THROW(GenericException() << errinfo_description("disk full")); },
        [] { throw GenericException() << errinfo_description("disk full"); }};
    for (const auto& thrower : throwers) {
        EXPECT_THAT([&] { passOn([&] { passOn(thrower, "A"); }, "B"); },
                    Throws<boost::exception>(AllOf(ResultOf(infoOf<errinfo_rethrows>, "B 1\nA 1"),
                                                   ResultOf(infoOf<errinfo_description>, "disk full"))));
    }
    EXPECT_THAT(loggedTexts(device, "INF"), IsEmpty());
}

TEST(RethrowExceptionStreamTest, ThreadInterruptionTravelsWithTheTrail) {
    EXPECT_THAT([] { passOn([] { throw boost::thread_interrupted(); }, "waiting for the download"); },
                Throws<thread_interrupted>(
                    AllOf(ResultOf(infoOf<errinfo_rethrows>, "waiting for the download 1"),
                          ResultOf(infoOf<boost::throw_function>, HasSubstr("~RethrowExceptionStream")))));
}

TEST(RethrowExceptionStreamTest, UnknownExceptionIsLoggedAndRethrownUnchanged) {
    TestDevice device;
    EXPECT_THAT([] { passOn([] { throw std::runtime_error("plain"); }, "while copying"); },
                ThrowsMessage<std::runtime_error>("plain"));
    EXPECT_EQ(loggedTexts(device, "INF"), std::vector<std::string>{"Rethrowing unknown exception: while copying 1"});
}

const int kAssertLine = __LINE__ + 1;
void failPlain() { ORVO_ASSERT(1 + 1 == 3); }
void failWithMessage() { ORVO_ASSERT_MSG(false, "settings lost"); }
void dereferenceEmptySharedPointer() { static_cast<void>(*boost::shared_ptr<int>()); }
void rethrowNothing() { RethrowExceptionStream(boost::exception_ptr()) << "never"; }

TEST(OrvoAssertDeathTest, FailureWritesConsoleAndLogThenAborts) {
    if (!childrenCanHideConsole()) GTEST_SKIP() << "cannot keep the assertion off the real /dev/console";
    if (runsUnderUserModeEmulation())
        GTEST_SKIP() << "qemu-user adds its own \"uncaught target signal\" line to the dying child's stderr";
    const struct {
        void (*fail)();
        std::string text;
    } cases[] = {
        // the text as a regular expression
        {failPlain,
         "ASSERTION FAILED: 1 \\+ 1 == 3, .*failPlain\\(\\), ErrorInfoTest\\.cpp:" + std::to_string(kAssertLine)},
        {failWithMessage,
         "ASSERTION FAILED: false, .*failWithMessage\\(\\), ErrorInfoTest\\.cpp:[0-9]+\nMESSAGE: settings lost"},
        {dereferenceEmptySharedPointer, "ASSERTION FAILED: px != 0, .*shared_ptr\\.hpp:[0-9]+"},
        {rethrowNothing, "ASSERTION FAILED: excPtr, .*RethrowExceptionStream\\.cpp:[0-9]+"}};
    TestDevice device;
    for (const auto& testCase : cases) {
        SCOPED_TRACE(testCase.text);
        device.clearLogs();
        EXPECT_EXIT(
            {
                hideConsole();
                testCase.fail();
            },
            KilledBySignal(SIGABRT),
            "^Cannot open /dev/console\norvotv\\.Orvo: Direct \\[FTL\\]\\[[0-9]+ [^]]*\\] " + testCase.text + "\n$");
        const std::vector<LogLine> lines = logLines(device, LOG_ID_SYSTEM);
        ASSERT_EQ(lines.size(), 1U);
        EXPECT_EQ(lines[0].level, "FTL");
        EXPECT_THAT(lines[0].text, MatchesRegex("OrvoAssert\\.cpp:[0-9]+>" + testCase.text));
    }
}

} // namespace
} // namespace Orvo::Testing

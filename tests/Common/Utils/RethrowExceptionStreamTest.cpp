// Passing exceptions on with context: the trail, thread interruptions and unknown exceptions.
#include "ChildProcess.h"
#include "Common/Utils/ErrorInfo.h"
#include "orvo/testing/LogLines.h"

#include <dlog.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace Orvo {
namespace Testing {
namespace {

using namespace Orvo::Common::Utils;

// Throws what `thrower` throws, passed on once with `context`.
template <typename Thrower>
void passOn(Thrower thrower, const std::string& context) {
    try {
        thrower();
    } catch (...) {
        RethrowExceptionStream(boost::current_exception()) << context << ' ' << 1;
    }
}

void throwGeneric() { ORVO_THROW(GenericException() << errinfo_description("disk full")); }

TEST(RethrowExceptionStreamTest, TrailListsTheNewestContextFirst) {
    try {
        passOn([] { passOn(throwGeneric, "A"); }, "B");
        FAIL() << "nothing rethrown";
    } catch (const GenericException& e) {
        ASSERT_NE(boost::get_error_info<errinfo_rethrows>(e), nullptr);
        EXPECT_EQ(*boost::get_error_info<errinfo_rethrows>(e), "B 1\nA 1");
        EXPECT_EQ(*boost::get_error_info<errinfo_description>(e), "disk full");
    }
}

TEST(RethrowExceptionStreamTest, ThreadInterruptionTravelsWithTheTrail) {
    try {
        passOn([] { throw boost::thread_interrupted(); }, "waiting for the download");
        FAIL() << "nothing rethrown";
    } catch (const thread_interrupted& e) {
        EXPECT_EQ(*boost::get_error_info<errinfo_rethrows>(e), "waiting for the download 1");
        EXPECT_NE(std::string(*boost::get_error_info<boost::throw_function>(e)).find("~RethrowExceptionStream"),
                  std::string::npos);
        EXPECT_STREQ(*boost::get_error_info<boost::throw_file>(e) +
                         std::string(*boost::get_error_info<boost::throw_file>(e)).rfind('/') + 1,
                     "RethrowExceptionStream.cpp");
    }
}

TEST(RethrowExceptionStreamTest, UnknownExceptionIsLoggedAndRethrownUnchanged) {
    TestDevice device;
    EXPECT_THROW(
        {
            try {
                passOn([] { throw std::runtime_error("plain"); }, "while copying");
            } catch (const std::runtime_error& e) {
                EXPECT_STREQ(e.what(), "plain");
                throw;
            }
        },
        std::runtime_error);
    const std::vector<LogLine> lines = logLines(device, LOG_ID_MAIN);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].level, "INF");
    const std::string& text = lines[0].text;
    EXPECT_EQ(text.substr(text.find('>') + 1), "Rethrowing unknown exception: while copying 1");
}

TEST(RethrowExceptionStreamDeathTest, NullExceptionPointerIsAnAssertion) {
    if (!childrenCanHideConsole()) GTEST_SKIP() << "cannot keep the assertion off the real /dev/console";
    TestDevice device;
    EXPECT_DEATH(
        {
            hideConsole();
            RethrowExceptionStream(boost::exception_ptr()) << "never";
        },
        "ASSERTION FAILED: excPtr, ");
}

} // namespace
} // namespace Testing
} // namespace Orvo

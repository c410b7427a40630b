// Exceptions with error information: throw sites, support codes and errno texts.
#include "Common/Utils/ErrorInfo.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace Orvo {
namespace Testing {
namespace {

using namespace Orvo::Common::Utils;

TEST(ErrnoTextTest, NamesTheNumberAndTheSystemMessage) {
    EXPECT_EQ(errnoText(ENOENT), std::string(" errno=2 (") + std::strerror(ENOENT) + ")");
    EXPECT_EQ(errnoText(-7).substr(0, 11), " errno=-7 (");
}

TEST(SupportCodeTest, NewCodesStandBeforeExistingOnes) {
    GenericException exception;
    extendSupportCode(exception, "inner");
    EXPECT_EQ(*boost::get_error_info<errinfo_supportcode>(exception), "inner");
    extendSupportCode(exception, "outer");
    EXPECT_EQ(*boost::get_error_info<errinfo_supportcode>(exception), "outer-inner");
}

TEST(SupportCodeTest, AnEmptyCodeIsReplaced) {
    GenericException exception;
    exception << errinfo_supportcode("");
    extendSupportCode(exception, "code");
    EXPECT_EQ(*boost::get_error_info<errinfo_supportcode>(exception), "code");
}

} // namespace
} // namespace Testing
} // namespace Orvo

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

TEST(ThrowSiteTest, RecordsLocationAndTagsAndIsClonable) {
    boost::exception_ptr held;
    const int line = __LINE__ + 2;
    try {
        ORVO_THROW(GenericException() << errinfo_errorcode(-5) << errinfo_subject("sink"));
    } catch (...) {
        held = boost::current_exception();
    }
    try {
        boost::rethrow_exception(held);
        FAIL() << "nothing rethrown";
    } catch (const GenericException& e) {
        ASSERT_NE(boost::get_error_info<errinfo_errorcode>(e), nullptr);
        EXPECT_EQ(*boost::get_error_info<errinfo_errorcode>(e), -5);
        EXPECT_EQ(*boost::get_error_info<errinfo_subject>(e), "sink");
        EXPECT_EQ(*boost::get_error_info<boost::throw_line>(e), line);
        EXPECT_NE(std::string(*boost::get_error_info<boost::throw_file>(e)).find("ErrorInfoTest.cpp"), std::string::npos);
        EXPECT_EQ(boost::get_error_info<errinfo_description>(e), nullptr);
        const std::string diagnostic = boost::diagnostic_information(e);
        EXPECT_NE(diagnostic.find("Dynamic exception type: "), std::string::npos) << diagnostic;
        EXPECT_NE(diagnostic.find("tag_errinfo_subject"), std::string::npos) << diagnostic;
    }
}

TEST(ThrowSiteTest, FixedFunctionTextReplacesTheCompilersSpelling) {
    try {
        ORVO_THROW_IN("int Orvo::read()", GenericException());
    } catch (const GenericException& e) {
        EXPECT_STREQ(*boost::get_error_info<boost::throw_function>(e), "int Orvo::read()");
    }
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

#include "Platform/SystemAPI/SystemInfoSystemAPI/ISystemInfo.h"

#include "Common/Utils/ErrorInfo.h"
#include "LogLines.h"
#include "Platform/SystemAPI/VconfSystemAPI/IVConfTizen.h"
#include "orvo/testing/TestDevice.h"

#include <vconf.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>

namespace Orvo {
namespace Platform {
namespace {

using Common::Utils::GenericException;
using Common::Utils::errinfo_description;
using Common::Utils::errinfo_stream;
using Testing::loggedTexts;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string thrownFunction(const boost::exception& e) {
    const char* const* function = boost::get_error_info<boost::throw_function>(e);
    return function == nullptr ? "" : *function;
}

struct SystemInfoErrorCase {
    int error;
    const char* description;  // null when the text travels as errinfo_stream
    const char* stream;
};

void PrintTo(const SystemInfoErrorCase& errorCase, std::ostream* out) {
    *out << errorCase.error;
}

class CheckSystemInfoErrorTest : public ::testing::TestWithParam<SystemInfoErrorCase> {};

TEST_P(CheckSystemInfoErrorTest, ThrowsGenericExceptionWithTheTagOfTheError) {
    const SystemInfoErrorCase& expected = GetParam();
    try {
        ISystemInfo::checkSystemInfoError(expected.error);
        FAIL() << "no exception";
    } catch (const GenericException& e) {
        const std::string* description = boost::get_error_info<errinfo_description>(e);
        const std::string* stream = boost::get_error_info<errinfo_stream>(e);
        if (expected.description != nullptr) {
            ASSERT_NE(nullptr, description);
            EXPECT_EQ(expected.description, *description);
            EXPECT_EQ(nullptr, stream);
        } else {
            ASSERT_NE(nullptr, stream);
            EXPECT_EQ(expected.stream, *stream);
            EXPECT_EQ(nullptr, description);
        }
        EXPECT_EQ("void Orvo::Platform::ISystemInfo::checkSystemInfoError(int)", thrownFunction(e));
        ASSERT_NE(nullptr, boost::get_error_info<boost::throw_file>(e));
        EXPECT_THAT(*boost::get_error_info<boost::throw_file>(e), ::testing::EndsWith("CSystemInfo.cpp"));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Errors, CheckSystemInfoErrorTest,
    ::testing::Values(
        SystemInfoErrorCase{-22, "Error during getting system-info value: SYSTEM_INFO_ERROR_INVALID_PARAMETER", nullptr},
        SystemInfoErrorCase{-5, "Error during getting system-info value: SYSTEM_INFO_ERROR_IO_ERROR", nullptr},
        SystemInfoErrorCase{-3, nullptr, "Error during getting system-info value: unrecognized error value: -3"},
        SystemInfoErrorCase{-13, nullptr, "Error during getting system-info value: unrecognized error value: -13"},
        SystemInfoErrorCase{7, nullptr, "Error during getting system-info value: unrecognized error value: 7"}));

TEST(CheckSystemInfoError, SuccessReturns) {
    EXPECT_NO_THROW(ISystemInfo::checkSystemInfoError(0));
}

class SystemInfoTest : public ::testing::Test {
protected:
    Testing::TestDevice device;
};

TEST_F(SystemInfoTest, ReadsEachTypeFromTheService) {
    device.setConf("system-info.5001", "int -2147483648");
    device.setConf("system-info.5002", "bool true");
    device.setConf("system-info.5003", "string T-ABC9-1302.5 with blanks");
    device.setConf("system-info.5004", "string ");
    EXPECT_EQ(-2147483647 - 1, ISystemInfo::getSystemInfoInt(5001));
    EXPECT_TRUE(ISystemInfo::getSystemInfoBool(5002));
    EXPECT_EQ("T-ABC9-1302.5 with blanks", ISystemInfo::getSystemInfoString(5003));
    EXPECT_EQ("", ISystemInfo::getSystemInfoString(5004));
}

TEST_F(SystemInfoTest, FailedReadsThrowThroughTheErrorMapping) {
    device.setConf("system-info.5001", "error -5");
    device.setConf("system-info.5002", "int 1");
    try {
        ISystemInfo::getSystemInfoInt(5001);
        FAIL() << "no exception";
    } catch (const GenericException& e) {
        ASSERT_NE(nullptr, boost::get_error_info<errinfo_description>(e));
        EXPECT_EQ("Error during getting system-info value: SYSTEM_INFO_ERROR_IO_ERROR",
                  *boost::get_error_info<errinfo_description>(e));
    }
    // A key of another type and an unknown key are invalid parameters.
    EXPECT_THROW(ISystemInfo::getSystemInfoBool(5002), GenericException);
    EXPECT_THROW(ISystemInfo::getSystemInfoString(5002), GenericException);
    EXPECT_THROW(ISystemInfo::getSystemInfoString(5999), GenericException);
}

TEST_F(SystemInfoTest, TwoLetterCountryCodeIsReturnedAsStored) {
    ASSERT_EQ(0, vconf_set_str("db/comss/countrycode", "PL"));
    EXPECT_EQ("PL", ISystemInfo::getCountryCode());
    EXPECT_THAT(loggedTexts(device, "DBG"), ElementsAre("Debug only log: CountryCode is PL"));
    EXPECT_THAT(loggedTexts(device, "WRN"), IsEmpty());
}

TEST_F(SystemInfoTest, CountryCodeOfAnotherLengthBecomesEmpty) {
    for (const char* stored : {"DEU", "D", ""}) {
        device.clearLogs();
        ASSERT_EQ(0, vconf_set_str("db/comss/countrycode", stored));
        EXPECT_EQ("", ISystemInfo::getCountryCode()) << stored;
        EXPECT_THAT(loggedTexts(device, "DBG"), ElementsAre(std::string("Debug only log: CountryCode is ") + stored));
        EXPECT_THAT(loggedTexts(device, "WRN"),
                    ElementsAre("CountryCode value taken from vconf has not expected length"));
    }
}

TEST_F(SystemInfoTest, MissingCountryCodeWarnsTwice) {
    ASSERT_EQ(0, vconf_unset("db/comss/countrycode"));
    EXPECT_EQ("", ISystemInfo::getCountryCode());
    EXPECT_THAT(loggedTexts(device, "WRN"),
                ElementsAre("vconf_get failed while trying to access key: db/comss/countrycode, return default value",
                            "CountryCode value taken from vconf has not expected length"));
}

struct IdentityCase {
    const char* key;
    std::function<std::string()> read;
    const char* debugText;  // followed by the value
    const char* emptyDescription;
    const char* function;
};

void PrintTo(const IdentityCase& identity, std::ostream* out) {
    *out << identity.key;
}

class IdentityTest : public ::testing::TestWithParam<IdentityCase> {
protected:
    Testing::TestDevice device;
};

TEST_P(IdentityTest, StoredValueIsReturnedAndLogged) {
    ASSERT_EQ(0, vconf_set_str(GetParam().key, "0123-abcd"));
    EXPECT_EQ("0123-abcd", GetParam().read());
    EXPECT_THAT(loggedTexts(device, "DBG"), ElementsAre(std::string(GetParam().debugText) + "0123-abcd"));
}

TEST_P(IdentityTest, EmptyValueThrowsFromTheOperation) {
    ASSERT_EQ(0, vconf_set_str(GetParam().key, ""));
    try {
        GetParam().read();
        FAIL() << "no exception";
    } catch (const GenericException& e) {
        ASSERT_NE(nullptr, boost::get_error_info<errinfo_description>(e));
        EXPECT_EQ(GetParam().emptyDescription, *boost::get_error_info<errinfo_description>(e));
        EXPECT_EQ(GetParam().function, thrownFunction(e));
    }
    EXPECT_THAT(loggedTexts(device, "DBG"), ElementsAre(GetParam().debugText));
}

TEST_P(IdentityTest, MissingValueThrowsVconfException) {
    ASSERT_EQ(0, vconf_unset(GetParam().key));
    EXPECT_THROW(GetParam().read(), VConfException);
}

INSTANTIATE_TEST_SUITE_P(
    Identity, IdentityTest,
    ::testing::Values(IdentityCase{"db/comss/corvelversion", &ISystemInfo::getFirmwareVersion,
                                   "Debug only log: FIRMWARE is ", "Firmware value taken from vconf is empty",
                                   "std::__cxx11::string Orvo::Platform::ISystemInfo::getFirmwareVersion()"},
                      IdentityCase{"db/comss/atoken", &ISystemInfo::getAtoken, "Debug only log: Atoken is ",
                                   "Atoken value taken from vconf is empty",
                                   "std::__cxx11::string Orvo::Platform::ISystemInfo::getAtoken()"},
                      IdentityCase{"db/comss/hwduid", &ISystemInfo::getDuid, "Debug only log: DUID is ",
                                   "DUID value taken from vconf is empty",
                                   "std::__cxx11::string Orvo::Platform::ISystemInfo::getDuid()"}),
    [](const ::testing::TestParamInfo<IdentityCase>& info) {
        return std::string(info.param.key).substr(std::string("db/comss/").size());
    });

} // namespace
} // namespace Platform
} // namespace Orvo

#include "Platform/SystemAPI/SystemInfoSystemAPI/ISystemInfo.h"

#include "orvo/testing/LogLines.h"
#include "Platform/SystemAPI/VconfSystemAPI/IVConfTizen.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Orvo {
namespace Platform {
namespace {

using Common::Utils::GenericException;
using Common::Utils::errinfo_description;
using Common::Utils::errinfo_stream;
using Testing::loggedTexts;
using ::testing::ElementsAre;

std::string textOrNull(const std::string* text) {
    return text == nullptr ? "<null>" : *text;
}

TEST(CheckSystemInfoErrorTest, NamedErrorsGiveADescriptionOthersAStreamText) {
    EXPECT_NO_THROW(ISystemInfo::checkSystemInfoError(0));
    const struct {
        int error;
        std::string description;
        std::string stream;
    } cases[] = {
        {-22, "Error during getting system-info value: SYSTEM_INFO_ERROR_INVALID_PARAMETER", "<null>"},
        {-5, "Error during getting system-info value: SYSTEM_INFO_ERROR_IO_ERROR", "<null>"},
        {-3, "<null>", "Error during getting system-info value: unrecognized error value: -3"},
    };
    for (const auto& expected : cases) {
        try {
            ISystemInfo::checkSystemInfoError(expected.error);
            ADD_FAILURE() << expected.error << " did not throw";
        } catch (const GenericException& e) {
            EXPECT_EQ(expected.description, textOrNull(boost::get_error_info<errinfo_description>(e)));
            EXPECT_EQ(expected.stream, textOrNull(boost::get_error_info<errinfo_stream>(e)));
            EXPECT_STREQ("void Orvo::Platform::ISystemInfo::checkSystemInfoError(int)",
                         *boost::get_error_info<boost::throw_function>(e));
        }
    }
}

TEST(SystemInfoTest, StringIsCopiedAndFailuresThrow) {
    Testing::TestDevice device;
    device.setConf("system-info.5001", "string T-ABC9-1302.5 with blanks");
    device.setConf("system-info.5002", "error -5");
    EXPECT_EQ("T-ABC9-1302.5 with blanks", ISystemInfo::getSystemInfoString(5001));
    EXPECT_THROW(ISystemInfo::getSystemInfoString(5002), GenericException);
    EXPECT_THROW(ISystemInfo::getSystemInfoInt(5001), GenericException);  // another type
}

TEST(SystemInfoTest, CountryCodeOfAnyOtherLengthThanTwoIsEmpty) {
    Testing::TestDevice device;
    for (const std::string stored : {"PL", "DEU", "D"}) {
        device.clearLogs();
        VConf<std::string>("db/comss/countrycode").set(stored);
        const bool valid = stored.size() == 2;
        EXPECT_EQ(valid ? stored : "", ISystemInfo::getCountryCode());
        EXPECT_THAT(loggedTexts(device, "DBG"), ElementsAre("Debug only log: CountryCode is " + stored));
        EXPECT_EQ(valid ? 0u : 1u, loggedTexts(device, "WRN").size());
    }
    device.clearLogs();
    ASSERT_EQ(0, vconf_unset("db/comss/countrycode"));
    EXPECT_EQ("", ISystemInfo::getCountryCode());
    EXPECT_THAT(loggedTexts(device, "WRN"),
                ElementsAre("vconf_get failed while trying to access key: db/comss/countrycode, return default value",
                            "CountryCode value taken from vconf has not expected length"));
}

TEST(SystemInfoTest, IdentityValuesMustBePresentAndNotEmpty) {
    Testing::TestDevice device;
    const struct {
        std::string (*read)();
        const char* key;
        std::string logName;
        std::string emptyDescription;
        const char* function;
    } identities[] = {
        {&ISystemInfo::getFirmwareVersion, "db/comss/corvelversion", "FIRMWARE", "Firmware value taken from vconf is empty",
         "std::__cxx11::string Orvo::Platform::ISystemInfo::getFirmwareVersion()"},
        {&ISystemInfo::getAtoken, "db/comss/atoken", "Atoken", "Atoken value taken from vconf is empty",
         "std::__cxx11::string Orvo::Platform::ISystemInfo::getAtoken()"},
        {&ISystemInfo::getDuid, "db/comss/hwduid", "DUID", "DUID value taken from vconf is empty",
         "std::__cxx11::string Orvo::Platform::ISystemInfo::getDuid()"},
    };
    for (const auto& identity : identities) {
        device.clearLogs();
        VConf<std::string>(identity.key).set("0123-abcd");
        EXPECT_EQ("0123-abcd", identity.read());
        VConf<std::string>(identity.key).set("");
        try {
            identity.read();
            ADD_FAILURE() << identity.key << " empty did not throw";
        } catch (const GenericException& e) {
            EXPECT_EQ(identity.emptyDescription, textOrNull(boost::get_error_info<errinfo_description>(e)));
            EXPECT_STREQ(identity.function, *boost::get_error_info<boost::throw_function>(e));
        }
        EXPECT_THAT(loggedTexts(device, "DBG"), ElementsAre("Debug only log: " + identity.logName + " is 0123-abcd",
                                                            "Debug only log: " + identity.logName + " is "));
        ASSERT_EQ(0, vconf_unset(identity.key));
        EXPECT_THROW(identity.read(), VConfException);
    }
}

} // namespace
} // namespace Platform
} // namespace Orvo

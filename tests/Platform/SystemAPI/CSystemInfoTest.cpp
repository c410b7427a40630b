#include "Platform/SystemAPI/SystemInfoSystemAPI/ISystemInfo.h"

#include "ErrorInfoMatchers.h"
#include "orvo/testing/LogLines.h"
#include "Platform/SystemAPI/VconfSystemAPI/IVConfTizen.h"

namespace Orvo::Testing {
namespace {

using namespace ::testing;
using Common::Utils::errinfo_description;
using Common::Utils::errinfo_stream;
using Common::Utils::GenericException;
using Platform::ISystemInfo;
using Platform::VConf;

TEST(SystemInfoTest, ErrorsAreMappedAndStringReadsCopyOrThrow) {
    EXPECT_NO_THROW(ISystemInfo::checkSystemInfoError(0));
    const std::string prefix = "Error during getting system-info value: ";
    const std::pair<int, Matcher<const boost::exception&>> errors[] = {
        {-22, AllOf(HasInfo<errinfo_description>(prefix + "SYSTEM_INFO_ERROR_INVALID_PARAMETER"),
                    LacksInfo<errinfo_stream>())},
        {-5, AllOf(HasInfo<errinfo_description>(prefix + "SYSTEM_INFO_ERROR_IO_ERROR"), LacksInfo<errinfo_stream>())},
        {-3,
         AllOf(HasInfo<errinfo_stream>(prefix + "unrecognized error value: -3"), LacksInfo<errinfo_description>())}};
    const auto thrownHere =
        HasInfo<boost::throw_function>(StrEq("void Orvo::Platform::ISystemInfo::checkSystemInfoError(int)"));
    for (const auto& error : errors) {
        EXPECT_THAT([&error] { ISystemInfo::checkSystemInfoError(error.first); },
                    Throws<GenericException>(AllOf(error.second, thrownHere)));
    }
    TestDevice device;
    device.setConf("system-info.5001", "string T-ABC9-1302.5 with blanks");
    device.setConf("system-info.5002", "error -5");
    EXPECT_EQ("T-ABC9-1302.5 with blanks", ISystemInfo::getSystemInfoString(5001));
    EXPECT_THROW(ISystemInfo::getSystemInfoString(5002), GenericException);
    EXPECT_THROW(ISystemInfo::getSystemInfoInt(5001), GenericException); // another type
}

TEST(SystemInfoTest, CountryCodeOfAnyOtherLengthThanTwoIsEmpty) {
    TestDevice device;
    for (const std::string stored : {"PL", "DEU", "D"}) {
        device.clearLogs();
        VConf<std::string>("db/comss/countrycode").set(stored);
        EXPECT_EQ(stored.size() == 2 ? stored : "", ISystemInfo::getCountryCode());
        EXPECT_THAT(loggedTexts(device, "DBG"), ElementsAre("Debug only log: CountryCode is " + stored));
        EXPECT_EQ(stored.size() == 2 ? 0u : 1u, loggedTexts(device, "WRN").size()) << stored;
    }
    device.clearLogs();
    ASSERT_EQ(0, vconf_unset("db/comss/countrycode"));
    EXPECT_EQ("", ISystemInfo::getCountryCode());
    EXPECT_THAT(loggedTexts(device, "WRN"),
                ElementsAre("vconf_get failed while trying to access key: db/comss/countrycode, return default value",
                            "CountryCode value taken from vconf has not expected length"));
}

TEST(SystemInfoTest, IdentityValuesMustBePresentAndNotEmpty) {
    TestDevice device;
    const struct {
        std::string (*read)();
        std::string key, logName, emptyName, function;
    } identities[] = {
        {&ISystemInfo::getFirmwareVersion, "db/comss/corvelversion", "FIRMWARE", "Firmware", "getFirmwareVersion"},
        {&ISystemInfo::getAtoken, "db/comss/atoken", "Atoken", "Atoken", "getAtoken"},
        {&ISystemInfo::getDuid, "db/comss/hwduid", "DUID", "DUID", "getDuid"}};
    for (const auto& identity : identities) {
        SCOPED_TRACE(identity.key);
        device.clearLogs();
        VConf<std::string>(identity.key).set("0123-abcd");
        EXPECT_EQ("0123-abcd", identity.read());
        VConf<std::string>(identity.key).set("");
        const std::string function = "std::__cxx11::string Orvo::Platform::ISystemInfo::" + identity.function + "()";
        EXPECT_THAT(identity.read,
                    Throws<GenericException>(
                        AllOf(HasInfo<errinfo_description>(identity.emptyName + " value taken from vconf is empty"),
                              HasInfo<boost::throw_function>(StrEq(function)))));
        EXPECT_THAT(loggedTexts(device, "DBG"), ElementsAre("Debug only log: " + identity.logName + " is 0123-abcd",
                                                            "Debug only log: " + identity.logName + " is "));
        ASSERT_EQ(0, vconf_unset(identity.key.c_str()));
        EXPECT_THROW(identity.read(), Platform::VConfException);
    }
}

} // namespace
} // namespace Orvo::Testing

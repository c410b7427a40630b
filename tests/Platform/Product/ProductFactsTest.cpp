// Device facts: the guard before initialisation, the SW version and its parts, the system-
// information getters with their failure texts, the model line and the product type.
#include "ChildProcess.h"
#include "Common/Utils/ErrorInfo.h"
#include "ErrorInfoMatchers.h"
#include "orvo/testing/LogLines.h"
#include "Platform/Product/Implementation/SWVersion.h"
#include "Platform/Product/IProductInfo.h"
#include "Platform/SystemAPI/SystemInfoSystemAPI/ISystemInfo.h"

#include <boost/lexical_cast.hpp>
#include <dlog.h>

#include <csignal>

namespace Orvo::Testing {
namespace {

using namespace ::testing;
using Common::Utils::errinfo_description;
using P = Platform::IProductInfo;

#define GUARDED(operation) std::make_pair(#operation, std::function<void()>([] { P::operation(); }))

TEST(ProductInfoGuardTest, GuardedOperationsThrowBeforeInitialisationTheSWVersionHelpersDoNot) {
    TestDevice device;
    device.setConf("system-info.128", "string T-XYZ9-1302.5");
    const std::pair<const char*, std::function<void()>> operations[] = {GUARDED(getVersionString),
                                                                        GUARDED(getModelString),
                                                                        GUARDED(getMajorSWVersion),
                                                                        GUARDED(getMinorSWVersion),
                                                                        GUARDED(getMainSoftwareVersionDate),
                                                                        GUARDED(getSubmicomVersion),
                                                                        GUARDED(getPlatformType),
                                                                        GUARDED(getChipsetType),
                                                                        GUARDED(getModelLine),
                                                                        GUARDED(getLocalset),
                                                                        GUARDED(getPartitionTxtFilePath),
                                                                        GUARDED(getProductType),
                                                                        GUARDED(isInstallationLocked),
                                                                        GUARDED(releaseInstallationLock),
                                                                        GUARDED(isSourcePartitionNotGenuine),
                                                                        GUARDED(releaseSourcePartitionNotGenuineFlag),
                                                                        GUARDED(throwIfUninitialized)};
    for (const auto& operation : operations) {
        EXPECT_THAT(operation.second, Throws<Platform::ProductUninitializedException>(
                                          AllOf(HasInfo<boost::throw_line>(_), LacksInfo<errinfo_description>(),
                                                LacksInfo<Common::Utils::errinfo_string>())))
            << operation.first;
    }
    // The guard throws before anything is asked of the platform; only the flag release logs first.
    EXPECT_THAT(loggedMessages(device, LOG_ID_MAIN), ElementsAre("INF Releasing SourcePartitionNotGenuine flag."));
    EXPECT_EQ(Platform::getSWVersionString(), "T-XYZ9-1302.5");
}

class ProductFactsTest : public Test {
protected:
    void SetUp() override {
        P::initializeProduct();
        m_device.clearLogs();
    }

    void setSWVersion(const std::string& version) { m_device.setConf("system-info.128", "string " + version); }
    std::vector<std::string> log(int buffer) const { return loggedMessages(m_device, buffer); }

    TestDevice m_device;
};

TEST(ProductInitializationDeathTest, FirstInitialisationLogsTheTargetASecondStopsTheProgram) {
    TestDevice device;
    P::initializeProduct();
    EXPECT_THAT(loggedMessages(device, LOG_ID_MAIN), ElementsAre("INF Product was build for emulator"));
    if (!childrenCanHideConsole()) GTEST_SKIP() << "cannot keep the assertion off the real /dev/console";
    EXPECT_EXIT(
        {
            hideConsole();
            P::initializeProduct();
        },
        KilledBySignal(SIGABRT),
        "ASSERTION FAILED: !m_isInitialized, .*initializeProduct.*CProductInfo\\.cpp:[0-9]+\n");
}

TEST_F(ProductFactsTest, VersionSplitsAtTheLastDashAndKeepsTheLow16Bits) {
    setSWVersion("T-XYZ9-1302.5");
    EXPECT_EQ(P::getVersionString(), "1302.5");
    EXPECT_EQ(P::getModelString(), "T-XYZ9");
    EXPECT_EQ(P::getMajorSWVersion(), 1302);
    EXPECT_EQ(P::getMinorSWVersion(), 5);
    std::vector<std::string> expected = {"INF Version string: 1302.5."};
    for (const char* result : {"INF Model string: T-XYZ9.", "INF MAJOR SW VERSION: 1302", "INF MINOR SW VERSION: 5"}) {
        expected.insert(expected.end(), {"DBG getParsedModelAndVersion got version string 'T-XYZ9-1302.5'",
                                         "DBG version string: 1302.5", "DBG version:1302.5", result});
    }
    EXPECT_EQ(log(LOG_ID_MAIN), expected);
    setSWVersion("M-65537.70000");
    EXPECT_EQ(P::getMajorSWVersion(), 1);
    EXPECT_EQ(P::getMinorSWVersion(), 70000 - 65536);
    setSWVersion("M--1.7");
    EXPECT_EQ(P::getModelString(), "M-");
    EXPECT_EQ(P::getMajorSWVersion(), 1);
    setSWVersion("M-1302");
    EXPECT_EQ(P::getMinorSWVersion(), 0);
}

TEST_F(ProductFactsTest, MalformedSWVersionsAreRejected) {
    setSWVersion("T1302.5");
    const std::pair<std::string, std::function<void()>> getters[] = {
        {"getVersionString", [] { P::getVersionString(); }},
        {"getParsedModelAndVersion", [] { P::getModelString(); }},
        {"getParsedModelAndVersion", [] { P::getMajorSWVersion(); }},
        {"getParsedModelAndVersion", [] { P::getMinorSWVersion(); }}};
    for (const auto& [caller, getter] : getters) {
        m_device.clearLogs();
        EXPECT_THAT(getter, Throws<Common::Utils::GenericException>(
                                AllOf(HasInfo<errinfo_description>(caller + ": Wrong string format - lack of dash"),
                                      HasInfo<Common::Utils::errinfo_string>("T1302.5"))));
        EXPECT_THAT(log(LOG_ID_SYSTEM), ElementsAre("ERR " + caller + ": Wrong string format - lack of dash: T1302.5"));
    }
    setSWVersion("T-XYZ9-");
    EXPECT_EQ(P::getVersionString(), "");
    EXPECT_THROW(P::getModelString(), boost::bad_lexical_cast);
    setSWVersion("T-1.2.3");
    EXPECT_THROW(P::getMinorSWVersion(), boost::bad_lexical_cast);
}

TEST_F(ProductFactsTest, FactsAreReadByKeyNumberAndFailWithTheirOwnText) {
    const char* const swVersion = "Unable to read SW version from system-info";
    const struct {
        const char* function; // where a failure is recorded
        std::function<std::string()> get;
        std::string key;
        std::string failure;
        bool asStored;
    } reads[] = {{"getMainSoftwareVersionDate", P::getMainSoftwareVersionDate, "8", swVersion, true},
                 {"getSubmicomVersion", P::getSubmicomVersion, "133", swVersion, true},
                 {"getPlatformType", P::getPlatformType, "564", "Unable to read platform type from system-info", true},
                 {"getChipsetType", P::getChipsetType, "91", "Unable to read chipset type from system-info", true},
                 {"getModelLine", P::getModelLine, "0", "Unable to read model line from system-info", true},
                 {"getLocalset", P::getLocalset, "90", "Unable to read localset from system-info", true},
                 {"getPartitionTxtFilePath", [] { return P::getPartitionTxtFilePath().string(); }, "301",
                  "Unable to read partition file path from system-info", true},
                 {"getSWVersionString", P::getVersionString, "128", swVersion, false},
                 {"getProductType", P::getProductType, "77", "Unable to read product key from system-info", false}};
    for (const auto& read : reads) {
        SCOPED_TRACE(read.function);
        if (read.asStored) {
            m_device.setConf("system-info." + read.key, "string /value/" + read.key);
            EXPECT_EQ(read.get(), "/value/" + read.key);
        }
        const std::string pathLine = "INF Partition.txt file path is: /value/301";
        EXPECT_EQ(log(LOG_ID_MAIN), std::vector<std::string>(read.key == "301", pathLine));
        m_device.setConf("system-info." + read.key, "error -5");
        EXPECT_THAT(read.get, Throws<Platform::SystemInfoAPIInternalProblemException>(
                                  AllOf(HasInfo<errinfo_description>(read.failure),
                                        HasInfo<boost::throw_function>(HasSubstr(read.function)))));
        EXPECT_THAT(log(LOG_ID_SYSTEM), ElementsAre("ERR " + read.failure));
        m_device.clearLogs();
    }
}

TEST_F(ProductFactsTest, ChinaModelLineReplacesTheMarker) {
    m_device.setConf("system-info.620", "string CHINA_DTV_2023");
    for (const auto& line : {std::make_pair("CHI_DTV", "CHINA_DTV_2023"), std::make_pair("chi_dtv", "chi_dtv"),
                             std::make_pair("CHI_DTV ", "CHI_DTV ")}) {
        m_device.setConf("system-info.0", std::string("string ") + line.first);
        EXPECT_EQ(P::getModelLine(), line.second);
    }
    m_device.setConf("system-info.0", "string CHI_DTV");
    m_device.removeConf("system-info.620");
    EXPECT_THROW(P::getModelLine(), Platform::SystemInfoAPIInternalProblemException);
    EXPECT_THAT(log(LOG_ID_SYSTEM), ElementsAre("ERR Unable to read china model line from system-info"));
}

TEST_F(ProductFactsTest, ProductCodesMapToTheirTypesUnknownOnesToNone) {
    // The second 10 finds the empty row that the first one added.
    const std::vector<std::pair<int, std::string>> types = {
        {0, "TV"}, {1, "MONITOR"}, {2, "AV"},  {3, "PROJECTOR"}, {4, "LFD"}, {5, "SMD"}, {6, "AV"},
        {7, "AV"}, {8, "HTV"},     {9, "SPK"}, {10, ""},         {-1, ""},   {10, ""}};
    for (const auto& type : types) {
        m_device.setConf("system-info.77", "int " + std::to_string(type.first));
        m_device.clearLogs();
        EXPECT_EQ(P::getProductType(), type.second) << type.first;
        EXPECT_THAT(log(LOG_ID_MAIN), ElementsAre("INF Product Type: " + type.second + "."));
        EXPECT_THAT(log(LOG_ID_SYSTEM), IsEmpty());
    }
}

} // namespace
} // namespace Orvo::Testing

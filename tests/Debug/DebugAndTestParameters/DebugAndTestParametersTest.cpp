// The process-wide debug-and-test parameters: the production gate, load and reload, the file.
#include "Common/Utils/ErrorInfo.h"
#include "Debug/DebugAndTestParameters/DebugAndTestParameters.h"
#include "orvo/testing/LogLines.h"
#include "Platform/Product/IProductInfo.h"

#include <boost/filesystem/operations.hpp>
#include <boost/optional/optional_io.hpp>
#include <dlog.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace Orvo {
namespace Testing {
namespace {

using OrvoCommon::DebugAndTestParameters;
using OrvoCommon::InstallationPerformanceParameters;

const std::string kFilePath = "/mnt/systemrw/orvotv/data/tv/DebugAndTestParameters.xml";

// Every field changed from its default, the nested performance parameters included.
DebugAndTestParameters changedParameters() {
    DebugAndTestParameters parameters;
    parameters.setNoRebootFlag(true);
    parameters.setSkipCompatibilityChecker(true);
    parameters.setSkipVersionChecker(true);
    parameters.setSkipIntegrityChecker(true);
    parameters.setDontSwitchPartitions(true);
    parameters.setEmulateWasSuccessfulUpgrade(true);
    parameters.setTestTransformationFailure(true);
    parameters.setUseOTNTestServer(true);
    parameters.setOtnTestServerAddress("10.0.0.1:80/<&\"'>/");
    parameters.setNumberOfFailures(4294967295U);
    parameters.setDurationReduced(true);
    parameters.setSetOTASetServiceOption(-5);
    InstallationPerformanceParameters performance;
    performance.setFlashSinkBufferSize(512U);
    performance.setForceInstallationRewriteMode(Common::Storage::ETransactionalRewriteMode::Full);
    performance.setParallelizeWrites(false);
    performance.setVerificationScale(0.75f);
    parameters.setInstallationPerformanceParameters(performance);
    parameters.setServiceTransactionStubScenarioPath("/opt/stub/service scenario.xml");
    parameters.setCoreTransactionStubScenarioPath("/opt/stub/core.xml");
    parameters.setOtnOUItemDownloadDirectory("/tmp/ou");
    parameters.setResumeDataBackupDirectory("/tmp/resume");
    parameters.setCustomIntParams({{"IFactorySettings::overrideOTNEnabled", 0}, {"testParam1", -1}, {"zeta", 7}});
    return parameters;
}

std::string readText(const std::string& path) {
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

class DebugAndTestParametersTest : public ::testing::Test {
protected:
    void SetUp() override {
        Platform::IProductInfo::initializeProduct();
        boost::filesystem::create_directories(Platform::IProductInfo::getSystemRwDataDirectory());
        m_device.clearLogs();
    }

    void setProduction() { m_device.setConf("production", "true"); }
    std::vector<std::string> mainLog() const { return loggedMessages(m_device, LOG_ID_MAIN); }
    std::vector<std::string> systemLog() const { return loggedMessages(m_device, LOG_ID_SYSTEM); }

    TestDevice m_device;
};

TEST_F(DebugAndTestParametersTest, DefaultsAndFilePath) {
    const DebugAndTestParameters defaults;
    EXPECT_EQ(defaults.otnTestServerAddress(), "127.0.0.1:8080/");
    EXPECT_EQ(defaults.installationPerformanceParameters(), InstallationPerformanceParameters::defaults());
    EXPECT_EQ(defaults.customIntParams(), (std::map<std::string, int32_t>{{"testParam0", 0}, {"testParam1", 1}}));
    EXPECT_EQ(DebugAndTestParameters::filePath(), kFilePath);
}

TEST_F(DebugAndTestParametersTest, GettingBeforeTheLoadOutsideProductionThrows) {
    try {
        DebugAndTestParameters::getDebugAndTestParameters();
        FAIL() << "no exception";
    } catch (const Common::Utils::GenericException& exception) {
        const std::string* description = boost::get_error_info<Common::Utils::errinfo_description>(exception);
        const char* const* function = boost::get_error_info<boost::throw_function>(exception);
        ASSERT_NE(description, nullptr);
        ASSERT_NE(function, nullptr);
        EXPECT_EQ(*description, "DebugAndTestParameters were not loaded.");
        EXPECT_NE(std::string(*function).find("getDebugAndTestParameters"), std::string::npos) << *function;
    }
}

TEST_F(DebugAndTestParametersTest, ProductionLoadLeavesTheFileUnread) {
    changedParameters().save(kFilePath);
    setProduction();
    EXPECT_EQ(DebugAndTestParameters::getDebugAndTestParameters(), DebugAndTestParameters());
    DebugAndTestParameters::loadDebugAndTestParameters();
    EXPECT_EQ(DebugAndTestParameters::getDebugAndTestParameters(), DebugAndTestParameters());
    EXPECT_EQ(mainLog(), std::vector<std::string>{"INF We are in production mode. Will not load DebugAndTestParameters."});
}

TEST_F(DebugAndTestParametersTest, LoadReadsTheFileOutsideProduction) {
    changedParameters().save(kFilePath);
    DebugAndTestParameters::loadDebugAndTestParameters();
    EXPECT_EQ(DebugAndTestParameters::getDebugAndTestParameters(), changedParameters());
    EXPECT_EQ(mainLog(), (std::vector<std::string>{"DBG Loading DebugAndTestParameters.",
                                                   "INF Opening config from " + kFilePath}));
}

TEST_F(DebugAndTestParametersTest, SecondLoadChangesNothing) {
    DebugAndTestParameters::loadDebugAndTestParameters();
    changedParameters().save(kFilePath);
    m_device.clearLogs();
    DebugAndTestParameters::loadDebugAndTestParameters();
    EXPECT_EQ(DebugAndTestParameters::getDebugAndTestParameters(), DebugAndTestParameters());
    EXPECT_EQ(mainLog(), std::vector<std::string>{"WRN DebugAndTestParameters were already loaded."});
}

TEST_F(DebugAndTestParametersTest, LoadWithoutFileKeepsTheDefaultsAndCounts) {
    DebugAndTestParameters::loadDebugAndTestParameters();
    EXPECT_EQ(DebugAndTestParameters::getDebugAndTestParameters(), DebugAndTestParameters());
    EXPECT_FALSE(DebugAndTestParameters::getDebugAndTestParameters().reload());
    const std::vector<std::string> attempt = {"INF Opening config from " + kFilePath,
                                              "WRN Failed to open DebugAndTestParameters from " + kFilePath};
    std::vector<std::string> expected = {"DBG Loading DebugAndTestParameters."};
    expected.insert(expected.end(), attempt.begin(), attempt.end());
    expected.insert(expected.end(), attempt.begin(), attempt.end());
    EXPECT_EQ(mainLog(), expected);
}

TEST_F(DebugAndTestParametersTest, ReloadBeforeLoadThrows) {
    setProduction();
    try {
        DebugAndTestParameters::getDebugAndTestParameters().reload();
        FAIL() << "no exception";
    } catch (const Common::Utils::GenericException& exception) {
        const std::string* description = boost::get_error_info<Common::Utils::errinfo_description>(exception);
        ASSERT_NE(description, nullptr);
        EXPECT_EQ(*description, "load DebugAndTestParameters before reload");
    }
    EXPECT_EQ(systemLog(), std::vector<std::string>{
                               "ERR DebugAndTestParameters not yet loaded - use loadDebugAndTestParameters() first"});
}

TEST_F(DebugAndTestParametersTest, ReloadInProductionReadsTheFile) {
    changedParameters().save(kFilePath);
    setProduction();
    DebugAndTestParameters::loadDebugAndTestParameters();
    EXPECT_TRUE(DebugAndTestParameters::getDebugAndTestParameters().reload());
    EXPECT_EQ(DebugAndTestParameters::getDebugAndTestParameters(), changedParameters());
    EXPECT_EQ(mainLog().back(), "INF Opening config from " + kFilePath);
}

TEST_F(DebugAndTestParametersTest, ReloadSeesTheFilesNewValues) {
    DebugAndTestParameters::loadDebugAndTestParameters();
    changedParameters().save(kFilePath);
    EXPECT_TRUE(DebugAndTestParameters::getDebugAndTestParameters().reload());
    EXPECT_EQ(DebugAndTestParameters::getDebugAndTestParameters(), changedParameters());
}

TEST_F(DebugAndTestParametersTest, BrokenFileKeepsTheValuesReadSoFar) {
    changedParameters().save(kFilePath);
    std::string text = readText(kFilePath);
    const std::string::size_type begin = text.find("<otnTestServerAddress>");
    const std::string::size_type end = text.find("<numberOfFailures>");
    text.erase(begin, end - begin);
    std::ofstream(kFilePath) << text;
    std::string failure; // what a stock read of the same text says
    try {
        std::istringstream in(text);
        DebugAndTestParameters().read(in);
    } catch (const std::exception& exception) {
        failure = exception.what();
    }
    ASSERT_FALSE(failure.empty());

    DebugAndTestParameters::loadDebugAndTestParameters();
    const DebugAndTestParameters& loaded = DebugAndTestParameters::getDebugAndTestParameters();
    EXPECT_TRUE(loaded.noRebootFlag() && loaded.useOTNTestServer()) << "read before the failure";
    EXPECT_EQ(loaded.setOTASetServiceOption(), 0) << "after the failure";
    EXPECT_EQ(loaded.customIntParams(), DebugAndTestParameters().customIntParams());
    EXPECT_EQ(mainLog().back(), "WRN Failed to load DebugAndTestParameters from " + kFilePath + ": " + failure);
}

TEST_F(DebugAndTestParametersTest, SavedFileIsABoostArchiveThatReadsBackEqual) {
    changedParameters().save(kFilePath);
    const std::string text = readText(kFilePath);
    for (const char* part : {"<DebugAndTestParameters class_id=\"0\" tracking_level=\"0\" version=\"0\">",
                             "<otnTestServerAddress>10.0.0.1:80/&lt;&amp;&quot;&apos;&gt;/</otnTestServerAddress>",
                             "<installationPerformanceParameters class_id=\"1\" tracking_level=\"0\" version=\"0\">",
                             "<count>3</count>", "<item_version>0</item_version>",
                             "<first>IFactorySettings::overrideOTNEnabled</first>", "<second>-1</second>"}) {
        EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
    }
    std::istringstream in(text);
    DebugAndTestParameters loaded;
    loaded.read(in);
    EXPECT_EQ(loaded, changedParameters());
    EXPECT_TRUE(mainLog().empty());
}

TEST_F(DebugAndTestParametersTest, SaveFailureIsLogged) {
    changedParameters().save("/mnt/systemrw/absent/DebugAndTestParameters.xml");
    EXPECT_EQ(mainLog(), std::vector<std::string>{
                             "WRN Failed to save DebugAndTestParameters to /mnt/systemrw/absent/DebugAndTestParameters.xml: "
                             "cannot open the file for writing: errno=2 (No such file or directory)"});
}

TEST_F(DebugAndTestParametersTest, CustomParametersAreLookedUpByName) {
    const DebugAndTestParameters defaults;
    EXPECT_EQ(defaults.getCustomIntParam("testParam1"), 1);
    EXPECT_EQ(defaults.getCustomIntParam("testParam0"), 0);
    EXPECT_EQ(defaults.getCustomIntParam("testparam1"), boost::none);
    EXPECT_EQ(mainLog(), (std::vector<std::string>{
                             "DBG Getting custom debug parameter testParam1: 1.",
                             "DBG Getting custom debug parameter testParam0: 0.",
                             "DBG Getting custom debug parameter testparam1: parameter not set.",
                         }));
}

} // namespace
} // namespace Testing
} // namespace Orvo

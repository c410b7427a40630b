// The process-wide debug-and-test parameters: the production gate, load and reload, the file.
#include "ArchiveElements.h"
#include "Common/Utils/ErrorInfo.h"
#include "Debug/DebugAndTestParameters/DebugAndTestParameters.h"
#include "ErrorInfoMatchers.h"
#include "orvo/testing/LogLines.h"
#include "Platform/Product/IProductInfo.h"

#include <boost/filesystem/operations.hpp>
#include <boost/optional/optional_io.hpp>
#include <dlog.h>

#include <fstream>
#include <sstream>

namespace Orvo::Testing {
namespace {

using namespace ::testing;
using Common::Utils::errinfo_description;
using Common::Utils::GenericException;
using OrvoCommon::DebugAndTestParameters;

const std::string kFilePath = "/mnt/systemrw/orvotv/data/tv/DebugAndTestParameters.xml";
const std::string kOpening = "INF Opening config from " + kFilePath;
const std::string kLoading = "DBG Loading DebugAndTestParameters.";

// Every field changed from its default, the nested performance parameters included.
DebugAndTestParameters changedParameters() {
    using D = DebugAndTestParameters;
    D parameters;
    for (const auto setSwitch :
         {&D::setNoRebootFlag, &D::setSkipCompatibilityChecker, &D::setSkipVersionChecker, &D::setSkipIntegrityChecker,
          &D::setDontSwitchPartitions, &D::setEmulateWasSuccessfulUpgrade, &D::setTestTransformationFailure,
          &D::setUseOTNTestServer, &D::setDurationReduced}) {
        (parameters.*setSwitch)(true);
    }
    parameters.setOtnTestServerAddress("10.0.0.1:80/<&\"'>/");
    parameters.setNumberOfFailures(4294967295U);
    parameters.setSetOTASetServiceOption(-5);
    OrvoCommon::InstallationPerformanceParameters performance;
    performance.setForceInstallationRewriteMode(Common::Storage::ETransactionalRewriteMode::Full);
    performance.setVerificationScale(0.75f);
    parameters.setInstallationPerformanceParameters(performance);
    parameters.setServiceTransactionStubScenarioPath("/opt/stub/service scenario.xml");
    parameters.setCoreTransactionStubScenarioPath("/opt/stub/core.xml");
    parameters.setOtnOUItemDownloadDirectory("/tmp/ou");
    parameters.setResumeDataBackupDirectory("/tmp/resume");
    parameters.setCustomIntParams({{"IFactorySettings::overrideOTNEnabled", 0}, {"testParam1", -1}, {"zeta", 7}});
    return parameters;
}

DebugAndTestParameters& parameters() { return DebugAndTestParameters::getDebugAndTestParameters(); }

class DebugAndTestParametersTest : public Test {
protected:
    void SetUp() override {
        Platform::IProductInfo::initializeProduct();
        boost::filesystem::create_directories(Platform::IProductInfo::getSystemRwDataDirectory());
        m_device.clearLogs();
    }

    std::vector<std::string> mainLog() const { return loggedMessages(m_device, LOG_ID_MAIN); }

    TestDevice m_device;
};

TEST_F(DebugAndTestParametersTest, OutsideProductionTheFirstLoadCountsEvenWithoutFile) {
    EXPECT_THAT(parameters, Throws<GenericException>(
                                AllOf(HasInfo<errinfo_description>("DebugAndTestParameters were not loaded."),
                                      HasInfo<boost::throw_function>(HasSubstr("getDebugAndTestParameters")))));
    DebugAndTestParameters::loadDebugAndTestParameters();
    EXPECT_EQ(parameters(), DebugAndTestParameters());
    changedParameters().save(kFilePath);
    DebugAndTestParameters::loadDebugAndTestParameters();
    EXPECT_EQ(parameters(), DebugAndTestParameters()) << "a second load changes nothing";
    EXPECT_TRUE(parameters().reload());
    EXPECT_EQ(parameters(), changedParameters());
    EXPECT_THAT(mainLog(),
                ElementsAre(kLoading, kOpening, "WRN Failed to open DebugAndTestParameters from " + kFilePath,
                            "WRN DebugAndTestParameters were already loaded.", kOpening));
}

// In production the instance answers unloaded, with the defaults.
TEST_F(DebugAndTestParametersTest, DefaultsAreThoseOfTheFileFormat) {
    m_device.setConf("production", "true");
    std::ostringstream text;
    parameters().write(text);
    std::vector<Matcher<std::string>> elements = elementsOf(
        "DebugAndTestParameters noRebootFlag=0 skipCompatibilityChecker=0 skipVersionChecker=0 "
        "skipIntegrityChecker=0 dontSwitchPartitions=0 emulateWasSuccessfulUpgrade=0 testTransformationFailure=0 "
        "useOTNTestServer=0");
    elements.push_back(MatchesRegex("otnTestServerAddress=[^:/]+:[0-9]+/"));
    for (const auto& more :
         {elementsOf("numberOfFailures=0 durationReduced=0 setOTASetServiceOption=0 installationPerformanceParameters"),
          defaultPerformanceElements(),
          elementsOf("serviceTransactionStubScenarioPath= coreTransactionStubScenarioPath= otnOUItemDownloadDirectory= "
                     "resumeDataBackupDirectory= customIntParams count=2 item_version=0 item first=testParam0 "
                     "second=0 item first=testParam1 second=1")})
        elements.insert(elements.end(), more.begin(), more.end());
    EXPECT_THAT(archiveElements(text.str()), ElementsAreArray(elements));
    EXPECT_EQ(parameters().getCustomIntParam("testParam1"), 1);
    EXPECT_EQ(parameters().getCustomIntParam("testParam2"), boost::none);
    EXPECT_THAT(mainLog(), ElementsAre("DBG Getting custom debug parameter testParam1: 1.",
                                       "DBG Getting custom debug parameter testParam2: parameter not set."));
}

TEST_F(DebugAndTestParametersTest, ProductionLoadLeavesTheFileUnreadButReloadReadsIt) {
    changedParameters().save(kFilePath);
    m_device.setConf("production", "true");
    EXPECT_EQ(parameters(), DebugAndTestParameters());
    EXPECT_THAT([] { parameters().reload(); },
                Throws<GenericException>(HasInfo<errinfo_description>("load DebugAndTestParameters before reload")));
    EXPECT_THAT(loggedMessages(m_device, LOG_ID_SYSTEM),
                ElementsAre("ERR DebugAndTestParameters not yet loaded - use loadDebugAndTestParameters() first"));
    DebugAndTestParameters::loadDebugAndTestParameters();
    EXPECT_EQ(parameters(), DebugAndTestParameters());
    EXPECT_TRUE(parameters().reload());
    EXPECT_EQ(parameters(), changedParameters());
    EXPECT_THAT(mainLog(),
                ElementsAre("INF We are in production mode. Will not load DebugAndTestParameters.", kOpening));
}

TEST_F(DebugAndTestParametersTest, BrokenFileKeepsTheDefaultsAfterTheValuesReadSoFar) {
    std::ostringstream text;
    changedParameters().write(text);
    std::string broken = text.str();
    const std::string::size_type begin = broken.find("<otnTestServerAddress>");
    broken.erase(begin, broken.find("<numberOfFailures>") - begin);
    std::ofstream(kFilePath) << broken;
    DebugAndTestParameters::loadDebugAndTestParameters();
    EXPECT_TRUE(parameters().noRebootFlag() && parameters().useOTNTestServer()) << "read before the failure";
    EXPECT_EQ(parameters().setOTASetServiceOption(), 0) << "after the failure";
    EXPECT_EQ(parameters().customIntParams(), DebugAndTestParameters().customIntParams());
    // The reason is the archive's own text.
    const std::string failed = "^WRN Failed to load DebugAndTestParameters from " + kFilePath + ": .";
    EXPECT_THAT(mainLog(), ElementsAre(kLoading, kOpening, ContainsRegex(failed)));
}

TEST_F(DebugAndTestParametersTest, AnArchiveVersionBeyondThisBoostIsAnErrorNotAnAbort) {
    std::ostringstream text;
    changedParameters().write(text);
    for (const char* version : {"554429672", "65536"}) {
        std::string future = text.str();
        const std::string::size_type header = future.find("version=\"", future.find("<boost_serialization"));
        future.replace(header, future.find('"', header + 9) + 1 - header, std::string("version=\"") + version + "\"");
        std::istringstream in(future);
        DebugAndTestParameters read;
        EXPECT_THROW(read.read(in), std::exception) << version;
        EXPECT_EQ(read, DebugAndTestParameters()) << version;
    }
}

} // namespace
} // namespace Orvo::Testing

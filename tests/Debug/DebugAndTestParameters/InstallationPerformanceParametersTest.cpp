// Installation performance parameters: their file, and files that fail to load.
#include "ArchiveElements.h"
#include "Debug/DebugAndTestParameters/InstallationPerformanceParameters.h"
#include "orvo/testing/LogLines.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <dlog.h>
#include <gmock/gmock.h>

#include <fstream>
#include <sstream>
#include <thread>
#include <vector>

namespace Orvo::Testing {
namespace {

using namespace ::testing;
using Parameters = OrvoCommon::InstallationPerformanceParameters;

// Every stored field changed from its default.
Parameters changedParameters() {
    Parameters parameters;
    parameters.setFlashStreamBufferSize(4096U);
    parameters.setFlashSinkBufferSize(0U);
    parameters.setNetworkStreamBufferSize(7);
    parameters.setUsbFileStreamBufferSize(4294967295U);
    parameters.setDecrypterInputBufferSize(8);
    parameters.setInstallationChunkSize(9);
    parameters.setVerificationChunkSize(10);
    parameters.setForceInstallationRewriteMode(Parameters::RewriteMode::Differential);
    parameters.setForceVerificationRewriteMode(Parameters::RewriteMode::None);
    parameters.setInstallationWorkerThreads(-3);
    for (const auto setSwitch :
         {&Parameters::setAllowBpsProviders, &Parameters::setParallelizeReads, &Parameters::setParallelizeWrites}) {
        (parameters.*setSwitch)(false);
    }
    parameters.setNumberOfBuffersForParallelization(-2147483647 - 1);
    parameters.setBuffersSizeForParallelization(11);
    parameters.setVerificationInitialBpsEstimate(1.17549435e-38f);
    parameters.setOtaDownloadingProgressScale(-0.1f);
    parameters.setVerificationScale(3.4028234e38f);
    return parameters;
}

class InstallationPerformanceParametersTest : public Test {
protected:
    std::string path(const char* name) const { return m_directory.path() + "/" + name; }
    std::vector<std::string> mainLog() const { return loggedMessages(m_device, LOG_ID_MAIN); }

    TestDevice m_device;
    TemporaryDirectory m_directory;
};

// The default instance is built once, whichever thread asks first.
TEST(InstallationPerformanceParametersDefaults, AreOneInstanceForAllThreadsWithTheFileFormatsDefaults) {
    std::vector<const Parameters*> seen(8, nullptr);
    std::vector<std::thread> threads;
    for (auto& defaults : seen)
        threads.emplace_back([&defaults] { defaults = &Parameters::defaults(); });
    for (std::thread& thread : threads)
        thread.join();
    for (const Parameters* defaults : seen)
        EXPECT_EQ(defaults, seen[0]);
    EXPECT_EQ(Parameters::defaults(), Parameters());
    std::ostringstream text;
    Parameters::write(Parameters::defaults(), text);
    std::vector<Matcher<std::string>> elements = defaultPerformanceElements();
    elements.insert(elements.begin(), "InstallationPerformanceParameters");
    EXPECT_THAT(archiveElements(text.str()), ElementsAreArray(elements));
    // The two values that are not written keep their defaults whatever a file says.
    EXPECT_EQ(Parameters::defaults().decrypterOutputBufferSize(), 262144U);
    EXPECT_EQ(Parameters::defaults().decompressorOutputBufferSize(), 1048576U);
}

TEST_F(InstallationPerformanceParametersTest, SavedFileLoadsBackEqualAbsentOptionalsIncluded) {
    Parameters loaded;
    for (const auto& saved : {changedParameters(), Parameters()}) {
        ASSERT_TRUE(Parameters::save(saved, path("ipp.xml")));
        ASSERT_TRUE(Parameters::load(loaded, path("ipp.xml")));
        EXPECT_EQ(loaded, saved);
    }
    EXPECT_THAT(mainLog(), IsEmpty());
}

// The archive expects every element, in order; what it read before a failure stays.
TEST_F(InstallationPerformanceParametersTest, BrokenFilesFailKeepingTheFieldsReadBefore) {
    std::ostringstream text;
    Parameters::write(changedParameters(), text);
    const std::string good = text.str();
    const std::string chunk = "<installationChunkSize>9</installationChunkSize>";
    const std::string threads = "<installationWorkerThreads>-3</installationWorkerThreads>";
    std::string missing = good, reordered = good, garbage = good, longClosingTag = good;
    missing.erase(missing.find(chunk), chunk.size());
    reordered.erase(reordered.find(threads), threads.size());
    reordered.insert(reordered.find("<forceInstallationRewriteMode"), threads);
    garbage.insert(garbage.find(chunk) + 23, "x");
    longClosingTag.insert(longClosingTag.find("</installationChunkSize>") + 23, "FollowedByAMuchLongerName");
    for (const std::string& broken : {missing, reordered, garbage, longClosingTag}) {
        std::ofstream(path("broken.xml")) << broken;
        Parameters target;
        EXPECT_FALSE(Parameters::load(target, path("broken.xml")));
        EXPECT_EQ(target.decrypterInputBufferSize(), 8U) << "read before the failure";
        EXPECT_FALSE(target.forceVerificationRewriteMode()) << "after the failure";
    }
    std::ofstream(path("broken.xml")) << good.substr(0, good.find("</boost_serialization>"));
    Parameters target;
    EXPECT_FALSE(Parameters::load(target, path("broken.xml")));
    EXPECT_EQ(target, changedParameters()) << "every field was read before the archive ended";
    const std::string failed = "WRN Failed to load InstallationPerformanceParameters from " + path("broken.xml");
    EXPECT_EQ(mainLog(), std::vector<std::string>(5, failed));
}

TEST_F(InstallationPerformanceParametersTest, UnreachableFilesFailWithAWarning) {
    Parameters target = changedParameters();
    EXPECT_FALSE(Parameters::load(target, path("absent.xml")));
    EXPECT_EQ(target, changedParameters());
    EXPECT_FALSE(Parameters::save(target, path("absent/ipp.xml")));
    EXPECT_THAT(mainLog(),
                ElementsAre("WRN Failed to load InstallationPerformanceParameters from " + path("absent.xml"),
                            "WRN Failed to save InstallationPerformanceParameters to " + path("absent/ipp.xml")));
}

} // namespace
} // namespace Orvo::Testing

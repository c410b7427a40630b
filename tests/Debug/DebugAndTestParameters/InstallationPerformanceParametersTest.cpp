// Installation performance parameters: defaults, their file, and files that fail to load.
#include "Debug/DebugAndTestParameters/InstallationPerformanceParameters.h"
#include "orvo/testing/LogLines.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <dlog.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace Orvo {
namespace Testing {
namespace {

using OrvoCommon::InstallationPerformanceParameters;
using RewriteMode = InstallationPerformanceParameters::RewriteMode;

// Every stored field changed from its default.
InstallationPerformanceParameters changedParameters() {
    InstallationPerformanceParameters parameters;
    parameters.setFlashStreamBufferSize(4096U);
    parameters.setFlashSinkBufferSize(0U);
    parameters.setNetworkStreamBufferSize(7);
    parameters.setUsbFileStreamBufferSize(4294967295U);
    parameters.setDecrypterInputBufferSize(8);
    parameters.setInstallationChunkSize(9);
    parameters.setVerificationChunkSize(10);
    parameters.setForceInstallationRewriteMode(RewriteMode::Differential);
    parameters.setForceVerificationRewriteMode(RewriteMode::None);
    parameters.setInstallationWorkerThreads(-3);
    parameters.setAllowBpsProviders(false);
    parameters.setParallelizeReads(false);
    parameters.setParallelizeWrites(false);
    parameters.setNumberOfBuffersForParallelization(-2147483647 - 1);
    parameters.setBuffersSizeForParallelization(11);
    parameters.setVerificationInitialBpsEstimate(1.17549435e-38f);
    parameters.setOtaDownloadingProgressScale(-0.1f);
    parameters.setVerificationScale(3.4028234e38f);
    return parameters;
}

std::string readText(const std::string& path) {
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void writeText(const std::string& path, const std::string& text) {
    std::ofstream(path) << text;
}

// The text with the first "<name>...</name>" element cut out; the element itself in `element`.
std::string withoutElement(const std::string& text, const std::string& name, std::string& element) {
    const std::string::size_type begin = text.find("<" + name + ">");
    const std::string close = "</" + name + ">";
    const std::string::size_type end = text.find(close, begin) + close.size();
    element = text.substr(begin, end - begin);
    return text.substr(0, begin) + text.substr(end);
}

class InstallationPerformanceParametersTest : public ::testing::Test {
protected:
    std::string path(const char* name) const { return m_directory.path() + "/" + name; }
    std::vector<std::string> mainLog() const { return loggedMessages(m_device, LOG_ID_MAIN); }

    TestDevice m_device;
    TemporaryDirectory m_directory;
};

TEST_F(InstallationPerformanceParametersTest, DefaultsAreTheTuningValuesOfTheEngine) {
    const InstallationPerformanceParameters& defaults = InstallationPerformanceParameters::defaults();
    EXPECT_FALSE(defaults.flashStreamBufferSize() || defaults.flashSinkBufferSize() ||
                 defaults.usbFileStreamBufferSize() || defaults.forceInstallationRewriteMode() ||
                 defaults.forceVerificationRewriteMode());
    EXPECT_EQ(defaults.decrypterInputBufferSize(), 65536U);
    EXPECT_EQ(defaults.networkStreamBufferSize(), 1048576U);
    EXPECT_EQ(defaults.installationChunkSize(), 1048576U);
    EXPECT_EQ(defaults.verificationChunkSize(), 1048576U);
    EXPECT_EQ(defaults.decompressorOutputBufferSize(), 1048576U);
    EXPECT_EQ(defaults.decrypterOutputBufferSize(), 262144U);
    EXPECT_EQ(defaults.buffersSizeForParallelization(), 262144U);
    EXPECT_EQ(defaults.installationWorkerThreads(), 0);
    EXPECT_EQ(defaults.numberOfBuffersForParallelization(), 4);
    EXPECT_TRUE(defaults.allowBpsProviders() && defaults.parallelizeReads() && defaults.parallelizeWrites());
    EXPECT_EQ(defaults.verificationInitialBpsEstimate(), 2.0e8f);
    EXPECT_EQ(defaults.otaDownloadingProgressScale(), 30.0f);
    EXPECT_EQ(defaults.verificationScale(), 0.2f);
}

TEST_F(InstallationPerformanceParametersTest, SavedFileLoadsBackEqual) {
    const InstallationPerformanceParameters saved = changedParameters();
    ASSERT_TRUE(InstallationPerformanceParameters::save(saved, path("ipp.xml")));
    InstallationPerformanceParameters loaded;
    ASSERT_TRUE(InstallationPerformanceParameters::load(loaded, path("ipp.xml")));
    EXPECT_EQ(loaded, saved);
    EXPECT_TRUE(loaded.forceInstallationRewriteMode() == RewriteMode::Differential);
    EXPECT_EQ(loaded.verificationScale(), 3.4028234e38f);
    // Loading defaults over it clears the optionals again.
    ASSERT_TRUE(InstallationPerformanceParameters::save(InstallationPerformanceParameters(), path("defaults.xml")));
    ASSERT_TRUE(InstallationPerformanceParameters::load(loaded, path("defaults.xml")));
    EXPECT_EQ(loaded, InstallationPerformanceParameters::defaults());
    EXPECT_TRUE(mainLog().empty());
}

TEST_F(InstallationPerformanceParametersTest, FileIsABoostArchiveInFieldOrder) {
    InstallationPerformanceParameters parameters = changedParameters();
    parameters.setFlashSinkBufferSize(boost::none);
    ASSERT_TRUE(InstallationPerformanceParameters::save(parameters, path("ipp.xml")));
    const std::string text = readText(path("ipp.xml"));
    EXPECT_NE(text.find("<boost_serialization signature=\"serialization::archive\""), std::string::npos);
    EXPECT_NE(text.find("<InstallationPerformanceParameters class_id=\"0\""), std::string::npos);
    EXPECT_NE(text.find("<flashStreamBufferSize class_id=\"1\" tracking_level=\"0\" version=\"1\">\n"
                        "\t\t<initialized>1</initialized>\n\t\t<value>4096</value>\n\t</flashStreamBufferSize>"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("<flashSinkBufferSize>\n\t\t<initialized>0</initialized>\n\t</flashSinkBufferSize>"),
              std::string::npos);
    EXPECT_NE(text.find("<forceInstallationRewriteMode class_id=\"2\" tracking_level=\"0\" version=\"1\">\n"
                        "\t\t<initialized>1</initialized>\n\t\t<value>2</value>\n\t</forceInstallationRewriteMode>\n"
                        "\t<forceVerificationRewriteMode>\n\t\t<initialized>1</initialized>\n\t\t<value>0</value>"),
              std::string::npos)
        << text;
    std::string::size_type previous = 0;
    for (const char* element :
         {"flashStreamBufferSize", "flashSinkBufferSize", "networkStreamBufferSize", "usbFileStreamBufferSize",
          "decrypterInputBufferSize", "installationChunkSize", "verificationChunkSize", "forceInstallationRewriteMode",
          "forceVerificationRewriteMode", "installationWorkerThreads", "allowBpsProviders", "parallelizeReads",
          "parallelizeWrites", "numberOfBuffersForParallelization", "buffersSizeForParallelization",
          "verificationInitialBpsEstimate", "otaDownloadingProgressScale", "verificationScale"}) {
        const std::string::size_type position = text.find(std::string("<") + element);
        EXPECT_GT(position, previous) << element;
        previous = position;
    }
    // The unwritten values keep their defaults, which no written field has here.
    EXPECT_EQ(text.find("262144"), std::string::npos) << text;
    EXPECT_EQ(text.find("1048576"), std::string::npos) << text;
}

TEST_F(InstallationPerformanceParametersTest, BrokenFilesFailKeepingTheFieldsReadBefore) {
    ASSERT_TRUE(InstallationPerformanceParameters::save(changedParameters(), path("ipp.xml")));
    const std::string good = readText(path("ipp.xml"));
    std::string chunk;
    const std::string missing = withoutElement(good, "installationChunkSize", chunk);
    std::string threads;
    const std::string withoutThreads = withoutElement(good, "installationWorkerThreads", threads);
    const std::string::size_type before = withoutThreads.find("<forceInstallationRewriteMode");
    const std::string reordered = withoutThreads.substr(0, before) + threads + "\n\t" + withoutThreads.substr(before);
    std::string garbage = good;
    garbage.replace(garbage.find("<installationChunkSize>9<"), 25, "<installationChunkSize>x9<");
    const std::string truncated = good.substr(0, good.find("</boost_serialization>"));

    for (const std::string& text : {missing, reordered, garbage}) {
        writeText(path("broken.xml"), text);
        InstallationPerformanceParameters target;
        EXPECT_FALSE(InstallationPerformanceParameters::load(target, path("broken.xml")));
        EXPECT_EQ(target.decrypterInputBufferSize(), 8U) << "read before the failure";
        EXPECT_FALSE(target.forceVerificationRewriteMode()) << "after the failure";
        EXPECT_EQ(target.verificationScale(), InstallationPerformanceParameters::defaults().verificationScale());
    }
    writeText(path("broken.xml"), truncated);
    InstallationPerformanceParameters target;
    EXPECT_FALSE(InstallationPerformanceParameters::load(target, path("broken.xml")));
    EXPECT_EQ(target, changedParameters()) << "every field was read before the archive ended";
    EXPECT_EQ(mainLog(), std::vector<std::string>(4, "WRN Failed to load InstallationPerformanceParameters from " +
                                                        path("broken.xml")));
}

TEST_F(InstallationPerformanceParametersTest, ClosingTagLongerThanItsElementIsRejected) {
    ASSERT_TRUE(InstallationPerformanceParameters::save(changedParameters(), path("ipp.xml")));
    std::string text = readText(path("ipp.xml"));
    const std::string closing = "</verificationScale>";
    text.replace(text.find(closing), closing.size(), "</verificationScaleFollowedByAMuchLongerName>");
    writeText(path("long.xml"), text);
    InstallationPerformanceParameters target;
    EXPECT_FALSE(InstallationPerformanceParameters::load(target, path("long.xml")));
    EXPECT_EQ(target.otaDownloadingProgressScale(), -0.1f) << "read before the failure";
}

TEST_F(InstallationPerformanceParametersTest, UnreachableFilesFailWithAWarning) {
    InstallationPerformanceParameters target = changedParameters();
    EXPECT_FALSE(InstallationPerformanceParameters::load(target, path("absent.xml")));
    EXPECT_EQ(target, changedParameters());
    EXPECT_FALSE(InstallationPerformanceParameters::save(target, path("absent/ipp.xml")));
    EXPECT_EQ(mainLog(), (std::vector<std::string>{
                             "WRN Failed to load InstallationPerformanceParameters from " + path("absent.xml"),
                             "WRN Failed to save InstallationPerformanceParameters to " + path("absent/ipp.xml"),
                         }));
}

} // namespace
} // namespace Testing
} // namespace Orvo

#pragma once
// The elements of a saved parameter file in document order, to pin the file format: an element
// that holds others appears as its name, a leaf as "name=text". Boost's own root is left out.

#include <gmock/gmock.h>

#include <cstdlib>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace Orvo::Testing {

inline std::vector<std::string> archiveElements(const std::string& xml) {
    static const std::regex element("<(\\w+)[^>/]*>([^<]*)(</\\1>)?");
    std::vector<std::string> elements;
    for (std::sregex_iterator match(xml.begin(), xml.end(), element), end; match != end; ++match) {
        if ((*match)[1] == "boost_serialization") continue;
        elements.push_back((*match)[3].matched ? (*match)[1].str() + "=" + (*match)[2].str() : (*match)[1].str());
    }
    return elements;
}

// A float leaf whose text reads back as `value`.
inline ::testing::Matcher<std::string> FloatElement(const std::string& name, float value) {
    return ::testing::AllOf(
        ::testing::StartsWith(name + "="),
        ::testing::ResultOf(
            [offset = name.size() + 1](const std::string& leaf) { return std::strtof(leaf.c_str() + offset, nullptr); },
            ::testing::FloatEq(value)));
}

// Matchers for the elements written in `elements`, separated by blanks.
inline std::vector<::testing::Matcher<std::string>> elementsOf(const std::string& elements) {
    std::vector<::testing::Matcher<std::string>> matchers;
    std::istringstream words(elements);
    for (std::string word; words >> word;)
        matchers.push_back(word);
    return matchers;
}

// The installation performance parameters with their defaults, in file order. An optional is
// written as its "initialized" flag (and a "value" when set), a bool as 0 or 1.
inline std::vector<::testing::Matcher<std::string>> defaultPerformanceElements() {
    std::vector<::testing::Matcher<std::string>> elements = elementsOf(
        "flashStreamBufferSize initialized=0 flashSinkBufferSize initialized=0 networkStreamBufferSize=1048576 "
        "usbFileStreamBufferSize initialized=0 decrypterInputBufferSize=65536 installationChunkSize=1048576 "
        "verificationChunkSize=1048576 forceInstallationRewriteMode initialized=0 forceVerificationRewriteMode "
        "initialized=0 installationWorkerThreads=0 allowBpsProviders=1 parallelizeReads=1 parallelizeWrites=1 "
        "numberOfBuffersForParallelization=4 buffersSizeForParallelization=262144");
    elements.push_back(FloatElement("verificationInitialBpsEstimate", 2.0e8f));
    elements.push_back(FloatElement("otaDownloadingProgressScale", 30.0f));
    elements.push_back(FloatElement("verificationScale", 0.2f));
    return elements;
}

} // namespace Orvo::Testing

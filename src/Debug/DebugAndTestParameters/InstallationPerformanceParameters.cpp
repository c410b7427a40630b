#include "Debug/DebugAndTestParameters/InstallationPerformanceParameters.h"

#include "Common/Logging/Logging.h"
#include "Debug/DebugAndTestParameters/XmlArchive.h"

#include <boost/serialization/optional.hpp>

#include <tuple>

namespace Orvo {
namespace OrvoCommon {

namespace {

const char* const kArchiveObjectName = "InstallationPerformanceParameters";

} // namespace

const InstallationPerformanceParameters& InstallationPerformanceParameters::defaults() {
    static const InstallationPerformanceParameters instance;
    return instance;
}

template <class Archive>
void InstallationPerformanceParameters::serialize(Archive& archive, unsigned int /*version*/) {
    using boost::serialization::make_nvp;
    // In file order; the two output buffer sizes are not stored.
    archive& make_nvp("flashStreamBufferSize", m_flashStreamBufferSize);
    archive& make_nvp("flashSinkBufferSize", m_flashSinkBufferSize);
    archive& make_nvp("networkStreamBufferSize", m_networkStreamBufferSize);
    archive& make_nvp("usbFileStreamBufferSize", m_usbFileStreamBufferSize);
    archive& make_nvp("decrypterInputBufferSize", m_decrypterInputBufferSize);
    archive& make_nvp("installationChunkSize", m_installationChunkSize);
    archive& make_nvp("verificationChunkSize", m_verificationChunkSize);
    archive& make_nvp("forceInstallationRewriteMode", m_forceInstallationRewriteMode);
    archive& make_nvp("forceVerificationRewriteMode", m_forceVerificationRewriteMode);
    archive& make_nvp("installationWorkerThreads", m_installationWorkerThreads);
    archive& make_nvp("allowBpsProviders", m_allowBpsProviders);
    archive& make_nvp("parallelizeReads", m_parallelizeReads);
    archive& make_nvp("parallelizeWrites", m_parallelizeWrites);
    archive& make_nvp("numberOfBuffersForParallelization", m_numberOfBuffersForParallelization);
    archive& make_nvp("buffersSizeForParallelization", m_buffersSizeForParallelization);
    archive& make_nvp("verificationInitialBpsEstimate", m_verificationInitialBpsEstimate);
    archive& make_nvp("otaDownloadingProgressScale", m_otaDownloadingProgressScale);
    archive& make_nvp("verificationScale", m_verificationScale);
}

template void InstallationPerformanceParameters::serialize(CheckedXmlIArchive&, unsigned int);
template void InstallationPerformanceParameters::serialize(boost::archive::xml_oarchive&, unsigned int);

void InstallationPerformanceParameters::read(InstallationPerformanceParameters& target, std::istream& in) {
    readXmlArchive(in, kArchiveObjectName, target);
}

void InstallationPerformanceParameters::write(const InstallationPerformanceParameters& source, std::ostream& out) {
    writeXmlArchive(out, kArchiveObjectName, source);
}

bool InstallationPerformanceParameters::load(InstallationPerformanceParameters& target, const std::string& path) {
    try {
        if (readXmlFile(path, kArchiveObjectName, target)) {
            return true;
        }
    } catch (...) {
        // reported below, like a file that cannot be opened
    }
    ORVO_LOG(WRN, "Failed to load InstallationPerformanceParameters from %s", path.c_str());
    return false;
}

bool InstallationPerformanceParameters::save(const InstallationPerformanceParameters& source, const std::string& path) {
    try {
        writeXmlFile(path, kArchiveObjectName, source);
        return true;
    } catch (...) {
        ORVO_LOG(WRN, "Failed to save InstallationPerformanceParameters to %s", path.c_str());
        return false;
    }
}

bool InstallationPerformanceParameters::operator==(const InstallationPerformanceParameters& other) const {
    const auto fields = [](const InstallationPerformanceParameters& p) {
        return std::tie(p.m_flashStreamBufferSize, p.m_flashSinkBufferSize, p.m_networkStreamBufferSize,
                        p.m_usbFileStreamBufferSize, p.m_decrypterInputBufferSize, p.m_decrypterOutputBufferSize,
                        p.m_decompressorOutputBufferSize, p.m_installationChunkSize, p.m_verificationChunkSize,
                        p.m_forceInstallationRewriteMode, p.m_forceVerificationRewriteMode,
                        p.m_installationWorkerThreads, p.m_allowBpsProviders, p.m_parallelizeReads,
                        p.m_parallelizeWrites, p.m_numberOfBuffersForParallelization, p.m_buffersSizeForParallelization,
                        p.m_verificationInitialBpsEstimate, p.m_otaDownloadingProgressScale, p.m_verificationScale);
    };
    return fields(*this) == fields(other);
}

} // namespace OrvoCommon
} // namespace Orvo

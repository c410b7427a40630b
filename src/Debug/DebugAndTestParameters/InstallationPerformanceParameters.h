#pragma once
// Tuning values of the update engine's installation pipeline: buffer and chunk sizes, forced
// rewrite modes, worker threads, parallel reading and writing, and the scales of the progress
// estimate. Stored as a Boost XML archive (object "InstallationPerformanceParameters") or nested
// in the debug-and-test parameters.

#include "Debug/DebugAndTestParameters/ETransactionalRewriteMode.h"

#include <boost/optional.hpp>

#include <cstdint>
#include <istream>
#include <ostream>
#include <string>

namespace Orvo {
namespace OrvoCommon {

class InstallationPerformanceParameters {
public:
    using RewriteMode = Common::Storage::ETransactionalRewriteMode;

    // The process-wide default instance, built on first use (thread-safe).
    static const InstallationPerformanceParameters& defaults();

    // Reads the file at `path` into target / writes source to `path`. Failures are logged and
    // reported as false; on a failed load the fields read before the failure keep their values.
    static bool load(InstallationPerformanceParameters& target, const std::string& path);
    static bool save(const InstallationPerformanceParameters& source, const std::string& path);

    // The archive itself, without logging: read throws on malformed input, keeping the fields
    // read before the failure. The file operations and the fuzzer use them.
    static void read(InstallationPerformanceParameters& target, std::istream& in);
    static void write(const InstallationPerformanceParameters& source, std::ostream& out);

    bool operator==(const InstallationPerformanceParameters& other) const;
    bool operator!=(const InstallationPerformanceParameters& other) const { return !(*this == other); }

    // Fields in file order.
    const boost::optional<uint32_t>& flashStreamBufferSize() const { return m_flashStreamBufferSize; }
    const boost::optional<uint32_t>& flashSinkBufferSize() const { return m_flashSinkBufferSize; }
    uint32_t networkStreamBufferSize() const { return m_networkStreamBufferSize; }
    const boost::optional<uint32_t>& usbFileStreamBufferSize() const { return m_usbFileStreamBufferSize; }
    uint32_t decrypterInputBufferSize() const { return m_decrypterInputBufferSize; }
    uint32_t installationChunkSize() const { return m_installationChunkSize; }
    uint32_t verificationChunkSize() const { return m_verificationChunkSize; }
    const boost::optional<RewriteMode>& forceInstallationRewriteMode() const { return m_forceInstallationRewriteMode; }
    const boost::optional<RewriteMode>& forceVerificationRewriteMode() const { return m_forceVerificationRewriteMode; }
    int32_t installationWorkerThreads() const { return m_installationWorkerThreads; }
    bool allowBpsProviders() const { return m_allowBpsProviders; }
    bool parallelizeReads() const { return m_parallelizeReads; }
    bool parallelizeWrites() const { return m_parallelizeWrites; }
    int32_t numberOfBuffersForParallelization() const { return m_numberOfBuffersForParallelization; }
    uint32_t buffersSizeForParallelization() const { return m_buffersSizeForParallelization; }
    float verificationInitialBpsEstimate() const { return m_verificationInitialBpsEstimate; }
    float otaDownloadingProgressScale() const { return m_otaDownloadingProgressScale; }
    float verificationScale() const { return m_verificationScale; }
    // Not stored in files: always the built-in values.
    uint32_t decrypterOutputBufferSize() const { return m_decrypterOutputBufferSize; }
    uint32_t decompressorOutputBufferSize() const { return m_decompressorOutputBufferSize; }

    // Setters for developer tools and tests, one per stored field.
    void setFlashStreamBufferSize(const boost::optional<uint32_t>& value) { m_flashStreamBufferSize = value; }
    void setFlashSinkBufferSize(const boost::optional<uint32_t>& value) { m_flashSinkBufferSize = value; }
    void setNetworkStreamBufferSize(uint32_t value) { m_networkStreamBufferSize = value; }
    void setUsbFileStreamBufferSize(const boost::optional<uint32_t>& value) { m_usbFileStreamBufferSize = value; }
    void setDecrypterInputBufferSize(uint32_t value) { m_decrypterInputBufferSize = value; }
    void setInstallationChunkSize(uint32_t value) { m_installationChunkSize = value; }
    void setVerificationChunkSize(uint32_t value) { m_verificationChunkSize = value; }
    void setForceInstallationRewriteMode(const boost::optional<RewriteMode>& value) {
        m_forceInstallationRewriteMode = value;
    }
    void setForceVerificationRewriteMode(const boost::optional<RewriteMode>& value) {
        m_forceVerificationRewriteMode = value;
    }
    void setInstallationWorkerThreads(int32_t value) { m_installationWorkerThreads = value; }
    void setAllowBpsProviders(bool value) { m_allowBpsProviders = value; }
    void setParallelizeReads(bool value) { m_parallelizeReads = value; }
    void setParallelizeWrites(bool value) { m_parallelizeWrites = value; }
    void setNumberOfBuffersForParallelization(int32_t value) { m_numberOfBuffersForParallelization = value; }
    void setBuffersSizeForParallelization(uint32_t value) { m_buffersSizeForParallelization = value; }
    void setVerificationInitialBpsEstimate(float value) { m_verificationInitialBpsEstimate = value; }
    void setOtaDownloadingProgressScale(float value) { m_otaDownloadingProgressScale = value; }
    void setVerificationScale(float value) { m_verificationScale = value; }

    // Boost.Serialization; instantiated for the XML archives only.
    template <class Archive>
    void serialize(Archive& archive, unsigned int version);

private:
    boost::optional<uint32_t> m_flashStreamBufferSize;
    boost::optional<uint32_t> m_flashSinkBufferSize;
    uint32_t m_networkStreamBufferSize = 1048576;
    boost::optional<uint32_t> m_usbFileStreamBufferSize;
    uint32_t m_decrypterInputBufferSize = 65536;
    uint32_t m_decrypterOutputBufferSize = 262144;
    uint32_t m_decompressorOutputBufferSize = 1048576;
    uint32_t m_installationChunkSize = 1048576;
    uint32_t m_verificationChunkSize = 1048576;
    boost::optional<RewriteMode> m_forceInstallationRewriteMode;
    boost::optional<RewriteMode> m_forceVerificationRewriteMode;
    int32_t m_installationWorkerThreads = 0;
    bool m_allowBpsProviders = true;
    bool m_parallelizeReads = true;
    bool m_parallelizeWrites = true;
    int32_t m_numberOfBuffersForParallelization = 4;
    uint32_t m_buffersSizeForParallelization = 262144;
    float m_verificationInitialBpsEstimate = 2.0e8f; // bytes per second
    float m_otaDownloadingProgressScale = 30.0f;
    float m_verificationScale = 0.2f;
};

} // namespace OrvoCommon
} // namespace Orvo

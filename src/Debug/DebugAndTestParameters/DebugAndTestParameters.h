#pragma once
// Developer switches of the update engine, read from DebugAndTestParameters.xml in the system
// read-write data directory; never read at load time on a production device.

#include "Debug/DebugAndTestParameters/InstallationPerformanceParameters.h"

#include <boost/optional.hpp>

#include <cstdint>
#include <istream>
#include <ostream>
#include <map>
#include <string>

namespace Orvo {
namespace OrvoCommon {

class DebugAndTestParameters {
public:
    // The process-wide instance. Throws GenericException "DebugAndTestParameters were not
    // loaded." outside production mode before loadDebugAndTestParameters().
    static DebugAndTestParameters& getDebugAndTestParameters();
    // One-time load with the production gate.
    static void loadDebugAndTestParameters();
    // Reads the file again (no production gate); throws before the first load.
    bool reload();
    // Writes the instance to `path`; failures are logged, not thrown.
    void save(const std::string& path) const;
    // The archive itself, without logging: read throws on malformed input, keeping the fields
    // read before the failure. The file operations and the fuzzer use them.
    void read(std::istream& in);
    void write(std::ostream& out) const;
    // The file that load and reload read: "DebugAndTestParameters.xml" in the system read-write
    // data directory. Needs initialised product information.
    static std::string filePath();

    // A separate set with the defaults; the process-wide one is getDebugAndTestParameters().
    DebugAndTestParameters();

    bool operator==(const DebugAndTestParameters& other) const;
    bool operator!=(const DebugAndTestParameters& other) const { return !(*this == other); }

    boost::optional<int32_t> getCustomIntParam(const std::string& name) const;

    bool noRebootFlag() const;
    bool skipCompatibilityChecker() const;
    bool skipVersionChecker() const;
    bool skipIntegrityChecker() const;
    bool dontSwitchPartitions() const;
    bool emulateWasSuccessfulUpgrade() const;
    bool testTransformationFailure() const;
    bool useOTNTestServer() const;
    const std::string& otnTestServerAddress() const;
    uint32_t numberOfFailures() const;
    bool durationReduced() const;
    int32_t setOTASetServiceOption() const;
    const InstallationPerformanceParameters& installationPerformanceParameters() const;
    const std::string& serviceTransactionStubScenarioPath() const;
    const std::string& coreTransactionStubScenarioPath() const;
    const std::string& otnOUItemDownloadDirectory() const;
    const std::string& resumeDataBackupDirectory() const;
    const std::map<std::string, int32_t>& customIntParams() const;

    // Setters for developer tools and tests: change the values, then save() them to a file, or
    // use them in place in the process-wide instance.
    void setNoRebootFlag(bool value);
    void setSkipCompatibilityChecker(bool value);
    void setSkipVersionChecker(bool value);
    void setSkipIntegrityChecker(bool value);
    void setDontSwitchPartitions(bool value);
    void setEmulateWasSuccessfulUpgrade(bool value);
    void setTestTransformationFailure(bool value);
    void setUseOTNTestServer(bool value);
    void setOtnTestServerAddress(const std::string& value);
    void setNumberOfFailures(uint32_t value);
    void setDurationReduced(bool value);
    void setSetOTASetServiceOption(int32_t value);
    void setInstallationPerformanceParameters(const InstallationPerformanceParameters& value);
    void setServiceTransactionStubScenarioPath(const std::string& value);
    void setCoreTransactionStubScenarioPath(const std::string& value);
    void setOtnOUItemDownloadDirectory(const std::string& value);
    void setResumeDataBackupDirectory(const std::string& value);
    void setCustomIntParam(const std::string& name, int32_t value);
    void setCustomIntParams(const std::map<std::string, int32_t>& value);

    // Boost.Serialization; instantiated for the XML archives only.
    template <class Archive>
    void serialize(Archive& archive, unsigned int version);

private:
    static DebugAndTestParameters& instance(); // without the load check
    bool readFile();

    bool m_noRebootFlag = false;
    bool m_skipCompatibilityChecker = false;
    bool m_skipVersionChecker = false;
    bool m_skipIntegrityChecker = false;
    bool m_dontSwitchPartitions = false;
    bool m_emulateWasSuccessfulUpgrade = false;
    bool m_testTransformationFailure = false;
    bool m_useOTNTestServer = false;
    std::string m_otnTestServerAddress;
    uint32_t m_numberOfFailures = 0;
    bool m_durationReduced = false;
    int32_t m_setOTASetServiceOption = 0;
    InstallationPerformanceParameters m_installationPerformanceParameters;
    std::string m_serviceTransactionStubScenarioPath;
    std::string m_coreTransactionStubScenarioPath;
    std::string m_otnOUItemDownloadDirectory;
    std::string m_resumeDataBackupDirectory;
    std::map<std::string, int32_t> m_customIntParams;
};

} // namespace OrvoCommon
} // namespace Orvo

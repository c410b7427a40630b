#pragma once
// Developer switches of the update engine, read from DebugAndTestParameters.xml in the system
// read-write data directory; never read at load time on a production device.
// (Public interface; the owner of this folder completes the declarations.)

#include "Debug/DebugAndTestParameters/InstallationPerformanceParameters.h"

#include <boost/optional.hpp>

#include <cstdint>
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
};

} // namespace OrvoCommon
} // namespace Orvo

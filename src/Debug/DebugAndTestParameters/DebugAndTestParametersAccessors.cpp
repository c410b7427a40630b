// Plain accessors and setters of the debug-and-test parameters.
#include "Debug/DebugAndTestParameters/DebugAndTestParameters.h"

namespace Orvo {
namespace OrvoCommon {

bool DebugAndTestParameters::noRebootFlag() const { return m_noRebootFlag; }
bool DebugAndTestParameters::skipCompatibilityChecker() const { return m_skipCompatibilityChecker; }
bool DebugAndTestParameters::skipVersionChecker() const { return m_skipVersionChecker; }
bool DebugAndTestParameters::skipIntegrityChecker() const { return m_skipIntegrityChecker; }
bool DebugAndTestParameters::dontSwitchPartitions() const { return m_dontSwitchPartitions; }
bool DebugAndTestParameters::emulateWasSuccessfulUpgrade() const { return m_emulateWasSuccessfulUpgrade; }
bool DebugAndTestParameters::testTransformationFailure() const { return m_testTransformationFailure; }
bool DebugAndTestParameters::useOTNTestServer() const { return m_useOTNTestServer; }
const std::string& DebugAndTestParameters::otnTestServerAddress() const { return m_otnTestServerAddress; }
uint32_t DebugAndTestParameters::numberOfFailures() const { return m_numberOfFailures; }
bool DebugAndTestParameters::durationReduced() const { return m_durationReduced; }
int32_t DebugAndTestParameters::setOTASetServiceOption() const { return m_setOTASetServiceOption; }
const InstallationPerformanceParameters& DebugAndTestParameters::installationPerformanceParameters() const {
    return m_installationPerformanceParameters;
}
const std::string& DebugAndTestParameters::serviceTransactionStubScenarioPath() const {
    return m_serviceTransactionStubScenarioPath;
}
const std::string& DebugAndTestParameters::coreTransactionStubScenarioPath() const {
    return m_coreTransactionStubScenarioPath;
}
const std::string& DebugAndTestParameters::otnOUItemDownloadDirectory() const { return m_otnOUItemDownloadDirectory; }
const std::string& DebugAndTestParameters::resumeDataBackupDirectory() const { return m_resumeDataBackupDirectory; }
const std::map<std::string, int32_t>& DebugAndTestParameters::customIntParams() const { return m_customIntParams; }

void DebugAndTestParameters::setNoRebootFlag(bool value) { m_noRebootFlag = value; }
void DebugAndTestParameters::setSkipCompatibilityChecker(bool value) { m_skipCompatibilityChecker = value; }
void DebugAndTestParameters::setSkipVersionChecker(bool value) { m_skipVersionChecker = value; }
void DebugAndTestParameters::setSkipIntegrityChecker(bool value) { m_skipIntegrityChecker = value; }
void DebugAndTestParameters::setDontSwitchPartitions(bool value) { m_dontSwitchPartitions = value; }
void DebugAndTestParameters::setEmulateWasSuccessfulUpgrade(bool value) { m_emulateWasSuccessfulUpgrade = value; }
void DebugAndTestParameters::setTestTransformationFailure(bool value) { m_testTransformationFailure = value; }
void DebugAndTestParameters::setUseOTNTestServer(bool value) { m_useOTNTestServer = value; }
void DebugAndTestParameters::setOtnTestServerAddress(const std::string& value) { m_otnTestServerAddress = value; }
void DebugAndTestParameters::setNumberOfFailures(uint32_t value) { m_numberOfFailures = value; }
void DebugAndTestParameters::setDurationReduced(bool value) { m_durationReduced = value; }
void DebugAndTestParameters::setSetOTASetServiceOption(int32_t value) { m_setOTASetServiceOption = value; }
void DebugAndTestParameters::setInstallationPerformanceParameters(const InstallationPerformanceParameters& value) {
    m_installationPerformanceParameters = value;
}
void DebugAndTestParameters::setServiceTransactionStubScenarioPath(const std::string& value) {
    m_serviceTransactionStubScenarioPath = value;
}
void DebugAndTestParameters::setCoreTransactionStubScenarioPath(const std::string& value) {
    m_coreTransactionStubScenarioPath = value;
}
void DebugAndTestParameters::setOtnOUItemDownloadDirectory(const std::string& value) {
    m_otnOUItemDownloadDirectory = value;
}
void DebugAndTestParameters::setResumeDataBackupDirectory(const std::string& value) {
    m_resumeDataBackupDirectory = value;
}
void DebugAndTestParameters::setCustomIntParams(const std::map<std::string, int32_t>& value) {
    m_customIntParams = value;
}

void DebugAndTestParameters::setCustomIntParam(const std::string& name, int32_t value) {
    m_customIntParams[name] = value;
}

} // namespace OrvoCommon
} // namespace Orvo

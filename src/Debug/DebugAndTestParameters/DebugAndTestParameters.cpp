#include "Debug/DebugAndTestParameters/DebugAndTestParameters.h"

#include "Common/Logging/Logging.h"
#include "Common/Utils/ErrorInfo.h"
#include "Debug/DebugAndTestParameters/XmlArchive.h"
#include "Platform/Product/IProductInfo.h"

#include <Orvo/Common/Debug/ProductionConfig.h>

#include <boost/filesystem/path.hpp>
#include <boost/serialization/map.hpp>
#include <boost/serialization/string.hpp>

#include <atomic>
#include <exception>
#include <tuple>

namespace Orvo {
namespace OrvoCommon {

namespace {

const char* const kArchiveObjectName = "DebugAndTestParameters";
const char* const kFileName = "DebugAndTestParameters.xml";
// Where the OTN test server listens unless the file names another.
const char* const kDefaultOtnTestServerAddress = "127.0.0.1:8080/";

// Set by the first load, whatever its outcome; never cleared.
std::atomic<bool> g_loaded{false};

std::string currentExceptionText() {
    try {
        throw;
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (...) {
        return "unknown exception";
    }
}

} // namespace

DebugAndTestParameters::DebugAndTestParameters()
    : m_otnTestServerAddress(kDefaultOtnTestServerAddress),
      m_installationPerformanceParameters(InstallationPerformanceParameters::defaults()),
      m_customIntParams{{"testParam0", 0}, {"testParam1", 1}} {}

DebugAndTestParameters& DebugAndTestParameters::instance() {
    static DebugAndTestParameters parameters;
    return parameters;
}

DebugAndTestParameters& DebugAndTestParameters::getDebugAndTestParameters() {
    if (!g_loaded && !Common::Debug::isProduction()) {
        ORVO_THROW(Common::Utils::GenericException()
                   << Common::Utils::errinfo_description("DebugAndTestParameters were not loaded."));
    }
    return instance();
}

void DebugAndTestParameters::loadDebugAndTestParameters() {
    if (g_loaded) {
        ORVO_LOG(WRN, "DebugAndTestParameters were already loaded.");
        return;
    }
    if (Common::Debug::isProduction()) {
        ORVO_LOG(INF, "We are in production mode. Will not load DebugAndTestParameters.");
    } else {
        ORVO_LOG(DBG, "Loading DebugAndTestParameters.");
        instance().readFile();
    }
    g_loaded = true; // a failed read is not retried: the defaults stay in force
}

bool DebugAndTestParameters::reload() {
    // Only the flag counts here, not production mode: a reload on a production device reads the
    // file on purpose.
    if (!g_loaded) {
        ORVO_LOG(ERR, "DebugAndTestParameters not yet loaded - use loadDebugAndTestParameters() first");
        ORVO_THROW(Common::Utils::GenericException()
                   << Common::Utils::errinfo_description("load DebugAndTestParameters before reload"));
    }
    return readFile();
}

std::string DebugAndTestParameters::filePath() {
    return (boost::filesystem::path(Platform::IProductInfo::getSystemRwDataDirectory()) / kFileName).string();
}

bool DebugAndTestParameters::readFile() {
    const std::string path = filePath();
    ORVO_LOG(INF, "Opening config from %s", path.c_str());
    try {
        if (readXmlFile(path, kArchiveObjectName, *this)) {
            return true;
        }
        ORVO_LOG(WRN, "Failed to open DebugAndTestParameters from %s", path.c_str());
    } catch (...) {
        ORVO_LOG(WRN, "Failed to load DebugAndTestParameters from %s: %s", path.c_str(),
                 currentExceptionText().c_str());
    }
    return false;
}

void DebugAndTestParameters::read(std::istream& in) { readXmlArchive(in, kArchiveObjectName, *this); }

void DebugAndTestParameters::write(std::ostream& out) const { writeXmlArchive(out, kArchiveObjectName, *this); }

void DebugAndTestParameters::save(const std::string& path) const {
    try {
        writeXmlFile(path, kArchiveObjectName, *this);
    } catch (...) {
        ORVO_LOG(WRN, "Failed to save DebugAndTestParameters to %s: %s", path.c_str(), currentExceptionText().c_str());
    }
}

boost::optional<int32_t> DebugAndTestParameters::getCustomIntParam(const std::string& name) const {
    const auto entry = m_customIntParams.find(name);
    if (entry == m_customIntParams.end()) {
        ORVO_LOG(DBG, "Getting custom debug parameter %s: parameter not set.", name.c_str());
        return boost::none;
    }
    ORVO_LOG(DBG, "Getting custom debug parameter %s: %d.", name.c_str(), entry->second);
    return entry->second;
}

template <class Archive>
void DebugAndTestParameters::serialize(Archive& archive, unsigned int /*version*/) {
    using boost::serialization::make_nvp;
    archive& make_nvp("noRebootFlag", m_noRebootFlag);
    archive& make_nvp("skipCompatibilityChecker", m_skipCompatibilityChecker);
    archive& make_nvp("skipVersionChecker", m_skipVersionChecker);
    archive& make_nvp("skipIntegrityChecker", m_skipIntegrityChecker);
    archive& make_nvp("dontSwitchPartitions", m_dontSwitchPartitions);
    archive& make_nvp("emulateWasSuccessfulUpgrade", m_emulateWasSuccessfulUpgrade);
    archive& make_nvp("testTransformationFailure", m_testTransformationFailure);
    archive& make_nvp("useOTNTestServer", m_useOTNTestServer);
    archive& make_nvp("otnTestServerAddress", m_otnTestServerAddress);
    archive& make_nvp("numberOfFailures", m_numberOfFailures);
    archive& make_nvp("durationReduced", m_durationReduced);
    archive& make_nvp("setOTASetServiceOption", m_setOTASetServiceOption);
    archive& make_nvp("installationPerformanceParameters", m_installationPerformanceParameters);
    archive& make_nvp("serviceTransactionStubScenarioPath", m_serviceTransactionStubScenarioPath);
    archive& make_nvp("coreTransactionStubScenarioPath", m_coreTransactionStubScenarioPath);
    archive& make_nvp("otnOUItemDownloadDirectory", m_otnOUItemDownloadDirectory);
    archive& make_nvp("resumeDataBackupDirectory", m_resumeDataBackupDirectory);
    archive& make_nvp("customIntParams", m_customIntParams);
}

template void DebugAndTestParameters::serialize(CheckedXmlIArchive&, unsigned int);
template void DebugAndTestParameters::serialize(boost::archive::xml_oarchive&, unsigned int);

bool DebugAndTestParameters::operator==(const DebugAndTestParameters& other) const {
    const auto fields = [](const DebugAndTestParameters& p) {
        return std::tie(p.m_noRebootFlag, p.m_skipCompatibilityChecker, p.m_skipVersionChecker,
                        p.m_skipIntegrityChecker, p.m_dontSwitchPartitions, p.m_emulateWasSuccessfulUpgrade,
                        p.m_testTransformationFailure, p.m_useOTNTestServer, p.m_otnTestServerAddress,
                        p.m_numberOfFailures, p.m_durationReduced, p.m_setOTASetServiceOption,
                        p.m_installationPerformanceParameters, p.m_serviceTransactionStubScenarioPath,
                        p.m_coreTransactionStubScenarioPath, p.m_otnOUItemDownloadDirectory,
                        p.m_resumeDataBackupDirectory, p.m_customIntParams);
    };
    return fields(*this) == fields(other);
}

} // namespace OrvoCommon
} // namespace Orvo

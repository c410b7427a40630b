#include "DeviceReport.h"

#include "SystemInfoKeys.h"

#include "orvo/device/DeviceConf.h"
#include "orvo/device/LogStore.h"
#include "orvo/device/SettingsStore.h"

#include <cstdio>
#include <ctime>
#include <vector>

namespace Orvo {
namespace Emulator {
namespace {

std::string describe(const SystemInfoValue& value) {
    switch (value.type) {
    case SystemInfoValue::Type::Int:
        return std::to_string(value.intValue);
    case SystemInfoValue::Type::Bool:
        return value.boolValue ? "true" : "false";
    case SystemInfoValue::Type::Double: {
        char text[64];
        std::snprintf(text, sizeof text, "%g", value.doubleValue);
        return text;
    }
    case SystemInfoValue::Type::String:
        return "\"" + value.stringValue + "\"";
    case SystemInfoValue::Type::Error:
        break;
    }
    return "fails with error " + std::to_string(value.errorCode);
}

void printFacts(std::ostream& out, const std::string& deviceDir) {
    const DeviceConf conf = DeviceConf::load(deviceDir);
    out << "System information (device.conf)\n";
    for (const auto& entry : conf.systemInfo) {
        char key[64];
        std::snprintf(key, sizeof key, "%6d %-28s", entry.first, Tools::systemInfoKeyMeaning(entry.first));
        out << "  " << key << describe(entry.second) << "\n";
    }
    out << "Platform roots\n";
    for (const auto& root : conf.tzplatform) {
        out << "  " << root.first << " " << root.second << "\n";
    }
    out << "Production mode: " << (conf.production ? "yes" : "no") << "\n";
}

void printSettings(std::ostream& out, const std::string& deviceDir) {
    out << "\nSettings\n";
    for (const std::string& key : listSettings(deviceDir)) {
        Setting setting;
        if (readSetting(deviceDir, key, setting) == 0) {
            out << "  " << key << " = " << setting.value << " (" << settingTypeName(setting.type) << ")\n";
        }
    }
}

void printLogTail(std::ostream& out, const std::string& deviceDir, std::size_t logTail) {
    static const char kPriorityLetters[] = "??VDIWEFS";
    const std::vector<LogRecord> records = readLogRecords(deviceDir, 0);
    const std::size_t first = records.size() > logTail ? records.size() - logTail : 0;
    out << "\nMain log (last " << records.size() - first << " of " << records.size() << " records)\n";
    for (std::size_t i = first; i < records.size(); ++i) {
        const LogRecord& record = records[i];
        const std::time_t seconds = static_cast<std::time_t>(record.seconds);
        std::tm local{};
        localtime_r(&seconds, &local);
        char stamp[32];
        std::strftime(stamp, sizeof stamp, "%m-%d %H:%M:%S", &local);
        const int priority = record.priority >= 0 && record.priority <= 8 ? record.priority : 0;
        out << "  " << stamp << " " << kPriorityLetters[priority] << "/" << record.tag << "(" << record.pid
            << "): " << record.message << "\n";
    }
}

} // namespace

void printDeviceReport(std::ostream& out, const std::string& deviceDir, std::size_t logTail) {
    out << "Device " << deviceDir << "\n\n";
    printFacts(out, deviceDir);
    printSettings(out, deviceDir);
    printLogTail(out, deviceDir, logTail);
}

} // namespace Emulator
} // namespace Orvo

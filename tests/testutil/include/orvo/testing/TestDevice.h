#pragma once
// An emulated device for one test.

#include "orvo/device/LogStore.h"
#include "orvo/device/SettingsStore.h"

#include <memory>
#include <string>
#include <vector>

namespace Orvo::Testing {

class TemporaryDirectory;

// True inside the device sandbox: the device's rootfs is mounted at the device paths.
bool inSandbox();

// Outside the sandbox: a new temporary device made from the profile, with ORVO_DEVICE_DIR
// pointing at it while the object lives (the previous value is restored afterwards).
// Inside the sandbox: the sandbox's own device, reset to the profile (files, settings, logs).
class TestDevice {
public:
    explicit TestDevice(const std::string& profile = "tv");
    ~TestDevice();
    TestDevice(const TestDevice&) = delete;
    TestDevice& operator=(const TestDevice&) = delete;

    const std::string& dir() const { return m_dir; }

    // Sets or replaces one device.conf entry: setConf("system-info.128", "string T-ABC-1.0").
    void setConf(const std::string& key, const std::string& value);
    void removeConf(const std::string& key);

    // Makes a setting as the device's installation or vconftool does (vconf itself never creates
    // a key): addSetting("db/x", Orvo::Emulator::SettingType::Int, "0").
    void addSetting(const std::string& key, Orvo::Emulator::SettingType type, const std::string& value);

    // Files of the device's rootfs, named by their absolute path on the device.
    std::string rootfsPath(const std::string& devicePath) const;
    void writeFile(const std::string& devicePath, const std::string& content);
    void removeFile(const std::string& devicePath);

    std::vector<Orvo::Emulator::LogRecord> logRecords(int buffer) const;
    // The messages of one tag in a buffer (a log_id_t; 0 is LOG_ID_MAIN), in order.
    std::vector<std::string> logMessages(int buffer = 0, const std::string& tag = "orvotv.Orvo") const;
    void clearLogs();

private:
    void rewriteConf(const std::string& key, const std::string* value);

    std::unique_ptr<TemporaryDirectory> m_temporary;
    std::string m_dir;
    bool m_hadDeviceDir = false;
    std::string m_previousDeviceDir;
};

} // namespace Orvo::Testing

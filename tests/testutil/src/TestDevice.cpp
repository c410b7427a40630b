#include "orvo/testing/TestDevice.h"

#include "orvo/device/Device.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace Orvo::Testing {
namespace {

// Replaces a file in one rename, so that a platform call never reads it half written.
void writeWholeFile(const std::string& path, const std::string& content) {
    const std::string temporary = path + ".tmp-" + std::to_string(::getpid());
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        out << content;
        if (!out.flush()) throw std::runtime_error("cannot write " + temporary);
    }
    if (std::rename(temporary.c_str(), path.c_str()) != 0) {
        std::remove(temporary.c_str());
        throw std::runtime_error("cannot replace " + path);
    }
}

std::string confKeyOf(const std::string& line) {
    const std::size_t equals = line.find('=');
    const std::size_t begin = line.find_first_not_of(" \t");
    if (equals == std::string::npos || line.find('#') < equals || begin >= equals) return "";
    return line.substr(begin, line.find_last_not_of(" \t", equals - 1) - begin + 1);
}

} // namespace

bool inSandbox() {
    // Inside the sandbox /common is a bind mount of the device's rootfs/common: same inode.
    const char* deviceDir = std::getenv("ORVO_DEVICE_DIR");
    struct stat mounted {};
    struct stat device {};
    return deviceDir != nullptr && ::stat("/common", &mounted) == 0 &&
           ::stat((std::string(deviceDir) + "/rootfs/common").c_str(), &device) == 0 &&
           mounted.st_dev == device.st_dev && mounted.st_ino == device.st_ino;
}

TestDevice::TestDevice(const std::string& profile) {
    const std::string dataDir = Orvo::Emulator::emulatorDataDirectory();
    if (inSandbox()) {
        m_dir = std::getenv("ORVO_DEVICE_DIR");
        Orvo::Emulator::resetDeviceToProfile(m_dir, dataDir, profile);
        Orvo::Emulator::resetDeviceState(m_dir, dataDir, profile);
        return;
    }
    m_temporary = std::make_unique<TemporaryDirectory>();
    m_dir = m_temporary->path() + "/device";
    Orvo::Emulator::createDevice(m_dir, dataDir, profile);
    const char* previous = std::getenv("ORVO_DEVICE_DIR");
    m_hadDeviceDir = previous != nullptr;
    m_previousDeviceDir = previous != nullptr ? previous : "";
    ::setenv("ORVO_DEVICE_DIR", m_dir.c_str(), 1);
}

TestDevice::~TestDevice() {
    if (m_temporary && m_hadDeviceDir)
        ::setenv("ORVO_DEVICE_DIR", m_previousDeviceDir.c_str(), 1);
    else if (m_temporary)
        ::unsetenv("ORVO_DEVICE_DIR");
}

void TestDevice::setConf(const std::string& key, const std::string& value) { rewriteConf(key, &value); }

void TestDevice::addSetting(const std::string& key, Orvo::Emulator::SettingType type, const std::string& value) {
    if (Orvo::Emulator::writeSetting(m_dir, key, {type, value}) != 0) throw std::runtime_error("cannot make " + key);
}

void TestDevice::removeConf(const std::string& key) { rewriteConf(key, nullptr); }

void TestDevice::rewriteConf(const std::string& key, const std::string* value) {
    const std::string path = m_dir + "/device.conf";
    std::ifstream in(path);
    std::string line;
    std::string result;
    while (std::getline(in, line))
        if (confKeyOf(line) != key) result += line + "\n";
    if (value != nullptr) result += key + " = " + *value + "\n";
    writeWholeFile(path, result);
}

std::string TestDevice::rootfsPath(const std::string& devicePath) const {
    if (devicePath.empty() || devicePath[0] != '/')
        throw std::invalid_argument("not an absolute device path: " + devicePath);
    return m_dir + "/rootfs" + devicePath;
}

void TestDevice::writeFile(const std::string& devicePath, const std::string& content) {
    const std::string path = rootfsPath(devicePath);
    fs::create_directories(fs::path(path).parent_path());
    writeWholeFile(path, content);
}

void TestDevice::removeFile(const std::string& devicePath) { fs::remove_all(rootfsPath(devicePath)); }

std::vector<Orvo::Emulator::LogRecord> TestDevice::logRecords(int buffer) const {
    return Orvo::Emulator::readLogRecords(m_dir, buffer);
}

std::vector<std::string> TestDevice::logMessages(int buffer, const std::string& tag) const {
    std::vector<std::string> messages;
    for (const auto& record : logRecords(buffer))
        if (record.tag == tag) messages.push_back(record.message);
    return messages;
}

void TestDevice::clearLogs() {
    for (const auto& entry : fs::directory_iterator(m_dir + "/log"))
        fs::resize_file(entry.path(), 0);
}

} // namespace Orvo::Testing

// The device's writers for tools such as the console: one device.conf entry, files of the rootfs.

#include "orvo/device/DeviceConf.h"
#include "orvo/device/DeviceEdits.h"
#include "orvo/testing/TestUtil.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

namespace Orvo::Testing {
namespace {

std::string confText(const TemporaryDirectory& dir) {
    std::ifstream file(dir.path() + "/device.conf");
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

void writeConf(const TemporaryDirectory& dir, const std::string& text) {
    std::ofstream(dir.path() + "/device.conf") << text;
}

TEST(DeviceEdits, AnEntryIsReplacedInPlaceOrAppendedAndEverythingElseStays) {
    const struct {
        const char* before;
        const char* name;
        const char* value;
        const char* after;
    } cases[] = {
        {"# c\nsystem-info.128 = string A\nproduction = false\n", "system-info.128", "string B",
         "# c\nsystem-info.128 = string B\nproduction = false\n"},
        {"production = false", "system-info.8", "int 1", "production = false\nsystem-info.8 = int 1\n"},
        {"  production=true  \n# production = x\n", "production", "false", "production = false\n# production = x\n"},
        {"system-info.1 = int 1\nsystem-info.1 = int 2\n", "system-info.1", "int 3", "system-info.1 = int 3\n"},
        {"system-info.10 = int 1\n", "system-info.1", "int 3", "system-info.10 = int 1\nsystem-info.1 = int 3\n"},
        {"", "production", "true", "production = true\n"},
    };
    for (const auto& c : cases) {
        const TemporaryDirectory dir;
        writeConf(dir, c.before);
        Emulator::setDeviceConfEntry(dir.path(), c.name, c.value);
        EXPECT_EQ(confText(dir), c.after) << c.before;
    }
}

TEST(DeviceEdits, WhatIsNotAnEntryOrADevicePathIsRefused) {
    const TemporaryDirectory dir;
    writeConf(dir, "production = false\n");
    const std::pair<const char*, const char*> entries[] = {
        {"", "x"}, {"a=b", "x"}, {"a b", "x"}, {"#a", "x"}, {"production", "true\nproduction = false"}};
    for (const auto& entry : entries)
        EXPECT_THROW(Emulator::setDeviceConfEntry(dir.path(), entry.first, entry.second), std::runtime_error)
            << entry.first;
    EXPECT_EQ(confText(dir), "production = false\n");
    for (const char* path : {"common/version.txt", "/common/../../device.conf", "/common/..", ""})
        EXPECT_THROW(Emulator::writeRootfsFile(dir.path(), path, "x"), std::runtime_error) << path;
    // A link in the way could lead out of the device: it is not followed.
    const TemporaryDirectory outside;
    ASSERT_EQ(::mkdir((dir.path() + "/rootfs").c_str(), 0755), 0);
    ASSERT_EQ(::symlink(outside.path().c_str(), (dir.path() + "/rootfs/usr").c_str()), 0);
    EXPECT_THROW(Emulator::writeRootfsFile(dir.path(), "/usr/share/x", "x"), std::runtime_error);
    EXPECT_THROW(Emulator::removeRootfsFile(dir.path(), "/usr/x"), std::runtime_error);
    EXPECT_FALSE(std::ifstream(outside.path() + "/share/x").good());
    Emulator::writeRootfsFile(dir.path(), "/common/version.txt", "1.0 x");
    EXPECT_TRUE(std::ifstream(dir.path() + "/rootfs/common/version.txt").good());
    Emulator::removeRootfsFile(dir.path(), "/common/version.txt");
    Emulator::removeRootfsFile(dir.path(), "/common/version.txt"); // already gone: fine
    EXPECT_FALSE(std::ifstream(dir.path() + "/rootfs/common/version.txt").good());
}

TEST(DeviceEdits, WritersInSeveralProcessesLoseNoEntry) {
    constexpr int kProcesses = 4;
    constexpr int kRounds = 25;
    const TemporaryDirectory dir;
    writeConf(dir, "# facts\nproduction = false\n");
    std::vector<pid_t> children;
    for (int p = 0; p < kProcesses; ++p) {
        const pid_t pid = ::fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            for (int round = 0; round < kRounds; ++round)
                Emulator::setDeviceConfEntry(dir.path(), "system-info." + std::to_string(p),
                                             "int " + std::to_string(round));
            ::_exit(0);
        }
        children.push_back(pid);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    const Emulator::DeviceConf conf = Emulator::DeviceConf::parse(confText(dir), "device.conf");
    ASSERT_EQ(conf.systemInfo.size(), static_cast<std::size_t>(kProcesses)) << confText(dir);
    for (const auto& entry : conf.systemInfo)
        EXPECT_EQ(entry.second.intValue, kRounds - 1);
    EXPECT_EQ(confText(dir).rfind("# facts\nproduction = false\n", 0), 0u);
}

} // namespace
} // namespace Orvo::Testing

// The device on a real small file system that fills up, then turns read-only: the platform
// libraries and the tools fail cleanly, keep every old value and show no part of a record.

#include "orvo/device/Device.h"
#include "orvo/testing/Process.h"
#include "orvo/testing/Tmpfs.h"

#include <dlog.h>
#include <gtest/gtest.h>
#include <vconf.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>

#include <fcntl.h>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace Orvo::Emulator;
using Orvo::Testing::ProcessResult;

namespace {

ProcessResult tool(std::vector<std::string> args) {
    args[0] = Orvo::Testing::toolPath(args[0]);
    return Orvo::Testing::runProcess(args);
}

std::string countryCode() {
    char* value = vconf_get_str("db/comss/countrycode");
    const std::string text = value != nullptr ? value : "(unreadable)";
    std::free(value);
    return text;
}

bool hasTemporaryFiles(const std::string& root) {
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        const std::string name = entry.path().filename().string();
        if (name.rfind(".tmp-", 0) == 0 || name.find(".new-") != std::string::npos) return true;
    }
    return false;
}

// A failure said in one line with a non-zero exit.
bool failsInOneLine(const ProcessResult& result) {
    const std::string said = result.err + result.out;
    return result.exitCode != 0 && std::count(said.begin(), said.end(), '\n') == 1;
}

struct Row {
    const char* name;
    std::function<bool()> failsCleanly;
};

// A device on a 4 MiB tmpfs of its own.
class SmallDisk : public testing::Test {
protected:
    void SetUp() override {
        if (!tmpfs.unavailable().empty()) GTEST_SKIP() << tmpfs.unavailable();
        createDevice(device, emulatorDataDirectory(), "tv");
        ::setenv("ORVO_DEVICE_DIR", device.c_str(), 1);
        ASSERT_EQ("DE", countryCode());
    }
    void TearDown() override { ::unsetenv("ORVO_DEVICE_DIR"); }

    // Every byte of the disk taken.
    void fill() {
        const int fd = ::open((disk + "/filler").c_str(), O_WRONLY | O_CREAT, 0644);
        ASSERT_GE(fd, 0);
        const std::string chunk(65536, 'f');
        for (std::size_t size = chunk.size(); size > 0; size /= 2)
            while (::write(fd, chunk.data(), size) == static_cast<ssize_t>(size)) {
            }
        ::close(fd);
    }

    void check(const std::vector<Row>& rows) {
        for (const Row& row : rows)
            EXPECT_TRUE(row.failsCleanly()) << row.name;
        EXPECT_EQ("DE", countryCode()) << "the old value";
        char* volatileValue = vconf_get_str("memory/menu/support/softwareupdate/newest_version");
        EXPECT_NE(nullptr, volatileValue) << "the volatile key";
        std::free(volatileValue);
        EXPECT_FALSE(hasTemporaryFiles(disk));
        EXPECT_FALSE(fs::exists(disk + "/made"));
    }

    Orvo::Testing::Tmpfs tmpfs{"4m"};
    const std::string disk = tmpfs.path();
    const std::string device = disk + "/device";
};

std::vector<Row> settingWriters() {
    return {
        {"vconf_set_str", [] { return vconf_set_str("db/comss/countrycode", "FR") == -1; }},
        {"vconftool set", [] {
             return tool({"vconftool", "set", "-t", "string", "db/comss/countrycode", "FR", "-f"}).exitCode != 0;
         }},
    };
}

} // namespace

TEST_F(SmallDisk, AFullDiskRefusesEveryWriteAndKeepsEveryRecordWholeOrAbsent) {
    // The log's last page half used: a long record fills its rest and is cut there.
    const std::string half(1900, 'h');
    ASSERT_GT(dlog_print(DLOG_INFO, "tag", "%s", half.c_str()), 0);
    fill();
    std::vector<Row> rows = settingWriters();
    rows.push_back({"vconf_get_ext_errno", [] {
                        vconf_set_int("db/comss/countrycode", 1);
                        return vconf_get_ext_errno() == VCONF_ERROR_FILE_NO_MEM;
                    }});
    rows.push_back({"dlog_print, cut by the full disk", [] {
                        const std::string cut(4000, 'c');
                        return dlog_print(DLOG_INFO, "tag", "%s", cut.c_str()) < 0;
                    }});
    rows.push_back({"orvo-device create", [this] { return failsInOneLine(tool({"orvo-device", "create", disk + "/made"})); }});
    check(rows);
    fs::remove(disk + "/filler");
    ASSERT_GT(dlog_print(DLOG_INFO, "tag", "later"), 0);
    const ProcessResult shown = tool({"dlogutil", "-d", "-b", "apps", "-v", "raw"});
    EXPECT_EQ(0, shown.exitCode) << shown.err;
    EXPECT_NE(std::string::npos, shown.out.find(half)) << shown.out;
    EXPECT_NE(std::string::npos, shown.out.find("later")) << shown.out;
    EXPECT_EQ(std::string::npos, shown.out.find("cccc")) << "a part of the cut record shown";
}

TEST_F(SmallDisk, AReadOnlyDiskRefusesEveryWriteAndKeepsEveryValue) {
    ASSERT_TRUE(tmpfs.remountReadOnly()) << std::strerror(errno);
    std::vector<Row> rows = settingWriters();
    rows.push_back({"vconf_get_ext_errno", [] {
                        vconf_set_int("db/comss/countrycode", 1);
                        return vconf_get_ext_errno() == VCONF_ERROR;
                    }});
    rows.push_back({"dlog_print", [] { return dlog_print(DLOG_INFO, "tag", "x") < 0; }});
    rows.push_back({"orvo-device reboot", [this] { return failsInOneLine(tool({"orvo-device", "reboot", device})); }});
    rows.push_back({"orvo-device create", [this] { return failsInOneLine(tool({"orvo-device", "create", disk + "/made"})); }});
    check(rows);
}

// Every writer of the device's state under a failing disk: each file call it makes fails in turn
// (no space, an I/O error, a read-only file system, a write cut short), and a real small disk
// fills up and turns read-only under the libraries and tools. The writer says so, what readers
// see is the old state or the new one and never a part, and no temporary file is left.

#include "orvo/device/Device.h"
#include "orvo/device/DeviceEdits.h"
#include "orvo/device/LogStore.h"
#include "orvo/device/SettingsStore.h"
#include "orvo/testing/InjectedFault.h"
#include "orvo/testing/Process.h"
#include "orvo/testing/Tmpfs.h"

#include <dlog.h>
#include <gtest/gtest.h>
#include <vconf.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <stdexcept>

#include <fcntl.h>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace Orvo::Emulator;
using Orvo::Testing::FileCall;
using Orvo::Testing::InjectedFault;

namespace {

std::string contentOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return in ? std::string(std::istreambuf_iterator<char>(in), {}) : "(unreadable)";
}

std::string settingText(const std::string& device, const std::string& key) {
    Setting setting;
    const int result = readSetting(device, key, setting);
    return result == 0 ? setting.value : "error " + std::to_string(result);
}

std::string logText(const std::string& device) {
    std::string text;
    for (const LogRecord& record : readLogRecords(device, 0))
        text += record.message.substr(0, 16) + "(" + std::to_string(record.message.size()) + ")|";
    return text;
}

// Temporary files of replaceFileAtomically and staging directories of createDevice.
std::vector<std::string> leftovers(const std::string& root) {
    std::vector<std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        const std::string name = entry.path().filename().string();
        if (name.rfind(".tmp-", 0) == 0 || name.find(".new-") != std::string::npos) found.push_back(entry.path());
    }
    return found;
}

// A tool's failure: a non-zero exit, and one line where the tool's wording is this device's own
// (vconftool words it as the platform's does).
bool toolFails(std::vector<std::string> args, bool oneLine = true) {
    args[0] = Orvo::Testing::toolPath(args[0]);
    const Orvo::Testing::ProcessResult result = Orvo::Testing::runProcess(args);
    const std::string said = result.err + result.out;
    return result.exitCode != 0 && (!oneLine || std::count(said.begin(), said.end(), '\n') == 1);
}

// A throwing writer reports its failure by the exception.
bool succeeds(const std::function<void()>& write) {
    try {
        write();
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

struct Writer {
    const char* name;
    std::function<void(const std::string& device)> prepare;
    std::function<bool(const std::string& device)> write;
    std::function<std::string(const std::string& device)> state;
    // Run without faults after the failed write: the write must not have harmed it.
    std::function<void(const std::string& device)> later;
};

const std::string kLongMessage = "long " + std::string(3000, 'x');

const std::vector<Writer> kWriters = {
    {"setting",
     [](const std::string& d) {
         writeSetting(d, "db/orvo/fault", {SettingType::String, "old"});
     },
     [](const std::string& d) {
         return writeSetting(d, "db/orvo/fault", {SettingType::String, "new"}) == 0;
     },
     [](const std::string& d) { return settingText(d, "db/orvo/fault"); }, nullptr},
    {"log record", [](const std::string& d) { appendLogRecord(d, 0, 4, "tag", "before", 6); },
     [](const std::string& d) { return appendLogRecord(d, 0, 4, "tag", kLongMessage.data(), kLongMessage.size()) > 0; },
     logText, [](const std::string& d) { appendLogRecord(d, 0, 4, "tag", "later", 5); }},
    {"log clear", [](const std::string& d) { appendLogRecord(d, 0, 4, "tag", "kept", 4); },
     [](const std::string& d) { return clearLogBuffer(d, 0); }, logText, nullptr},
    {"device.conf entry", nullptr,
     [](const std::string& d) { return succeeds([&] { setDeviceConfEntry(d, "system-info.128", "string T-NEW"); }); },
     [](const std::string& d) { return contentOf(d + "/device.conf"); }, nullptr},
    {"rootfs file", [](const std::string& d) { writeRootfsFile(d, "/opt/orvotv/fault", "old"); },
     [](const std::string& d) { return succeeds([&] { writeRootfsFile(d, "/opt/orvotv/fault", "new"); }); },
     [](const std::string& d) { return contentOf(d + "/rootfs/opt/orvotv/fault"); }, nullptr},
    {"rootfs removal", [](const std::string& d) { writeRootfsFile(d, "/opt/orvotv/fault", "old"); },
     [](const std::string& d) { return succeeds([&] { removeRootfsFile(d, "/opt/orvotv/fault"); }); },
     [](const std::string& d) { return contentOf(d + "/rootfs/opt/orvotv/fault"); }, nullptr},
    // From a profile of two settings: the steps of the others are the same.
    {"device creation",
     [](const std::string& d) {
         fs::create_directories(d + ".data/profiles/two");
         fs::copy_file(d + "/device.conf", d + ".data/profiles/two/device.conf");
         std::ofstream(d + ".data/profiles/two/settings") << "int db/orvo/one 1\nint memory/orvo/two 2\n";
     },
     [](const std::string& d) { return succeeds([&] { createDevice(d + ".made", d + ".data", "two"); }); },
     [](const std::string& d) { return fs::exists(d + ".made") ? settingText(d + ".made", "db/orvo/one") : "none"; },
     nullptr},
    {"reboot",
     [](const std::string& d) {
         for (const char* key : {"memory/orvo/a", "memory/orvo/b", "db/orvo/kept"})
             writeSetting(d, key, {SettingType::Int, "7"});
     },
     [](const std::string& d) { return succeeds([&] { rebootDevice(d); }); },
     // A reboot cut short may have removed some volatile keys, but never tears one.
     [](const std::string& d) {
         std::string text = settingText(d, "db/orvo/kept");
         for (const char* key : {"memory/orvo/a", "memory/orvo/b"}) {
             const std::string value = settingText(d, key);
             text += value == "7" || value == "error " + std::to_string(ENOENT) ? "" : " torn " + value;
         }
         return text;
     },
     nullptr},
};

const char* const kCallNames[] = {"open", "write", "fsync", "rename", "ftruncate", "unlink"};

// The walk's devices are copies of one, on a tmpfs where there may be one: the fsyncs of some
// thousand writes cost nothing there.
const std::string& pristineDevice() {
    static const Orvo::Testing::Tmpfs tmpfs("64m");
    static const std::string device = tmpfs.path() + "/pristine";
    if (!fs::exists(device)) createDevice(device, emulatorDataDirectory(), "tv");
    return device;
}

// A fresh device with the writer's old state.
struct Scene {
    explicit Scene(const Writer& writer) {
        fs::create_directory(root);
        fs::copy(pristineDevice(), device, fs::copy_options::recursive);
        if (writer.prepare) writer.prepare(device);
    }
    ~Scene() { fs::remove_all(root); }
    const std::string root = fs::path(pristineDevice()).parent_path().string() + "/scene";
    const std::string device = root + "/device";
};

} // namespace

TEST(DiskFault, EveryWriterFailsWholeUnderEveryFaultOfEveryStep) {
    const std::vector<std::pair<const char*, int>> errors = {
        {"ENOSPC", ENOSPC}, {"EIO", EIO}, {"EROFS", EROFS}, {"short write", InjectedFault::kShortWrite}};
    for (const Writer& writer : kWriters) {
        std::string before;
        std::string after;
        std::vector<FileCall> steps;
        {
            const Scene scene(writer);
            before = writer.state(scene.device);
            {
                const InjectedFault counting;
                ASSERT_TRUE(writer.write(scene.device)) << writer.name << " without a fault";
                steps = counting.calls();
            }
            after = writer.state(scene.device);
        }
        std::string beforeThenLater = before;
        if (writer.later) {
            const Scene scene(writer);
            writer.later(scene.device);
            beforeThenLater = writer.state(scene.device);
        }
        // The data reach the disk before a rename gives them the name.
        const auto rename = std::find(steps.begin(), steps.end(), FileCall::Rename);
        if (rename != steps.end()) {
            EXPECT_NE(rename, std::find(steps.begin(), rename, FileCall::Fsync)) << writer.name << ": no fsync";
        }
        // Until the first rename or unlink the old state is all there is.
        const std::size_t commit = static_cast<std::size_t>(
            std::find_if(steps.begin(), steps.end(),
                         [](FileCall call) { return call == FileCall::Rename || call == FileCall::Unlink; }) -
            steps.begin());
        int tried = 0;
        int reported = 0;
        int lost = 0;
        for (std::size_t step = 0; step < steps.size(); ++step) {
            const FileCall call = steps[step];
            const int nth = static_cast<int>(std::count(steps.begin(), steps.begin() + step + 1, call));
            for (const auto& [errorName, error] : errors) {
                if (error == InjectedFault::kShortWrite && call != FileCall::Write) continue;
                const std::string row = std::string(writer.name) + ", " + kCallNames[static_cast<int>(call)] + " #" +
                                        std::to_string(nth) + ", " + errorName;
                const Scene scene(writer);
                bool wrote = false;
                {
                    const InjectedFault fault(call, nth, error);
                    wrote = writer.write(scene.device);
                    ASSERT_TRUE(fault.fired()) << row;
                }
                ++tried;
                reported += wrote ? 0 : 1;
                EXPECT_FALSE(wrote) << row << ": the failure is not reported";
                const std::string state = writer.state(scene.device);
                const bool whole = state == before || (step >= commit && state == after);
                lost += whole ? 0 : 1;
                EXPECT_TRUE(whole) << row << ": " << state;
                EXPECT_EQ(std::vector<std::string>{}, leftovers(scene.root)) << row;
                if (writer.later) {
                    writer.later(scene.device);
                    EXPECT_EQ(beforeThenLater, writer.state(scene.device)) << row << ": a later write";
                }
            }
        }
        std::cout << writer.name << ": " << steps.size() << " steps, " << tried << " faults, " << reported
                  << " reported, " << lost << " lost\n";
    }
}

TEST(DiskFault, ASettingWriteAnswersTheErrnoOfTheStepThatFailed) {
    const Scene scene(kWriters[0]);
    for (const FileCall call : {FileCall::Open, FileCall::Write, FileCall::Fsync, FileCall::Rename}) {
        for (const int error : {ENOENT, ENOMEM, ENOSPC, EAGAIN, EACCES, EIO, EROFS, EDQUOT}) {
            const InjectedFault fault(call, 1, error);
            EXPECT_EQ(error, writeSetting(scene.device, "db/orvo/fault", {SettingType::String, "new"}))
                << kCallNames[static_cast<int>(call)] << " fails with " << std::strerror(error);
        }
    }
}

TEST(DiskFault, LibrariesAndToolsOnASmallDiskThatFillsUpThenTurnsReadOnly) {
    const Orvo::Testing::Tmpfs tmpfs("4m");
    if (!tmpfs.unavailable().empty()) GTEST_SKIP() << tmpfs.unavailable();
    const std::string disk = tmpfs.path();
    const std::string device = disk + "/device";
    createDevice(device, emulatorDataDirectory(), "tv");
    ::setenv("ORVO_DEVICE_DIR", device.c_str(), 1);
    // The log's last page half used: a longer record fills the rest of it and is cut there.
    const std::string half(1900, 'h');
    ASSERT_GT(dlog_print(DLOG_INFO, "tag", "%s", half.c_str()), 0);
    const std::string before = settingText(device, "db/comss/countrycode");
    const std::string volatileBefore = settingText(device, "memory/menu/support/softwareupdate/newest_version");
    const auto setFails = [](int code) {
        return vconf_set_int("db/comss/countrycode", 1) == -1 && vconf_get_ext_errno() == code;
    };
    const struct {
        bool readOnly;
        const char* name;
        std::function<bool()> failsCleanly;
    } rows[] = {
        {false, "vconf_set", [&] { return setFails(VCONF_ERROR_FILE_NO_MEM); }},
        {false, "vconftool set",
         [] {
             return toolFails({"vconftool", "set", "-t", "int", "db/comss/countrycode", "1", "-f"}, false);
         }},
        {false, "dlog_print cut short",
         [] { return dlog_print(DLOG_INFO, "tag", "%s", std::string(4000, 'c').c_str()) < 0; }},
        {false, "orvo-device create",
         [&] {
             return toolFails({"orvo-device", "create", disk + "/made"});
         }},
        {true, "vconf_set", [&] { return setFails(VCONF_ERROR); }},
        {true, "vconftool set",
         [] {
             return toolFails({"vconftool", "set", "-t", "int", "db/comss/countrycode", "1", "-f"}, false);
         }},
        {true, "dlog_print", [] { return dlog_print(DLOG_INFO, "tag", "x") < 0; }},
        {true, "orvo-device reboot",
         [&] {
             return toolFails({"orvo-device", "reboot", device});
         }},
        {true, "orvo-device create",
         [&] {
             return toolFails({"orvo-device", "create", disk + "/made"});
         }},
    };
    const int filler = ::open((disk + "/filler").c_str(), O_WRONLY | O_CREAT, 0644);
    for (std::size_t size = 65536; size > 0; size /= 2) // every byte of the disk taken
        while (::write(filler, std::string(size, 'f').data(), size) == static_cast<ssize_t>(size)) {
        }
    ::close(filler);
    for (const auto& row : rows) {
        if (row.readOnly && fs::exists(disk + "/filler")) {
            fs::remove(disk + "/filler");
            ASSERT_GT(dlog_print(DLOG_INFO, "tag", "later"), 0);
            const Orvo::Testing::ProcessResult shown =
                Orvo::Testing::runProcess({Orvo::Testing::toolPath("dlogutil"), "-d", "-b", "apps", "-v", "raw"});
            EXPECT_NE(std::string::npos, shown.out.find(half + "\nlater\n")) << shown.err;
            EXPECT_EQ(std::string::npos, shown.out.find("cccc")) << "a part of the cut record shown";
            ASSERT_TRUE(tmpfs.remountReadOnly()) << std::strerror(errno);
        }
        const std::string name = std::string(row.readOnly ? "read-only, " : "full, ") + row.name;
        EXPECT_TRUE(row.failsCleanly()) << name;
        EXPECT_EQ(before, settingText(device, "db/comss/countrycode")) << name;
        EXPECT_EQ(volatileBefore, settingText(device, "memory/menu/support/softwareupdate/newest_version")) << name;
        EXPECT_EQ(std::vector<std::string>{}, leftovers(disk)) << name;
        EXPECT_FALSE(fs::exists(disk + "/made")) << name;
    }
    ::unsetenv("ORVO_DEVICE_DIR");
}

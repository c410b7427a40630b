// The device state library keeps to its device directory: links and paths that lead out of it are
// not followed, special files are refused at once, device.conf is read whole or not at all, and a
// cut log record is never read as one. dlogutil's tests cover the log reader's side of links and FIFOs.

#include "orvo/device/Device.h"
#include "orvo/device/DeviceEdits.h"
#include "orvo/device/DeviceConf.h"
#include "orvo/device/LogStore.h"
#include "orvo/device/SettingsStore.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <cerrno>

#include <filesystem>
#include <fstream>
#include <functional>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace Orvo::Emulator;

namespace {

std::string contentOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// Two devices side by side: what a link in the first leads to lies in the second.
class TwoDevices : public testing::Test {
protected:
    void SetUp() override {
        // A hang on a special file fails the case instead of holding up the suite.
        ::alarm(20);
        createDevice(device, emulatorDataDirectory(), "tv");
        createDevice(other, emulatorDataDirectory(), "tv");
    }
    void TearDown() override {
        ::alarm(0);
        if (listening >= 0) ::close(listening);
    }

    // Replaces the entry at relative in the device by a link to the same entry of the other one.
    void linkToOther(const std::string& relative) {
        fs::remove_all(device + "/" + relative);
        fs::create_symlink(other + "/" + relative, device + "/" + relative);
    }
    // Replaces the entry at relative in the device by a FIFO.
    void makeFifo(const std::string& relative) {
        fs::remove_all(device + "/" + relative);
        ASSERT_EQ(0, ::mkfifo((device + "/" + relative).c_str(), 0644));
    }

    // Replaces the entry at relative in the device by a listening UNIX socket.
    void bindSocket(const std::string& relative) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const std::string path = device + "/" + relative;
        ASSERT_LT(path.size(), sizeof address.sun_path);
        path.copy(address.sun_path, path.size());
        listening = ::socket(AF_UNIX, SOCK_STREAM, 0);
        ASSERT_EQ(0, ::bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof address));
    }

    const Orvo::Testing::TemporaryDirectory temporary;
    const std::string device = temporary.path() + "/device";
    const std::string other = temporary.path() + "/other";
    int listening = -1;
};

const Setting kValue{SettingType::Int, "7"};

} // namespace

TEST_F(TwoDevices, SettingsBehindALinkAreNeitherReadNorWrittenNorRemoved) {
    ASSERT_EQ(0, writeSetting(other, "db/orvo/theirs", kValue));
    ASSERT_EQ(0, writeSetting(other, "memory/orvo/theirs", kValue));
    linkToOther("vconf");
    linkToOther("run/vconf");
    Setting setting;
    for (const std::string key : {"db/orvo/theirs", "memory/orvo/theirs"}) {
        EXPECT_EQ(ELOOP, readSetting(device, key, setting)) << key;
        EXPECT_EQ(ELOOP, writeSetting(device, key, {SettingType::Int, "8"})) << key;
        EXPECT_EQ(ELOOP, removeSetting(device, key)) << key;
        ASSERT_EQ(0, readSetting(other, key, setting)) << key;
        EXPECT_EQ("7", setting.value) << key;
    }
    EXPECT_FALSE(clearVolatileSettings(device)) << "a reboot through the link";
    EXPECT_EQ(0, readSetting(other, "memory/orvo/theirs", setting)) << "nothing removed in the other device";
}

TEST_F(TwoDevices, ALinkedLogFileIsNeitherWrittenNorRead) {
    ASSERT_EQ(2, appendLogRecord(other, 0, 4, "tag", "up", 2));
    linkToOther("log/main.log");
    const std::string before = contentOf(other + "/log/main.log");
    EXPECT_EQ(-1, appendLogRecord(device, 0, 4, "tag", "escaped", 7));
    EXPECT_EQ(before, contentOf(other + "/log/main.log"));
    linkToOther("log");
    EXPECT_EQ(-1, appendLogRecord(device, 0, 4, "tag", "escaped", 7)) << "a linked log directory";
    EXPECT_EQ(before, contentOf(other + "/log/main.log"));
}

TEST_F(TwoDevices, ALinkedOrSpecialDeviceConfIsAnErrorNamingTheFile) {
    const std::string conf = device + "/device.conf";
    const std::vector<std::pair<std::string, std::function<void()>>> cases = {
        {"missing", [&] { fs::remove(conf); }},
        {"a directory", [&] { fs::create_directory(conf); }},
        {"a FIFO", [&] { makeFifo("device.conf"); }},
        {"a socket", [&] { bindSocket("device.conf"); }},
        {"a link", [&] { linkToOther("device.conf"); }},
        {"over the size limit", [&] { std::ofstream(conf) << std::string(1024 * 1024 + 1, '#'); }},
    };
    for (const auto& [what, make] : cases) {
        fs::remove_all(conf);
        make();
        try {
            DeviceConf::load(device);
            ADD_FAILURE() << what << ": read as a configuration";
        } catch (const DeviceConfError& e) {
            EXPECT_EQ(0u, std::string(e.what()).find(conf + ": ")) << what << ": " << e.what();
        }
    }
}

TEST_F(TwoDevices, SpecialFilesWhereSettingsOrLogsBelongFailAtOnce) {
    makeFifo("vconf/db%2Forvo%2Ffifo");
    Setting setting;
    EXPECT_EQ(EMEDIUMTYPE, readSetting(device, "db/orvo/fifo", setting)) << "no regular file";
    makeFifo("log/main.log");
    EXPECT_EQ(-1, appendLogRecord(device, 0, 4, "tag", "x", 1));
}

TEST_F(TwoDevices, ACorruptSettingFileIsToldApartFromAMissingKey) {
    const std::vector<std::pair<std::string, std::string>> files = {
        {"no type line", "7"},
        {"unknown type", "float\n7"},
        {"bad int", "int\nseven"},
        {"over-long", "string\n" + std::string(kMaxSettingValueLength + 1, 'x')}};
    Setting setting;
    for (const auto& [what, content] : files) {
        std::ofstream(device + "/vconf/db%2Forvo%2Fcorrupt", std::ios::trunc) << content;
        EXPECT_EQ(EBADMSG, readSetting(device, "db/orvo/corrupt", setting)) << what;
    }
    EXPECT_EQ(ENOENT, readSetting(device, "db/orvo/missing", setting));
}

TEST_F(TwoDevices, ACutRecordIsNeverShownAndSwallowsNothingElse) {
    // Escapes in tag and message, so that cuts fall inside them too.
    const std::string message = "a\tb\\c\n";
    ASSERT_EQ(6, appendLogRecord(other, 0, 4, "t\\g", message.data(), message.size()));
    const std::string record = contentOf(other + "/log/main.log");
    const std::string log = device + "/log/main.log";
    for (std::size_t cut = 1; cut < record.size(); ++cut) {
        // The cut line is finished by its writer (a reader saw it half written), or stays cut
        // (a crash, a full disk) and the next record follows.
        for (const bool finished : {true, false}) {
            const std::string row = "cut after " + std::to_string(cut) + (finished ? ", finished" : ", left");
            fs::remove(log);
            ASSERT_EQ(5, appendLogRecord(device, 0, 4, "tag", "first", 5));
            std::ofstream(log, std::ios::app) << record.substr(0, cut);
            std::uint64_t offset = 0;
            EXPECT_EQ(1u, readLogRecords(device, 0, offset).size()) << row << ": an unfinished line is no record";
            if (finished)
                std::ofstream(log, std::ios::app) << record.substr(cut);
            else
                ASSERT_EQ(6, appendLogRecord(device, 0, 4, "tag", "second", 6));
            const std::string last = finished ? message : "second";
            std::vector<std::string> followed;
            for (const LogRecord& r : readLogRecords(device, 0, offset))
                followed.push_back(r.message);
            EXPECT_EQ(std::vector<std::string>{last}, followed) << row << ": a reader that follows the buffer";
            std::vector<std::string> all;
            for (const LogRecord& r : readLogRecords(device, 0))
                all.push_back(r.message);
            EXPECT_EQ((std::vector<std::string>{"first", last}), all) << row;
        }
    }
}

TEST_F(TwoDevices, RootfsFilesNeitherClimbOutNorFollowLinks) {
    fs::create_directories(other + "/rootfs/opt");
    std::ofstream(other + "/rootfs/opt/theirs") << "theirs";
    linkToOther("rootfs/opt");
    for (const std::string path : {"/../escaped", "/opt/..", "escaped", "", "/opt/theirs", "/opt/new"}) {
        EXPECT_THROW(writeRootfsFile(device, path, "mine"), std::runtime_error) << "write " << path;
        EXPECT_THROW(removeRootfsFile(device, path == "/opt/new" ? "/opt/theirs" : path), std::runtime_error)
            << "remove " << path;
    }
    EXPECT_FALSE(fs::exists(device + "/escaped"));
    EXPECT_FALSE(fs::exists(other + "/rootfs/opt/new"));
    EXPECT_EQ("theirs", contentOf(other + "/rootfs/opt/theirs"));
}

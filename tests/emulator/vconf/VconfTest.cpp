// vconf against the platform's newer (buxton2-based) library, row by row.
#include "orvo/device/SettingsStore.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <vconf.h>

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using Orvo::Emulator::Setting;
using Orvo::Emulator::SettingType;

#define CONSTANT(name, value) \
    { #name, name, value }

TEST(Vconf, ConstantsHaveThePlatformsNumbers) {
    const struct {
        const char* name;
        int actual, expected;
    } rows[] = {CONSTANT(VCONF_OK, 0),
                CONSTANT(VCONF_ERROR, -1),
                CONSTANT(VCONF_ERROR_WRONG_PREFIX, -2),
                CONSTANT(VCONF_ERROR_WRONG_TYPE, -3),
                CONSTANT(VCONF_ERROR_WRONG_VALUE, -4),
                CONSTANT(VCONF_ERROR_NOT_INITIALIZED, -5),
                CONSTANT(VCONF_ERROR_NO_MEM, -6),
                CONSTANT(VCONF_ERROR_FILE_PERM, -11),
                CONSTANT(VCONF_ERROR_FILE_BUSY, -12),
                CONSTANT(VCONF_ERROR_FILE_NO_MEM, -13),
                CONSTANT(VCONF_ERROR_FILE_NO_ENT, -14),
                CONSTANT(VCONF_ERROR_FILE_OPEN, -21),
                CONSTANT(VCONF_ERROR_FILE_FREAD, -22),
                CONSTANT(VCONF_ERROR_FILE_FGETS, -23),
                CONSTANT(VCONF_ERROR_FILE_WRITE, -24),
                CONSTANT(VCONF_ERROR_FILE_SYNC, -25),
                CONSTANT(VCONF_ERROR_FILE_CLOSE, -26),
                CONSTANT(VCONF_ERROR_FILE_ACCESS, -27),
                CONSTANT(VCONF_ERROR_FILE_CHMOD, -28),
                CONSTANT(VCONF_ERROR_FILE_LOCK, -29),
                CONSTANT(VCONF_ERROR_FILE_REMOVE, -30),
                CONSTANT(VCONF_ERROR_FILE_SEEK, -31),
                CONSTANT(VCONF_ERROR_FILE_TRUNCATE, -32),
                CONSTANT(VCONF_ERROR_NOT_SUPPORTED, -33),
                CONSTANT(VCONF_TYPE_NONE, 0),
                CONSTANT(VCONF_TYPE_STRING, 40),
                CONSTANT(VCONF_TYPE_INT, 41),
                CONSTANT(VCONF_TYPE_DOUBLE, 42),
                CONSTANT(VCONF_TYPE_BOOL, 43),
                CONSTANT(VCONF_TYPE_DIR, 44),
                CONSTANT(VCONF_GET_KEY, 0),
                CONSTANT(VCONF_GET_ALL, 1),
                CONSTANT(VCONF_GET_DIR, 2)};
    for (const auto& row : rows)
        EXPECT_EQ(row.expected, row.actual) << row.name;
}

namespace {

// A call of one row; it writes what the caller then holds (an output, or the stored value after
// a set) into `seen`. "untouched" is an output that kept its initial value.
using Call = std::function<int(std::string& seen)>;

class VconfCalls : public ::testing::Test {
protected:
    VconfCalls() {
        for (const auto& [key, setting] :
             std::vector<std::pair<std::string, Setting>>{{"db/t/int", {SettingType::Int, "5"}},
                                                          {"db/t/bool", {SettingType::Bool, "1"}},
                                                          {"file/t/dbl", {SettingType::Double, "1.5"}},
                                                          {"memory/t/str", {SettingType::String, "text"}},
                                                          {"other/t/int", {SettingType::Int, "6"}},
                                                          {"db/t/" + std::string(4091, 'k'), {SettingType::Int, "8"}}})
            Orvo::Emulator::writeSetting(device.dir(), key, setting);
    }

    std::string stored(const std::string& key) const {
        Setting setting;
        if (Orvo::Emulator::readSetting(device.dir(), key, setting) != 0) return "missing";
        return Orvo::Emulator::settingTypeName(setting.type) + std::string(" ") + setting.value;
    }

    Call setAndRead(const std::string& key, std::function<int()> set) const {
        return [this, key, set](std::string& seen) {
            const int result = set();
            seen = stored(key);
            return result;
        };
    }

    const Orvo::Testing::TestDevice device;
};

// Outputs start as 7, a value no row reads, so that an untouched one shows.
template <typename T>
Call get(int (*getter)(const char*, T*), const char* key) {
    return [getter, key](std::string& seen) {
        T value = 7;
        const int result = getter(key, &value);
        seen = value == 7 ? "untouched" : std::to_string(value);
        return result;
    };
}

Call getStr(const char* key) {
    return [key](std::string& seen) {
        char* value = vconf_get_str(key);
        seen = value == nullptr ? "NULL" : value;
        std::free(value);
        return value == nullptr ? -1 : 0;
    };
}

} // namespace

TEST_F(VconfCalls, EachCaseGivesThePlatformsResultExtendedErrorAndReport) {
    const std::string longKey = "db/t/" + std::string(4091, 'k');
    const std::string tooLongKey = longKey + "k";
    const std::string longText(4096, 's');
    const struct {
        const char* row;
        Call call;
        int result, ext;
        std::string seen, report;
    } rows[] = {
        {"get_int success", get(vconf_get_int, "db/t/int"), 0, 0, "5", ""},
        {"get_bool success", get(vconf_get_bool, "db/t/bool"), 0, 0, "1", ""},
        {"get_dbl success", get(vconf_get_dbl, "file/t/dbl"), 0, 0, "1.500000", ""},
        {"get_str success: a copy", getStr("memory/t/str"), 0, 0, "text", ""},
        {"get, key missing", get(vconf_get_int, "db/t/missing"), -1, -14, "untouched",
         "get value: key 'db/t/missing' errno 2\n"},
        {"get_str, key missing", getStr("memory/t/missing"), -1, -14, "NULL",
         "get value: key 'memory/t/missing' errno 2\n"},
        {"get, wrong type", get(vconf_get_int, "db/t/bool"), -1, -1, "untouched",
         "get value: key 'db/t/bool' errno 95\n"},
        {"get_dbl, wrong type", get(vconf_get_dbl, "db/t/int"), -1, -1, "untouched",
         "get value: key 'db/t/int' errno 95\n"},
        {"get_str, wrong type", getStr("db/t/int"), -1, -1, "NULL", "get value: key 'db/t/int' errno 95\n"},
        {"get, NULL key", get(vconf_get_int, nullptr), -1, -1, "untouched", ""},
        {"get_str, NULL key", getStr(nullptr), -1, -1, "NULL", ""},
        {"get, NULL output",
         [](std::string& seen) {
             seen = "-";
             return vconf_get_int("db/t/int", nullptr);
         },
         -1, -1, "-", ""},
        {"other prefix: a system key", get(vconf_get_int, "other/t/int"), 0, 0, "6", ""},
        {"other prefix, missing", get(vconf_get_int, "settings/x"), -1, -14, "untouched",
         "get value: key 'settings/x' errno 2\n"},
        {"key name with a blank", get(vconf_get_int, "db/t/a b"), -1, -1, "untouched",
         "get value: key 'db/t/a b' errno 22\n"},
        {"key name with a byte over 0x7E", get(vconf_get_int, "db/t/\xC3\xA9"), -1, -1, "untouched",
         "get value: key 'db/t/\xC3\xA9' errno 22\n"},
        {"key name of 4096 bytes", get(vconf_get_int, longKey.c_str()), 0, 0, "8", ""},
        {"key name of 4097 bytes", get(vconf_get_int, tooLongKey.c_str()), -1, -1, "untouched",
         "get value: key '" + tooLongKey + "' errno 36\n"},
        {"set success", setAndRead("db/t/int", [] { return vconf_set_int("db/t/int", -9); }), 0, 0, "int -9", ""},
        {"set, key missing: not created", setAndRead("db/t/new", [] { return vconf_set_int("db/t/new", 1); }), -1, -14,
         "missing", "set value: key 'db/t/new' errno 2\n"},
        {"set, another type: replaced", setAndRead("db/t/bool", [] { return vconf_set_dbl("db/t/bool", 0.25); }), 0, 0,
         "double 0.25", ""},
        {"set_str, value NULL", setAndRead("memory/t/str", [] { return vconf_set_str("memory/t/str", nullptr); }), -1,
         -1, "string text", ""},
        {"set, NULL key", setAndRead("db/t/int", [] { return vconf_set_int(nullptr, 1); }), -1, -1, "int -9", ""},
        {"set_str of 4096 chars",
         setAndRead("memory/t/str", [&] { return vconf_set_str("memory/t/str", longText.c_str()); }), 0, 0,
         "string " + longText, ""},
        {"set_str of 4097 chars",
         setAndRead("memory/t/str", [&] { return vconf_set_str("memory/t/str", (longText + "s").c_str()); }), -1, -1,
         "string " + longText, "set value: key 'memory/t/str' errno 90\n"},
        {"set_bool 1", setAndRead("file/t/dbl", [] { return vconf_set_bool("file/t/dbl", 1); }), 0, 0, "bool 1", ""},
        {"set_bool 256: narrowed to false", setAndRead("file/t/dbl", [] { return vconf_set_bool("file/t/dbl", 256); }),
         0, 0, "bool 0", ""},
        {"set_bool 257: narrowed to true", setAndRead("file/t/dbl", [] { return vconf_set_bool("file/t/dbl", 257); }),
         0, 0, "bool 1", ""},
    };
    for (const auto& row : rows) {
        std::string seen;
        ::testing::internal::CaptureStderr();
        const int result = row.call(seen);
        const int ext = vconf_get_ext_errno();
        const std::string report = ::testing::internal::GetCapturedStderr();
        EXPECT_EQ(row.result, result) << row.row;
        EXPECT_EQ(row.ext, ext) << row.row;
        EXPECT_EQ(row.seen, seen) << row.row;
        EXPECT_EQ(row.report, report) << row.row;
    }
}

// vconf_get_ext_errno maps the calling thread's errno once a call failed; success is process-wide.
TEST_F(VconfCalls, TheExtendedErrorMapsErrnoAndSuccessIsProcessWide) {
    const std::pair<int, int> mapping[] = {{ENOENT, -14},    {ENOMEM, -13}, {ENOSPC, -13}, {EAGAIN, -12},
                                           {ETIMEDOUT, -12}, {EBUSY, -12},  {EMFILE, -12}, {EACCES, -11},
                                           {EPERM, -11},     {ENOTSUP, -1}, {EINVAL, -1},  {EIO, -1}};
    int value = 0;
    for (const auto& [error, ext] : mapping) {
        vconf_get_int(nullptr, &value);
        errno = error;
        EXPECT_EQ(ext, vconf_get_ext_errno()) << "errno " << error;
    }
    ::testing::internal::CaptureStderr();
    vconf_get_int("db/t/bool", &value); // a wrong type
    int otherThreadsExt = 0;
    std::thread([&] {
        vconf_get_int("db/t/missing", &value);
        otherThreadsExt = vconf_get_ext_errno();
    }).join();
    ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(-14, otherThreadsExt) << "no such key";
    EXPECT_EQ(-1, vconf_get_ext_errno()) << "this thread's errno: the wrong type";
    std::thread([&] { vconf_get_int("db/t/int", &value); }).join();
    EXPECT_EQ(0, vconf_get_ext_errno()) << "another thread's success";
}

// Only root removes keys; removing never changes vconf_get_ext_errno.
TEST_F(VconfCalls, UnsetRemovesKeysForRootOnly) {
    ::testing::internal::CaptureStderr();
    int value = 0;
    vconf_get_int("db/t/missing", &value);
    ::testing::internal::GetCapturedStderr();
    const pid_t child = ::fork();
    if (child == 0) { // another user: not supported, nothing removed, the last result kept
        const bool refused = ::setuid(65534) == 0 && vconf_unset("db/t/int") == VCONF_ERROR_NOT_SUPPORTED &&
                             vconf_unset_recursive("db/") == VCONF_ERROR_NOT_SUPPORTED && vconf_get_ext_errno() == -14;
        ::_exit(refused ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(0, status) << "unset by another user";
    EXPECT_EQ("int 5", stored("db/t/int"));
    ASSERT_EQ(0, vconf_get_int("db/t/int", &value));
    const struct {
        const char* row;
        std::function<int()> call;
        int result;
        std::vector<std::string> gone, kept;
    } rows[] = {
        {"unset", [] { return vconf_unset("db/t/int"); }, 0, {"db/t/int"}, {"db/t/bool"}},
        {"unset, key missing", [] { return vconf_unset("db/t/int"); }, -1, {}, {"db/t/bool"}},
        {"unset, NULL key", [] { return vconf_unset(nullptr); }, -1, {}, {"db/t/bool"}},
        {"unset_recursive: every key with the prefix",
         [] { return vconf_unset_recursive("db/t/"); },
         0,
         {"db/t/bool", "db/t/" + std::string(4091, 'k')},
         {"file/t/dbl", "other/t/int"}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.result, row.call()) << row.row;
        EXPECT_EQ(0, vconf_get_ext_errno()) << row.row << ": the last get's success";
        for (const std::string& key : row.gone)
            EXPECT_EQ("missing", stored(key)) << row.row;
        for (const std::string& key : row.kept)
            EXPECT_NE("missing", stored(key)) << row.row;
    }
}

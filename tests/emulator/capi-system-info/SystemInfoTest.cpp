// capi-system-info against the platform's library, row by row; the integer keys as the
// television answers them.
#include "orvo/testing/TemporaryDirectory.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <system_info.h>

#include <cstdlib>
#include <functional>

#define CONSTANT(name, value) \
    { #name, name, value }

TEST(SystemInfo, ConstantsHaveThePlatformsNumbers) {
    const struct {
        const char* name;
        int actual, expected;
    } rows[] = {CONSTANT(SYSTEM_INFO_ERROR_NONE, 0),
                CONSTANT(SYSTEM_INFO_ERROR_INVALID_PARAMETER, -22),
                CONSTANT(SYSTEM_INFO_ERROR_OUT_OF_MEMORY, -12),
                CONSTANT(SYSTEM_INFO_ERROR_IO_ERROR, -5),
                CONSTANT(SYSTEM_INFO_ERROR_PERMISSION_DENIED, -13),
                CONSTANT(SYSTEM_INFO_ERROR_NOT_SUPPORTED, -1073741822),
                CONSTANT(SYSTEM_INFO_BOOL, 0),
                CONSTANT(SYSTEM_INFO_INT, 1),
                CONSTANT(SYSTEM_INFO_DOUBLE, 2),
                CONSTANT(SYSTEM_INFO_STRING, 3)};
    for (const auto& row : rows)
        EXPECT_EQ(row.expected, row.actual) << row.name;
}

namespace {

// A call of one row; it writes the output as the caller then sees it into `seen`.
using Call = std::function<int(std::string& seen)>;

// Outputs start as a value no row reads, so that an untouched one shows.
template <typename T>
T initial() {
    return T(7);
}
template <>
char* initial<char*>() {
    return nullptr;
}
template <> // 7 is no type: a failed type query keeps the string type (3)
system_info_type_e initial<system_info_type_e>() {
    return SYSTEM_INFO_STRING;
}

std::string show(int value) { return value == 7 ? "untouched" : std::to_string(value); }
std::string show(system_info_type_e value) { return std::to_string(static_cast<int>(value)); }
std::string show(double value) { return value == 7 ? "untouched" : std::to_string(value); }
std::string show(bool value) { return value ? "true" : "false"; }
std::string show(char* value) {
    const std::string text = value == nullptr ? "untouched" : value;
    std::free(value);
    return text;
}

template <typename Key, typename T>
Call call(int (*get)(Key, T*), Key key) {
    return [get, key](std::string& seen) {
        T value = initial<T>();
        const int result = get(key, &value);
        seen = show(value);
        return result;
    };
}

Call numbered(int (*get)(system_info_key_e, int*), int key) { return call(get, static_cast<system_info_key_e>(key)); }

struct Row {
    const char* row;
    Call call;
    int result;
    std::string seen;
};

void check(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        std::string seen;
        EXPECT_EQ(row.result, row.call(seen)) << row.row;
        EXPECT_EQ(row.seen, seen) << row.row;
    }
}

const int kInvalid = SYSTEM_INFO_ERROR_INVALID_PARAMETER;

} // namespace

TEST(SystemInfo, EachCaseGivesThePlatformsResultAndOutput) {
    Orvo::Testing::TestDevice device;
    const std::string longText(300, 's');
    for (const auto& [key, value] :
         std::vector<std::pair<std::string, std::string>>{{"platform.tizen.org/feature/t", "bool true"},
                                                          {"platform.tizen.org/feature/t2", "bool TRUE"},
                                                          {"platform.tizen.org/feature/f", "bool True"},
                                                          {"platform.tizen.org/feature/n", "int 12abc"},
                                                          {"platform.http://tizen.org/feature/d", "double 2.5x"},
                                                          {"platform.tizen.org/system/s", "string " + longText},
                                                          {"platform.tizen.org/feature/u", "unsupported"},
                                                          {"custom.maker/c", "int 9"},
                                                          {"90001", "int -17"},
                                                          {"90002", "bool true"},
                                                          {"90003", "string T-ABC 1.0"},
                                                          {"90004", "error -5"},
                                                          {"90005", "unsupported"},
                                                          {"90006", "double 0.5"}})
        device.setConf("system-info." + key, value);
    check({
        {"platform_bool: stored true", call(system_info_get_platform_bool, "tizen.org/feature/t"), 0, "true"},
        {"platform_bool: stored TRUE", call(system_info_get_platform_bool, "tizen.org/feature/t2"), 0, "true"},
        {"platform_bool: any other text is false", call(system_info_get_platform_bool, "tizen.org/feature/f"), 0,
         "false"},
        {"platform_int: atoi", call(system_info_get_platform_int, "tizen.org/feature/n"), 0, "12"},
        {"platform_double: atof", call(system_info_get_platform_double, "tizen.org/feature/d"), 0, "2.500000"},
        {"key given with http://", call(system_info_get_platform_int, "http://tizen.org/feature/n"), 0, "12"},
        {"platform_string: at most 255 chars", call(system_info_get_platform_string, "tizen.org/system/s"), 0,
         longText.substr(0, 255)},
        {"platform, wrong type", call(system_info_get_platform_int, "tizen.org/feature/d"), kInvalid, "untouched"},
        {"platform, unknown key", call(system_info_get_platform_string, "tizen.org/feature/x"), kInvalid, "untouched"},
        {"platform, a custom key", call(system_info_get_platform_int, "maker/c"), kInvalid, "untouched"},
        {"platform, NULL key", call(system_info_get_platform_double, static_cast<const char*>(nullptr)), kInvalid,
         "untouched"},
        {"platform, NULL output",
         [](std::string& seen) {
             seen = "-";
             return system_info_get_platform_int("tizen.org/feature/n", nullptr);
         },
         kInvalid, "-"},
        {"custom_int", call(system_info_get_custom_int, "maker/c"), 0, "9"},
        {"custom, a platform key", call(system_info_get_custom_int, "tizen.org/feature/n"), kInvalid, "untouched"},
        {"platform_type: bool", call(system_info_get_platform_type, "tizen.org/feature/t"), 0, "0"},
        {"platform_type: int", call(system_info_get_platform_type, "tizen.org/feature/n"), 0, "1"},
        {"platform_type: double", call(system_info_get_platform_type, "tizen.org/feature/d"), 0, "2"},
        {"platform_type: string", call(system_info_get_platform_type, "tizen.org/system/s"), 0, "3"},
        {"platform_type, unknown key", call(system_info_get_platform_type, "tizen.org/feature/x"), kInvalid, "3"},
        {"custom_type", call(system_info_get_custom_type, "maker/c"), 0, "1"},
        {"custom_type, unknown key", call(system_info_get_custom_type, "maker/x"), kInvalid, "3"},
        {"a feature marked unsupported", call(system_info_get_platform_bool, "tizen.org/feature/u"),
         SYSTEM_INFO_ERROR_NOT_SUPPORTED, "true"},
        {"value_int", numbered(system_info_get_value_int, 90001), 0, "-17"},
        {"value_bool", call(system_info_get_value_bool, static_cast<system_info_key_e>(90002)), 0, "true"},
        {"value_string: a copy", call(system_info_get_value_string, static_cast<system_info_key_e>(90003)), 0,
         "T-ABC 1.0"},
        {"value_double", call(system_info_get_value_double, static_cast<system_info_key_e>(90006)), 0, "0.500000"},
        {"value, wrong type", numbered(system_info_get_value_int, 90003), kInvalid, "untouched"},
        {"value, unknown key", numbered(system_info_get_value_int, 90007), kInvalid, "untouched"},
        {"value, NULL output",
         [](std::string& seen) {
             seen = "-";
             return system_info_get_value_int(static_cast<system_info_key_e>(90001), nullptr);
         },
         kInvalid, "-"},
        {"value, an error entry", numbered(system_info_get_value_int, 90004), SYSTEM_INFO_ERROR_IO_ERROR, "untouched"},
        {"value, a key marked unsupported", numbered(system_info_get_value_int, 90005), SYSTEM_INFO_ERROR_NOT_SUPPORTED,
         "untouched"},
    });
    device.removeConf("system-info.90001");
    check({{"a change is seen at once", numbered(system_info_get_value_int, 90001), kInvalid, "untouched"}});
}

// Without a readable store the platform's getters report an invalid parameter; only the type of a
// platform key tells the I/O error. The integer keys answer with the I/O error.
TEST(SystemInfo, WithoutADeviceEachCallFailsAsThePlatformsDoesWithoutItsStore) {
    const Orvo::Testing::TemporaryDirectory empty;
    const char* previous = std::getenv("ORVO_DEVICE_DIR");
    const std::string restore = previous == nullptr ? "" : previous;
    ::setenv("ORVO_DEVICE_DIR", empty.path().c_str(), 1);
    ::testing::internal::CaptureStderr();
    check({
        {"platform_int", call(system_info_get_platform_int, "tizen.org/feature/n"), kInvalid, "untouched"},
        {"custom_string", call(system_info_get_custom_string, "maker/c"), kInvalid, "untouched"},
        {"platform_type", call(system_info_get_platform_type, "tizen.org/feature/n"), SYSTEM_INFO_ERROR_IO_ERROR, "3"},
        {"custom_type", call(system_info_get_custom_type, "maker/c"), kInvalid, "3"},
        {"value_int", numbered(system_info_get_value_int, 77), SYSTEM_INFO_ERROR_IO_ERROR, "untouched"},
    });
    ::testing::internal::GetCapturedStderr();
    previous == nullptr ? ::unsetenv("ORVO_DEVICE_DIR") : ::setenv("ORVO_DEVICE_DIR", restore.c_str(), 1);
}

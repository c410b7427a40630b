#pragma once
// The vconf settings of a device: volatile keys ("memory/...") under <device>/run/vconf/, every
// other key persistent under <device>/vconf/. Every write is all or nothing (temporary file,
// fsync, rename) and safe against concurrent writers in several processes.
//
// Results are 0 or an errno value: ENOENT no such key, EINVAL a key name with a byte outside
// 0x21-0x7E or an empty one, ENAMETOOLONG a key name over kMaxKeyLength, EMSGSIZE a value over
// kMaxSettingValueLength, ELOOP a setting file behind a link, EMEDIUMTYPE one
// that is no regular file, EBADMSG one whose content is no setting (corrupt), or the file
// system's own errno.

#include <string>
#include <vector>

namespace Orvo {
namespace Emulator {

enum class SettingType { Int, Bool, Double, String };

struct Setting {
    SettingType type = SettingType::Int;
    std::string value; // decimal int, "0"/"1" for bool, "%.17g" double, raw bytes for string
};

// The largest value and the longest key name a setting has, in bytes.
constexpr std::size_t kMaxSettingValueLength = 4096;
constexpr std::size_t kMaxKeyLength = 4096;

// Whether a missing key may be created by the write (vconftool, provisioning) or only an
// existing one replaced (the vconf library, which never creates a key).
enum class WriteMode { CreateOrReplace, ReplaceExisting };

const char* settingTypeName(SettingType type); // "int", "bool", "double", "string"

// What a result of these functions means, for messages: strerror, with the store's own cases
// (a corrupt file, a link, a special file) named as such.
std::string describeSettingError(int error);

// The platform's rule for a key name: 0, or EINVAL (empty, or a byte outside 0x21-0x7E) or
// ENAMETOOLONG (over 4096 bytes). Every key it takes can be stored.
int checkSettingKey(const std::string& key);

int readSetting(const std::string& deviceDir, const std::string& key, Setting& out);
int writeSetting(const std::string& deviceDir, const std::string& key, const Setting& setting,
                 WriteMode mode = WriteMode::CreateOrReplace);
int removeSetting(const std::string& deviceDir, const std::string& key);

// All keys that currently hold a value, sorted.
std::vector<std::string> listSettings(const std::string& deviceDir);

// Drops every volatile ("memory/") key, as a reboot does; writes in progress stay whole. False,
// with errno ELOOP and nothing removed, when the volatile directory lies behind a link; false
// with the errno of the first failure when a key cannot be removed (the others are removed).
// Throws std::system_error when the directory cannot be read.
bool clearVolatileSettings(const std::string& deviceDir);

} // namespace Emulator
} // namespace Orvo

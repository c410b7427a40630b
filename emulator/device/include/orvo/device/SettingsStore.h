#pragma once
// The vconf settings of a device: persistent keys ("db/", "file/") under <device>/vconf/,
// volatile keys ("memory/") under <device>/run/vconf/. Every write is all or nothing (temporary
// file, fsync, rename) and safe against concurrent writers in several processes.
// Results are the VCONF_* codes of vconf.h; besides the platform's, VCONF_ERROR_FILE_OPEN is a
// setting file that is no regular file or lies behind a link, VCONF_ERROR_FILE_FREAD a setting
// file whose content is no setting (corrupt).

#include <string>
#include <vector>

namespace Orvo {
namespace Emulator {

enum class SettingType { Int, Bool, Double, String };

struct Setting {
    SettingType type = SettingType::Int;
    std::string value; // decimal int, "0"/"1" for bool, "%.17g" double, raw bytes for string
};

// The largest value a setting holds, in bytes.
constexpr std::size_t kMaxSettingValueLength = 4096;

const char* settingTypeName(SettingType type); // "int", "bool", "double", "string"

// Whether the key's file name (every byte outside [A-Za-z0-9._-] takes three) is within the
// file system's limit for a name; a longer key cannot be written.
bool settingKeyFits(const std::string& key);

int readSetting(const std::string& deviceDir, const std::string& key, Setting& out);
int writeSetting(const std::string& deviceDir, const std::string& key, const Setting& setting);
int removeSetting(const std::string& deviceDir, const std::string& key);

// All keys that currently hold a value, sorted.
std::vector<std::string> listSettings(const std::string& deviceDir);

// Drops every volatile ("memory/") key, as a reboot does; writes in progress stay whole. False,
// with errno ELOOP and nothing removed, when the volatile directory lies behind a link.
bool clearVolatileSettings(const std::string& deviceDir);

} // namespace Emulator
} // namespace Orvo

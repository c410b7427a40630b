#include "orvo/device/SettingsStore.h"

#include "FileOps.h"
#include "orvo/device/TextValues.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <unistd.h>

namespace Orvo {
namespace Emulator {
namespace {

const char kVolatilePrefix[] = "memory/";
// A key whose encoded name is longer than a file name may be is stored under a hash of it, in a
// file that begins with the key's own line.
const char kHashedNamePrefix[] = "%%";

bool startsWith(const std::string& text, const char* prefix) {
    return text.compare(0, std::char_traits<char>::length(prefix), prefix) == 0;
}

bool isVolatileKey(const std::string& key) { return startsWith(key, kVolatilePrefix); }

std::string persistentDirectory(const std::string& deviceDir) { return deviceDir + "/vconf"; }

std::string volatileDirectory(const std::string& deviceDir) { return deviceDir + "/run/vconf"; }

std::string settingsDirectoryFor(const std::string& deviceDir, const std::string& key) {
    return isVolatileKey(key) ? volatileDirectory(deviceDir) : persistentDirectory(deviceDir);
}

// Every byte outside [A-Za-z0-9._-] becomes %XX, so a key is always one flat file name.
std::string encodeKey(const std::string& key) {
    static const char hex[] = "0123456789ABCDEF";
    std::string name;
    for (const char c : key) {
        const unsigned char byte = static_cast<unsigned char>(c);
        if ((byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
            byte == '.' || byte == '_' || byte == '-') {
            name += c;
        } else {
            name += '%';
            name += hex[byte >> 4];
            name += hex[byte & 0xF];
        }
    }
    return name;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

bool decodeKey(const std::string& name, std::string& key) {
    key.clear();
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] != '%') {
            key += name[i];
            continue;
        }
        if (i + 2 >= name.size()) return false;
        const int high = hexDigit(name[i + 1]);
        const int low = hexDigit(name[i + 2]);
        if (high < 0 || low < 0) return false;
        key += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return true;
}

bool isHashedName(const std::string& name) { return startsWith(name, kHashedNamePrefix); }

std::string fileNameFor(const std::string& key) {
    const std::string encoded = encodeKey(key);
    if (encoded.size() <= NAME_MAX) return encoded;
    std::uint64_t hash = 14695981039346656037ULL; // FNV-1a
    for (const char c : key)
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ULL;
    static const char hex[] = "0123456789ABCDEF";
    std::string name = kHashedNamePrefix;
    for (int shift = 60; shift >= 0; shift -= 4)
        name += hex[(hash >> shift) & 0xF];
    return name;
}

bool parseType(const std::string& name, SettingType& type) {
    for (const SettingType candidate :
         {SettingType::Int, SettingType::Bool, SettingType::Double, SettingType::String}) {
        if (name == settingTypeName(candidate)) {
            type = candidate;
            return true;
        }
    }
    return false;
}

bool isValidValue(const Setting& setting) {
    int intValue = 0;
    double doubleValue = 0;
    switch (setting.type) {
    case SettingType::Int:
        return parseInt(setting.value, intValue);
    case SettingType::Bool:
        return setting.value == "0" || setting.value == "1";
    case SettingType::Double:
        return parseDouble(setting.value, doubleValue);
    case SettingType::String:
        return setting.value.size() <= kMaxSettingValueLength;
    }
    return false;
}

// Reads the file of a stored name; for a hashed name also the key it holds (its first line).
// The text after it is the setting: type, line feed, value.
int readStoredFile(const std::string& path, bool hashed, std::string& key, std::string& setting) {
    // The longest valid file: the key's line, the longest type name, a line feed, the longest value.
    const std::size_t maxFileSize = (hashed ? kMaxKeyLength + 1 : 0) + kMaxSettingValueLength + 8;
    std::string content;
    if (!readFile(path, content, maxFileSize)) return errno == EFBIG ? EBADMSG : errno;
    if (!hashed) {
        setting.swap(content);
        return 0;
    }
    const std::size_t lineFeed = content.find('\n');
    if (lineFeed == std::string::npos) return EBADMSG;
    key = content.substr(0, lineFeed);
    setting = content.substr(lineFeed + 1);
    return 0;
}

// The path of key's file; an error when the key is invalid or the path would leave the device.
int settingPath(const std::string& deviceDir, const std::string& key, std::string& path) {
    if (const int invalid = checkSettingKey(key)) return invalid;
    path = settingsDirectoryFor(deviceDir, key) + "/" + fileNameFor(key);
    return staysBeneath(deviceDir.c_str(), path.c_str()) ? 0 : errno;
}

// A hashed file that holds another key (a hash collision) does not hold this one.
int readOwnFile(const std::string& path, const std::string& key, std::string& setting) {
    const std::size_t slash = path.rfind('/');
    const bool hashed = isHashedName(path.substr(slash + 1));
    std::string storedKey;
    const int result = readStoredFile(path, hashed, storedKey, setting);
    return result == 0 && hashed && storedKey != key ? ENOENT : result;
}

} // namespace

const char* settingTypeName(SettingType type) {
    switch (type) {
    case SettingType::Int:
        return "int";
    case SettingType::Bool:
        return "bool";
    case SettingType::Double:
        return "double";
    case SettingType::String:
        return "string";
    }
    return "unknown";
}

int checkSettingKey(const std::string& key) {
    if (key.size() > kMaxKeyLength) return ENAMETOOLONG;
    if (key.empty()) return EINVAL;
    for (const char c : key)
        if (c < 0x21 || c > 0x7E) return EINVAL;
    return 0;
}

std::string describeSettingError(int error) {
    return error == EBADMSG ? "the setting's file is corrupt" : describeFileError(error);
}

int readSetting(const std::string& deviceDir, const std::string& key, Setting& out) {
    std::string path;
    std::string content;
    if (const int result = settingPath(deviceDir, key, path)) return result;
    if (const int result = readOwnFile(path, key, content)) return result;
    const std::size_t lineFeed = content.find('\n');
    Setting setting;
    if (lineFeed == std::string::npos || !parseType(content.substr(0, lineFeed), setting.type)) return EBADMSG;
    setting.value = content.substr(lineFeed + 1);
    if (!isValidValue(setting)) return EBADMSG;
    out = setting;
    return 0;
}

int writeSetting(const std::string& deviceDir, const std::string& key, const Setting& setting, WriteMode mode) {
    std::string path;
    if (const int result = settingPath(deviceDir, key, path)) return result;
    if (!isValidValue(setting)) return setting.type == SettingType::String ? EMSGSIZE : EINVAL;
    if (!makeDirectoriesBeneath(deviceDir, settingsDirectoryFor(deviceDir, key))) return errno;
    const std::string keyLine = isHashedName(fileNameFor(key)) ? key + "\n" : std::string();
    const std::string content = keyLine + settingTypeName(setting.type) + "\n" + setting.value;
    return replaceFileAtomically(path, content, mode == WriteMode::ReplaceExisting) ? 0 : errno;
}

int removeSetting(const std::string& deviceDir, const std::string& key) {
    std::string path;
    std::string content;
    if (const int result = settingPath(deviceDir, key, path)) return result;
    if (isHashedName(fileNameFor(key)))
        if (const int result = readOwnFile(path, key, content)) return result;
    return removeFileDurably(path) ? 0 : errno;
}

std::vector<std::string> listSettings(const std::string& deviceDir) {
    std::vector<std::string> keys;
    for (const std::string& directory : {persistentDirectory(deviceDir), volatileDirectory(deviceDir)}) {
        for (const std::string& name : listDirectory(directory)) {
            std::string key;
            std::string content;
            const bool named = isHashedName(name) ? readStoredFile(directory + "/" + name, true, key, content) == 0
                                                  : !isTemporaryFileName(name) && decodeKey(name, key);
            if (named && checkSettingKey(key) == 0 && fileNameFor(key) == name &&
                settingsDirectoryFor(deviceDir, key) == directory)
                keys.push_back(key);
        }
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

bool clearVolatileSettings(const std::string& deviceDir) {
    const std::string directory = volatileDirectory(deviceDir);
    const std::string anyEntry = directory + "/";
    if (!staysBeneath(deviceDir.c_str(), anyEntry.c_str())) return false;
    // The temporary file of a writer that is running now becomes its key when renamed.
    int error = 0;
    for (const std::string& name : listDirectory(directory)) {
        if (isTemporaryFileName(name)) continue;
        if (sys::unlink((directory + "/" + name).c_str()) != 0 && errno != ENOENT && error == 0) error = errno;
    }
    errno = error;
    return error == 0;
}

} // namespace Emulator
} // namespace Orvo

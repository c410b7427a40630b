#include "orvo/device/SettingsStore.h"

#include "FileOps.h"
#include "orvo/device/TextValues.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <unistd.h>
#include <vconf.h>

namespace Orvo {
namespace Emulator {
namespace {

const char kVolatilePrefix[] = "memory/";
const char* const kPersistentPrefixes[] = {"db/", "file/"};

bool startsWith(const std::string& text, const char* prefix) {
    return text.compare(0, std::char_traits<char>::length(prefix), prefix) == 0;
}

bool isVolatileKey(const std::string& key) { return startsWith(key, kVolatilePrefix); }

bool hasKnownPrefix(const std::string& key) {
    if (isVolatileKey(key)) return true;
    for (const char* prefix : kPersistentPrefixes)
        if (startsWith(key, prefix)) return true;
    return false;
}

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

std::string settingPath(const std::string& deviceDir, const std::string& key) {
    return settingsDirectoryFor(deviceDir, key) + "/" + encodeKey(key);
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
    if (setting.value.size() > kMaxSettingValueLength) return false;
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
        return true;
    }
    return false;
}

int errorFromErrno() {
    switch (errno) {
    case kNotRegularFile:
    case ELOOP:
        return VCONF_ERROR_FILE_OPEN;
    case ENOENT:
    case ENOTDIR:
        return VCONF_ERROR_FILE_NO_ENT;
    case EACCES:
    case EPERM:
    case EROFS:
        return VCONF_ERROR_FILE_PERM;
    case ENOSPC:
    case EDQUOT:
        return VCONF_ERROR_FILE_NO_MEM;
    case EBUSY:
        return VCONF_ERROR_FILE_BUSY;
    default:
        return VCONF_ERROR;
    }
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

bool settingKeyFits(const std::string& key) { return encodeKey(key).size() <= NAME_MAX; }

int readSetting(const std::string& deviceDir, const std::string& key, Setting& out) {
    if (!hasKnownPrefix(key)) return VCONF_ERROR_WRONG_PREFIX;
    // The longest valid file is the longest type name, a line feed and the longest value.
    const std::size_t maxFileSize = kMaxSettingValueLength + 8;
    const std::string path = settingPath(deviceDir, key);
    std::string content;
    if (!staysBeneath(deviceDir.c_str(), path.c_str())) return errorFromErrno();
    if (!readFile(path, content, maxFileSize)) return errno == EFBIG ? VCONF_ERROR_FILE_FREAD : errorFromErrno();
    const std::size_t lineFeed = content.find('\n');
    Setting setting;
    if (lineFeed == std::string::npos || !parseType(content.substr(0, lineFeed), setting.type))
        return VCONF_ERROR_FILE_FREAD;
    setting.value = content.substr(lineFeed + 1);
    if (!isValidValue(setting)) return VCONF_ERROR_FILE_FREAD;
    out = setting;
    return VCONF_OK;
}

int writeSetting(const std::string& deviceDir, const std::string& key, const Setting& setting) {
    if (!hasKnownPrefix(key)) return VCONF_ERROR_WRONG_PREFIX;
    if (!isValidValue(setting)) return VCONF_ERROR_WRONG_VALUE;
    const std::string path = settingPath(deviceDir, key);
    if (!makeDirectoriesBeneath(deviceDir, settingsDirectoryFor(deviceDir, key)) ||
        !staysBeneath(deviceDir.c_str(), path.c_str()))
        return errorFromErrno();
    const std::string content = std::string(settingTypeName(setting.type)) + "\n" + setting.value;
    if (!replaceFileAtomically(path, content)) return errorFromErrno();
    return VCONF_OK;
}

int removeSetting(const std::string& deviceDir, const std::string& key) {
    if (!hasKnownPrefix(key)) return VCONF_ERROR_WRONG_PREFIX;
    const std::string path = settingPath(deviceDir, key);
    if (!staysBeneath(deviceDir.c_str(), path.c_str()) || !removeFileDurably(path)) return errorFromErrno();
    return VCONF_OK;
}

std::vector<std::string> listSettings(const std::string& deviceDir) {
    std::vector<std::string> keys;
    for (const std::string& directory : {persistentDirectory(deviceDir), volatileDirectory(deviceDir)}) {
        for (const std::string& name : listDirectory(directory)) {
            std::string key;
            if (!isTemporaryFileName(name) && decodeKey(name, key) && hasKnownPrefix(key) &&
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
    for (const std::string& name : listDirectory(directory))
        if (!isTemporaryFileName(name)) ::unlink((directory + "/" + name).c_str());
    return true;
}

} // namespace Emulator
} // namespace Orvo

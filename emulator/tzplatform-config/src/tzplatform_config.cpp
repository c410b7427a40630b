// tzplatform-config on the emulated device: the variables listed in the device's device.conf.

#pragma GCC visibility push(default)
#include <tzplatform_config.h>
#pragma GCC visibility pop

#include "orvo/device/DeviceConf.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <grp.h>
#include <initializer_list>
#include <mutex>
#include <new>
#include <pwd.h>
#include <set>
#include <string>
#include <unistd.h>

namespace {

using Orvo::Emulator::DeviceConf;

const uid_t kNoUser = static_cast<uid_t>(-1);

// For the reentrant user and group lookups; an entry larger than this counts as missing.
constexpr std::size_t kLookupBufferSize = 16384;

// The user set with tzplatform_set_user, kNoUser for the process's own.
std::atomic<uid_t> contextUser{kNoUser};

// Callers keep the returned pointer for the life of the process, while device.conf may change
// under them. Every string ever returned is therefore kept here, once, and never released (not
// even at exit, where other threads may still use it). Set nodes never move, so the pointer of
// each string stays valid.
const char* intern(const std::string& text) {
    static std::mutex mutex;
    static std::set<std::string>* const strings = new std::set<std::string>;
    std::lock_guard<std::mutex> lock(mutex);
    return strings->insert(text).first->c_str();
}

// Runs query on the device's current configuration; fallback when there is none or memory runs out.
template <typename Result, typename Query>
Result withConf(Result fallback, Query query) {
    try {
        DeviceConf conf;
        if (!DeviceConf::loadCurrent(conf)) return fallback;
        return query(conf);
    } catch (const std::bad_alloc&) {
        return fallback;
    }
}

// One more than the highest index the device lists.
int countOf(const DeviceConf& conf) {
    int count = 0;
    if (!conf.tzplatform.empty()) count = conf.tzplatform.rbegin()->first + 1;
    if (!conf.tzplatformNames.empty()) count = std::max(count, conf.tzplatformNames.rbegin()->first + 1);
    return count;
}

// The value of id, or false for an index outside the variables or without a value.
bool valueOf(const DeviceConf& conf, tzplatform_variable id, std::string& value) {
    const int index = static_cast<int>(id);
    if (index < 0 || index >= countOf(conf)) return false;
    const auto entry = conf.tzplatform.find(index);
    if (entry == conf.tzplatform.end()) return false;
    value = entry->second;
    return true;
}

// The value with the parts joined: exactly one '/' at each junction; empty parts are skipped and
// a null part ends the list.
const char* joinPath(tzplatform_variable id, std::initializer_list<const char*> parts) {
    return withConf<const char*>(nullptr, [&](const DeviceConf& conf) -> const char* {
        std::string path;
        if (!valueOf(conf, id, path)) return nullptr;
        for (const char* part : parts) {
            if (part == nullptr) break;
            std::string next = part;
            if (next.empty()) continue;
            const bool leftSlash = !path.empty() && path.back() == '/';
            if (leftSlash && next[0] == '/') next.erase(0, 1);
            if (!leftSlash && next[0] != '/') path += '/';
            path += next;
        }
        return intern(path);
    });
}

// The value of id, looked up as a user or group name; `none` without one.
template <typename Id, typename Lookup>
Id lookUpValue(tzplatform_variable id, Id none, Lookup lookup) {
    std::string name;
    if (!withConf(false, [&](const DeviceConf& conf) { return valueOf(conf, id, name); })) return none;
    char buffer[kLookupBufferSize];
    return lookup(name.c_str(), buffer, none);
}

} // namespace

extern "C" {

int tzplatform_getcount(void) { return withConf(0, countOf); }

const char* tzplatform_getname(enum tzplatform_variable id) {
    return withConf<const char*>(nullptr, [&](const DeviceConf& conf) -> const char* {
        const int index = static_cast<int>(id);
        const auto entry = conf.tzplatformNames.find(index);
        return index >= countOf(conf) || entry == conf.tzplatformNames.end() ? nullptr : intern(entry->second);
    });
}

enum tzplatform_variable tzplatform_getid(const char* name) {
    if (name == nullptr) return _TZPLATFORM_VARIABLES_INVALID_;
    return withConf(_TZPLATFORM_VARIABLES_INVALID_, [&](const DeviceConf& conf) {
        for (const auto& entry : conf.tzplatformNames)
            if (entry.second == name && entry.first >= 0) return static_cast<tzplatform_variable>(entry.first);
        return _TZPLATFORM_VARIABLES_INVALID_;
    });
}

const char* tzplatform_getenv(enum tzplatform_variable id) {
    return withConf<const char*>(nullptr, [&](const DeviceConf& conf) -> const char* {
        std::string value;
        return valueOf(conf, id, value) ? intern(value) : nullptr;
    });
}

int tzplatform_getenv_int(enum tzplatform_variable id) {
    return withConf(-1, [&](const DeviceConf& conf) {
        std::string value;
        return valueOf(conf, id, value) ? std::atoi(value.c_str()) : -1;
    });
}

const char* tzplatform_mkstr(enum tzplatform_variable id, const char* str) {
    return withConf<const char*>(nullptr, [&](const DeviceConf& conf) -> const char* {
        std::string value;
        if (!valueOf(conf, id, value)) return nullptr;
        return intern(str == nullptr ? value : value + str);
    });
}

const char* tzplatform_mkpath(enum tzplatform_variable id, const char* path) { return joinPath(id, {path}); }

const char* tzplatform_mkpath3(enum tzplatform_variable id, const char* path, const char* path2) {
    return joinPath(id, {path, path2});
}

const char* tzplatform_mkpath4(enum tzplatform_variable id, const char* path, const char* path2, const char* path3) {
    return joinPath(id, {path, path2, path3});
}

uid_t tzplatform_getuid(enum tzplatform_variable id) {
    return lookUpValue(id, kNoUser, [](const char* name, char* buffer, uid_t none) {
        passwd entry;
        passwd* found = nullptr;
        ::getpwnam_r(name, &entry, buffer, kLookupBufferSize, &found);
        return found != nullptr ? found->pw_uid : none;
    });
}

gid_t tzplatform_getgid(enum tzplatform_variable id) {
    return lookUpValue(id, static_cast<gid_t>(-1), [](const char* name, char* buffer, gid_t none) {
        group entry;
        group* found = nullptr;
        ::getgrnam_r(name, &entry, buffer, kLookupBufferSize, &found);
        return found != nullptr ? found->gr_gid : none;
    });
}

int tzplatform_set_user(uid_t uid) {
    if (uid != kNoUser) {
        char buffer[kLookupBufferSize];
        passwd entry;
        passwd* found = nullptr;
        if (::getpwuid_r(uid, &entry, buffer, kLookupBufferSize, &found) != 0 || found == nullptr) return -1;
    }
    contextUser = uid;
    return 0;
}

uid_t tzplatform_get_user(void) {
    const uid_t user = contextUser;
    return user == kNoUser ? ::getuid() : user;
}

void tzplatform_reset_user(void) { contextUser = kNoUser; }

void tzplatform_reset(void) {}

} // extern "C"

// tzplatform-config on the emulated device: the roots listed in the device's device.conf.

#pragma GCC visibility push(default)
#include <tzplatform_config.h>
#pragma GCC visibility pop

#include "orvo/device/DeviceConf.h"

#include <mutex>
#include <new>
#include <set>
#include <string>

namespace {

// Callers keep the returned pointer for the life of the process, while device.conf may change
// under them. Every directory ever returned is therefore kept here, once, and never released
// (not even at exit, where other threads may still use it). Set nodes never move, so the
// pointer of each string stays valid.
const char* intern(const std::string& text) {
    static std::mutex mutex;
    static std::set<std::string>* const strings = new std::set<std::string>;
    std::lock_guard<std::mutex> lock(mutex);
    return strings->insert(text).first->c_str();
}

} // namespace

extern "C" const char* tzplatform_getenv(enum tzplatform_variable id) {
    try {
        Orvo::Emulator::DeviceConf conf;
        if (!Orvo::Emulator::DeviceConf::loadCurrent(conf)) return nullptr;
        const auto entry = conf.tzplatform.find(static_cast<int>(id));
        return entry == conf.tzplatform.end() ? nullptr : intern(entry->second);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

#include "Platform/SystemAPI/VconfSystemAPI/IVConfTizen.h"

#include <cstdlib>
#include <memory>

namespace Orvo {
namespace Platform {
namespace VConfDetails {

int vconf_get_bool_wrapper(const char* key, bool* value) {
    int stored = 0;
    const int result = vconf_get_bool(key, &stored);
    *value = stored != 0;
    return result;
}

int vconf_set_bool_wrapper(const char* key, bool value) { return vconf_set_bool(key, value ? 1 : 0); }

int vconf_get_string_wrapper(const char* key, std::string* value) {
    const std::unique_ptr<char, decltype(&std::free)> text(vconf_get_str(key), &std::free);
    if (!text) {
        return -1;
    }
    *value = text.get();
    return 0;
}

int vconf_set_string_wrapper(const char* key, std::string value) { return vconf_set_str(key, value.c_str()); }

} // namespace VConfDetails
} // namespace Platform
} // namespace Orvo

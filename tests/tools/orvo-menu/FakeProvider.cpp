// Test plug-ins for the host, built from this one source:
//  - FAKE_CARELESS: breaks the host contract in several places (the check must go red);
//  - FAKE_FAILING_CREATE: create_provider fails;
//  - otherwise a plug-in that keeps the contract, with its settings held in memory.
// Linked with or without the version script, which gives the plug-in without a version node.

#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

namespace {

constexpr std::size_t kSlots = 51;
using AnySlot = void (*)();
std::map<std::string, int> g_settings = {{"db/menu/support/softwareupdate/autoupdate", 1},
                                         {"db/menu/support/softwareupdate/use_cellular_int", 0}};
bool g_detailed = false;

const char* const kTitles[][2] = {
    {"menu/support/softwareupdate", "Fake Update"},
    {"menu/support/softwareupdate/updatenow", "Fake Now"},
    {"menu/support/softwareupdate/searchmodels", "Fake Models"},
    {"db/menu/support/softwareupdate/autoupdate", "Fake Auto"},
    {"db/menu/support/softwareupdate/use_cellular_int", "Fake Cellular"},
    {"menu/support/softwareupdate/osupgrade", "Fake OS"},
};

#ifdef FAKE_CARELESS
constexpr bool kCareless = true;
#else
constexpr bool kCareless = false;
#endif
#ifdef FAKE_FAILING_CREATE
constexpr bool kFailingCreate = true;
#else
constexpr bool kFailingCreate = false;
#endif

const char* findTitle(const char* id) {
    for (const auto& entry : kTitles) {
        if (std::strcmp(entry[0], id) == 0) return entry[1];
    }
    return nullptr;
}

int setIntValue(const char* key, int value) {
    if (std::strncmp(key, "db/", 3) != 0) return 1;
    g_settings[key] = value;
    return 0;
}

int getIntValue(const char* key, int* value) {
    const auto found = g_settings.find(key);
    if (found == g_settings.end()) return 1;
    *value = found->second;
    return 0;
}

int getValueString(const char* id, char** out) {
    if (out == nullptr) return -1;
    if (std::strcmp(id, "menu/support/softwareupdate/searchmodels") == 0) *out = strdup("FAKE-MODEL");
    return *out != nullptr ? 0 : -1;
}

int freeString(void* p) {
    if (p == nullptr) return kCareless ? 0 : 1;
    std::free(p);
    return 0;
}

int getTitle(const char* id, char** out) {
    if (out == nullptr) return -1;
    const char* title = findTitle(id);
    if (title != nullptr) *out = strdup(title);
    return *out != nullptr || kCareless ? 0 : -1;
}

int getDescription(const char* id, char** out) {
    if (out == nullptr) return -1;
    const bool detailed = g_detailed && std::strcmp(id, kTitles[0][0]) == 0;
    const std::string help = findTitle(id) ? std::string("Help for<br>") + id : std::string();
    *out = strdup(detailed ? "SW Version: FAKE-1.0" : (help + "\n\nVersion 1").c_str());
    g_detailed = false;
    return 0;
}

int getValueText(const char* id, char** out) {
    const auto found = g_settings.find(id);
    if (found == g_settings.end()) {
        if (kCareless) std::strcpy(*out, "SID_OFF");
        return -1;
    }
    if (found->second != 0 && found->second != 1) return -1;
    std::strcpy(*out, found->second == 1 ? "SID_ON" : "SID_OFF");
    return 1;
}

int getProviderProperty(const char* key, char** out) {
    if (std::strcmp(key, "provider/owner") == 0) *out = strdup("fake.owner");
    if (std::strncmp(key, "provider/", 9) == 0 && std::strstr(key, "component")) *out = strdup("TP_FAKE");
    return 0;
}

void onKeyEvent(const char* keyName) {
    if (keyName != nullptr && (kCareless || std::strcmp(keyName, "XF86Info") == 0)) g_detailed = true;
}

template <typename Fn>
AnySlot slot(Fn function) {
    return reinterpret_cast<AnySlot>(function);
}

} // namespace

extern "C" __attribute__((visibility("default"))) int create_provider(AnySlot** out) {
    if (kFailingCreate) return -1;
    auto* record = static_cast<AnySlot*>(std::calloc(kSlots, sizeof(AnySlot)));
    if (record == nullptr) return -1;
    record[0] = slot(setIntValue);
    record[8] = slot(getIntValue);
    record[11] = slot(getValueString);
    record[12] = slot(freeString);
    record[13] = slot(getTitle);
    record[14] = slot(getDescription);
    record[38] = slot(getValueText);
    record[44] = slot(getProviderProperty);
    record[45] = slot(onKeyEvent);
    if (kCareless) record[20] = slot(onKeyEvent);
    *out = record;
    return 0;
}

extern "C" __attribute__((visibility("default"))) int delete_provider(AnySlot** provider) {
    if (provider == nullptr) return 1;
    std::free(*provider);
    return 0;
}

// A test plug-in that breaks the host contract: freeString(nullptr) answers 0, slot 20 is filled
// and getTitle gives a title for any identifier. A FAKE_CREATE_RESULT other than 0 makes
// create_provider fail; linked without the version script the plug-in has no version node.

#include <cstdlib>
#include <cstring>

using AnySlot = void (*)();

extern "C" __attribute__((visibility("default"))) int create_provider(AnySlot** out) {
    if (FAKE_CREATE_RESULT != 0) return FAKE_CREATE_RESULT;
    auto* record = static_cast<AnySlot*>(std::calloc(51, sizeof(AnySlot)));
    if (record == nullptr) return -1;
    auto* freeString = +[](void* p) { return std::free(p), 0; };
    auto* getTitle = +[](const char*, char** out) { return out ? (*out = strdup("Fake"), 0) : -1; };
    record[12] = record[20] = reinterpret_cast<AnySlot>(freeString);
    record[13] = reinterpret_cast<AnySlot>(getTitle);
    *out = record;
    return 0;
}

extern "C" __attribute__((visibility("default"))) int delete_provider(AnySlot** provider) {
    if (provider != nullptr) std::free(*provider);
    return provider != nullptr ? 0 : 1;
}

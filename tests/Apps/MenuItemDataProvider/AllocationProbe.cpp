// Runs create_provider twice under the calloc shim (CallocFailureShim.c): once with the record's
// allocation failing, once normally, and prints what the host would see.

#include "MenuItemDataProvider.h"

#include <dlfcn.h>

#include <cstdio>

int main() {
    void* library = dlopen(ORVO_MENU_PROVIDER_PATH, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::fprintf(stderr, "dlopen: %s\n", dlerror());
        return 2;
    }
    auto createProvider =
        reinterpret_cast<int (*)(MenuItemDataProvider**)>(dlvsym(library, "create_provider", "ORVOMENUITEMDATAPROVIDER"));
    auto failNextCalloc = reinterpret_cast<void (*)(size_t)>(dlsym(RTLD_DEFAULT, "orvoFailNextCallocOfSize"));
    if (createProvider == nullptr || failNextCalloc == nullptr) {
        std::fprintf(stderr, "create_provider or the calloc shim is missing\n");
        return 2;
    }

    static MenuItemDataProvider hostsOwn;
    const char* const rounds[] = {"failing", "working"};
    for (const char* round : rounds) {
        MenuItemDataProvider* out = &hostsOwn;
        if (round == rounds[0]) failNextCalloc(sizeof(MenuItemDataProvider));
        const int result = createProvider(&out);
        std::printf("%s calloc: result=%d out untouched=%d\n", round, result, out == &hostsOwn ? 1 : 0);
    }
    return 0;
}

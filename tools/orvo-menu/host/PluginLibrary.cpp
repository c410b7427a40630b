#include "PluginLibrary.h"

#include <dlfcn.h>
#include <unistd.h>

#include <vector>

namespace Orvo {
namespace Tools {
namespace MenuHost {

namespace {

void* versionedSymbol(void* handle, const char* name, const std::string& path) {
    void* symbol = dlvsym(handle, name, kEntryPointVersion);
    if (symbol == nullptr) {
        throw PluginError(path + ": no entry point " + name + "@" + kEntryPointVersion);
    }
    return symbol;
}

} // namespace

std::string executableDirectory() {
    std::vector<char> buffer(4096);
    const ssize_t length = readlink("/proc/self/exe", buffer.data(), buffer.size() - 1);
    if (length <= 0) return ".";
    const std::string path(buffer.data(), static_cast<std::size_t>(length));
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash);
}

std::string defaultPluginPath() { return executableDirectory() + "/../lib/libOrvoMenuItemDataProvider.so"; }

PluginLibrary::PluginLibrary(const std::string& path) : path_(path) {
    handle_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle_ == nullptr) {
        const char* reason = dlerror();
        throw PluginError("cannot load plug-in: " + std::string(reason ? reason : path));
    }
    try {
        create_ = reinterpret_cast<CreateProviderFn>(versionedSymbol(handle_, "create_provider", path));
        delete_ = reinterpret_cast<DeleteProviderFn>(versionedSymbol(handle_, "delete_provider", path));
    } catch (...) {
        dlclose(handle_);
        throw;
    }
}

PluginLibrary::~PluginLibrary() { dlclose(handle_); }

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo

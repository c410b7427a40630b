#pragma once
// Loads a menu plug-in the way the television's settings menu does: dlopen, then the two entry
// points by their versioned names.

#include "ProviderRecord.h"

#include <stdexcept>
#include <string>

namespace Orvo {
namespace Tools {
namespace MenuHost {

// The symbol version node both entry points are bound to.
constexpr const char* kEntryPointVersion = "ORVOMENUITEMDATAPROVIDER";

// A plug-in that cannot be used; what() is one line for standard error.
class PluginError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The directory of the running executable (the host's data is found relative to it).
std::string executableDirectory();

// <directory of the running executable>/../lib/libOrvoMenuItemDataProvider.so
std::string defaultPluginPath();

class PluginLibrary {
public:
    // Throws PluginError when the library cannot be loaded or an entry point is missing.
    explicit PluginLibrary(const std::string& path);
    ~PluginLibrary();
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

    const std::string& path() const { return path_; }
    CreateProviderFn createProvider() const { return create_; }
    DeleteProviderFn deleteProvider() const { return delete_; }

private:
    std::string path_;
    void* handle_ = nullptr;
    CreateProviderFn create_ = nullptr;
    DeleteProviderFn delete_ = nullptr;
};

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo

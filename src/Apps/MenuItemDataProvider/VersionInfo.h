#pragma once
// The version facts shown at the end of the branch's descriptions and in the detailed block
// after the Info key. Every fact is read afresh on each request; an unreadable source is empty
// and drops its line, it never fails the request.

#include "Apps/MenuItemDataProvider/ProductFiles.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace Orvo {
namespace Apps {
namespace MenuProvider {

constexpr int32_t kSoftwareVersionKey = 128;
constexpr int32_t kBuildDateKey = 8;
constexpr const char* kNewestVersionSetting = "memory/menu/support/softwareupdate/newest_version";
constexpr const char* kVersionTag = "<<A>>";

struct FreeDeleter {
    void operator()(char* text) const noexcept { std::free(text); }
};
// A text that the platform allocated with malloc; null when the platform had none.
using PlatformString = std::unique_ptr<char, FreeDeleter>;

inline std::string_view viewOf(const PlatformString& text) noexcept {
    return text ? std::string_view(text.get()) : std::string_view();
}

// A system-information string; null when the read fails.
PlatformString readSystemInfoString(int32_t key) noexcept;
// The newest version the update server offered; null when unknown.
PlatformString readNewestVersion() noexcept;
// The first word of the common layer's version file; empty when it cannot be read.
std::string readCommonLayerVersion();
bool usingDevelopmentKeys() noexcept;

// The short form users know a version by: the number after the last '-', before the first '.',
// without leading zeros ("X-ABCDEF-01234.5" is "1234"). A number of zeros only stays as it is.
std::string_view displayForm(std::string_view version) noexcept;

// Appends the localized current-version line (after a blank line) and newest-version line, each
// only when its version is known. A null translation reads "ERROR_TEXT_NULL" and one without the
// version tag "ERROR_INVALID_TAG".
void appendVersionLines(std::string& description);

// "SW Version: <raw version>", then build date and key type when development keys are in use,
// then the common layer's version when known.
std::string detailedVersionBlock();

} // namespace MenuProvider
} // namespace Apps
} // namespace Orvo

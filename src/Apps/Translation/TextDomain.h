#pragma once
// The application's message catalogue: its text domain and the directory the platform keeps it
// in. The plug-in binds the one to the other; hosts translate in the same domain.

namespace Orvo {
namespace Apps {

constexpr const char* kTextDomain = "Tizen_Orvo";
constexpr const char* kLocaleDirectory = "/usr/share/orvotv/res/locale";

} // namespace Apps
} // namespace Orvo

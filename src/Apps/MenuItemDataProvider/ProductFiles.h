#pragma once
// Files of the television that the plug-in reads, at their absolute paths. The device tools that
// create or edit them use these names too, so that both always mean the same file.

namespace Orvo {
namespace Apps {
namespace MenuProvider {

constexpr const char* kCommonVersionFile = "/common/version.txt";
constexpr const char* kDevelopmentKeysMarker = "/usr/share/orvotv/UsingOrvoDevelopmentKeys";

} // namespace MenuProvider
} // namespace Apps
} // namespace Orvo

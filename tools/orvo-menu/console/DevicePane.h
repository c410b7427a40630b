#pragma once
// The device's facts as the console shows and changes them: the system-information entries of
// device.conf, the settings, the production flag, the development-keys marker and the version
// file. A change is checked completely before anything is written, and written through the
// device's own crash-safe paths.

#include <nlohmann/json.hpp>

#include <string>

namespace Orvo {
namespace Tools {
namespace Console {

// Where the plug-in reads the development-keys marker and the common layer's version.
constexpr const char* kDevelopmentKeysMarker = "/usr/share/orvotv/UsingOrvoDevelopmentKeys";
constexpr const char* kVersionFile = "/common/version.txt";
// The longest text a change may carry (the largest setting value).
constexpr std::size_t kMaxValueLength = 4096;

class DevicePane {
public:
    explicit DevicePane(std::string deviceDir) : deviceDir_(std::move(deviceDir)) {}

    nlohmann::json read() const;

    // One change, an object with "kind" and the members of that kind:
    //   {"kind":"system-info", "key":128, "type":"int|bool|double|string|error", "value":"..."}
    //   {"kind":"setting", "key":"db/...", "type":"int|bool|double|string", "value":"..."}
    //   {"kind":"production", "value":true}
    //   {"kind":"development-keys", "value":true}
    //   {"kind":"version-file", "value":"17.037.0 ..." or null to remove it}
    // Throws RequestError (nothing written) when the change is not valid.
    void apply(const nlohmann::json& change) const;

private:
    std::string deviceDir_;
};

// Checks that `object` is an object whose members are all in `allowed` and that every name of
// `required` is there; throws RequestError naming the first one that is not.
void checkMembers(const nlohmann::json& object, std::initializer_list<const char*> required,
                  std::initializer_list<const char*> allowed);

} // namespace Console
} // namespace Tools
} // namespace Orvo

#pragma once
// The device's facts as the console shows and changes them: the system-information entries of
// device.conf, the settings, the production flag, the development-keys marker, the version file
// and the menu's language. A change is checked completely before anything is written, and written
// through the device's own crash-safe paths.

#include <nlohmann/json.hpp>

#include <functional>
#include <string>

namespace Orvo {
namespace Tools {
namespace Console {

class DevicePane {
public:
    using LanguageSelector = std::function<void(const std::string& language)>;

    // selectLanguage switches the menu's language; it throws RequestError for an unknown one.
    DevicePane(std::string deviceDir, LanguageSelector selectLanguage)
        : deviceDir_(std::move(deviceDir)), selectLanguage_(std::move(selectLanguage)) {}

    nlohmann::json read() const;

    // One change, an object with "kind" and the members of that kind:
    //   {"kind":"system-info", "key":128, "type":"int|bool|double|string|error", "value":"..."}
    //   {"kind":"setting", "key":"db/...", "type":"int|bool|double|string", "value":"..."}
    //   {"kind":"production", "value":true}
    //   {"kind":"development-keys", "value":true}
    //   {"kind":"version-file", "value":"17.037.0 ..." or null to remove it}
    //   {"kind":"language", "value":"de"}
    // Throws RequestError (nothing written) when the change is not valid.
    void apply(const nlohmann::json& change) const;

private:
    std::string deviceDir_;
    LanguageSelector selectLanguage_;
};

} // namespace Console
} // namespace Tools
} // namespace Orvo

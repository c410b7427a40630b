#pragma once
// Answers that the television's factory menu settles. Every call reads the platform again and
// logs its answer; a failed read falls back to a built-in default.

#include <boost/optional.hpp>

namespace Orvo {
namespace Platform {

class IFactorySettings {
public:
    IFactorySettings() = delete;

    // OTN server types returned by getOTNServerType().
    static constexpr unsigned kTestServer = 0;
    static constexpr unsigned kDebugParametersTestServer = 1;
    static constexpr unsigned kRegularServer = 2;

    static bool isRetailTvOtnEnabled();
    static bool isB2BTvOtnEnabled();
    static bool isOtaSupportedByFactory();
    static boost::optional<char> getZoneCode();
    static bool isOrvoFailTestActive();
    static unsigned getOTNServerType();
    static bool isShortOtaDuration();
    static void factoryOsUpgrade();
    static bool isFastBootInProductionMode();
};

} // namespace Platform
} // namespace Orvo

#pragma once
// System information and device identity: the platform's system-information service, a few
// identity values that the platform keeps in vconf, and the submodel settings.

#include <boost/exception/exception.hpp>

#include <cstdint>
#include <exception>
#include <string>

namespace Orvo {
namespace Platform {

// A system-information read failed inside the product-information layer.
class SystemInfoAPIInternalProblemException : public virtual boost::exception, public virtual std::exception {
public:
    const char* what() const noexcept override { return "Orvo::Platform::SystemInfoAPIInternalProblemException"; }
};

class ISystemInfo {
public:
    ISystemInfo() = delete;

    // Maps a system-information result to GenericException; 0 returns.
    static void checkSystemInfoError(int error);

    // Reads of the platform's system-information service; failures throw (checkSystemInfoError).
    static int getSystemInfoInt(int32_t key);
    static bool getSystemInfoBool(int32_t key);
    static std::string getSystemInfoString(int32_t key);

    // Identity values kept in vconf.
    static std::string getCountryCode();     // two letters, or "" (never throws for vconf)
    static std::string getFirmwareVersion(); // throws when missing or empty
    static std::string getAtoken();          // throws when missing or empty
    static std::string getDuid();            // throws when missing or empty

    // Submodel settings (CSystemInfoCommon). Getters fall back to defaults, setters log
    // vconf failures; neither throws for vconf.
    static std::string getFlashedSubmodel();
    static void setFlashedSubmodel(const std::string& submodel);
    static std::string getStoredSelectedSubmodel();
    static bool isSubmodelSelected();
    static std::string getSelectedSubmodel(bool raw);
    static void setSelectedSubmodel(const std::string& submodel);
    static bool isAnySubmodel();
    static void setAnySubmodel(bool value);
};

} // namespace Platform
} // namespace Orvo

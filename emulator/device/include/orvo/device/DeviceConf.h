#pragma once
// device.conf: the device's facts (system information, tzplatform roots, production mode, dlog
// settings). Read afresh by every platform call; never cached.

#include <map>
#include <stdexcept>
#include <string>

namespace Orvo {
namespace Emulator {

// The value of a system-information key. A key by name keeps its stored text in stringValue
// whatever its type: the library converts it as the platform does.
struct SystemInfoValue {
    enum class Type { Int, Bool, Double, String, Error };
    Type type = Type::Error;
    long long intValue = 0;  // Int
    bool boolValue = false;  // Bool
    double doubleValue = 0;  // Double
    std::string stringValue; // String
    int errorCode = 0;       // Error: every read of the key fails with this result
};

// A system-information key by name as device.conf lists it: without a leading "http://".
std::string systemInfoKeyName(const std::string& key);

// device.conf cannot be read: missing, unreadable, no regular file, or over the size limit.
// The message is one line that names the file.
struct DeviceConfError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// What the platform's dlog takes from its build and its configuration:
//   dlog.plog = true|false            the main, radio and system buffers take records (default
//                                     true, as on a television; false: they answer -1)
//   dlog.abort-on-fatal = true|false  a DLOG_FATAL record aborts the process after it is written,
//                                     as the public build does (default false)
struct DlogSettings {
    bool plog = true;
    bool abortOnFatal = false;
};

struct DeviceConf {
    std::map<int, SystemInfoValue> systemInfo;           // system-info.<number>
    std::map<std::string, SystemInfoValue> platformInfo; // system-info.platform.<key>, without "http://"
    std::map<std::string, SystemInfoValue> customInfo;   // system-info.custom.<key>, the same
    std::map<int, std::string> tzplatform;               // tzplatform.<index>: the value
    std::map<int, std::string> tzplatformNames;          // tzplatform.<index>.name
    bool production = false;
    DlogSettings dlog;

    // Parses <deviceDir>/device.conf; throws DeviceConfError when it cannot be read whole. A
    // malformed line is reported on standard error with its line number, once per process, and
    // skipped.
    static DeviceConf load(const std::string& deviceDir);
    // For the substitute libraries: the configuration of the current device (findDevice()).
    // False, with the reason reported on standard error once, when there is none to read.
    static bool loadCurrent(DeviceConf& out);
    // Only the dlog settings of <deviceDir>/device.conf, without allocating (dlog writes a record
    // without touching the heap). False when the file cannot be read; bad lines are left to load().
    static bool loadDlogSettings(const char* deviceDir, DlogSettings& out);
    // Parses text as if it were device.conf; `origin` names it in reports.
    static DeviceConf parse(const std::string& text, const std::string& origin);
};

} // namespace Emulator
} // namespace Orvo

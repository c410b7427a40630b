#pragma once
// The software-update application's log: printf-style statements and a stream logger, both
// ending in the platform log (dlog); the console sink serves the assertion handlers.

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

namespace Orvo {
namespace Common {
namespace Logging {

enum LogLevel : int32_t {
    VERBOSE = 1, // never emitted
    DBG = 2,
    INF = 3,
    WRN = 4,
    ERR = 5,
    FTL = 6,
};

// The one dlog tag of the application.
constexpr const char* kLogTag = "orvotv.Orvo";

// A sink receives one formatted text. It may write into `text` (the dlog sink cuts long texts in
// place) but leaves it as it found it.
using LogSink = void (*)(const char* tag, int32_t level, char* text);

// Formats the message and hands it to the sink; with a data block, one line per 16 bytes of hex
// dump. Levels 0 and 1 are dropped. Allocates nothing unless the text exceeds 1,023 bytes.
void logPrintf(LogSink sink, const char* tag, int32_t level, const void* data, int32_t dataLength, const char* format,
               ...) noexcept __attribute__((format(printf, 6, 7)));

// Writes a text to dlog, line by line, with module name, thread, sequence number and level.
void dlogLineSink(const char* tag, int32_t level, char* text);

// "Direct": writes a text to the device console (standard output reopened on /dev/console).
void consoleSink(const char* tag, int32_t level, char* text);

// The part of a path after its last '/'.
constexpr const char* baseName(const char* path) {
    const char* name = path;
    for (const char* p = path; *p != '\0'; ++p) {
        if (*p == '/') name = p + 1;
    }
    return name;
}

// "VERBOSE", "DBG", "INF", "WRN", "ERR", "FTL" or "UNKNOWN LEVEL".
const char* levelName(int32_t level) noexcept;
// The level's letter: 'D', 'I', 'W', 'C', 'E' for DBG to FTL, 'I' otherwise.
char levelLetter(int32_t level) noexcept;

// Sets the process-wide module name to name + "-" + the project's version with a three-digit
// minor ("-17.037.0"). Called once at start-up, if at all.
void setModuleName(const std::string& name);
// The current module name (empty until setModuleName).
const char* moduleName() noexcept;

// Whether `milliseconds` have passed since startTimePoint (boost::chrono::steady_clock, in ns).
// The limit is captured by the first call in the process; later calls' limits are ignored.
bool hasElapsed(int64_t startTimePoint, int64_t milliseconds);

// Boot-log lines, off unless enabled; the output routine does nothing in this build.
void setBootLogEnabled(bool enabled) noexcept;
void formatBootLine(char* buffer, std::size_t size, int32_t level, const char* field, const char* text);

class LoggingClass {
public:
    // Collects text with << and logs it, at the line of its creation, when destroyed.
    class LoggingStream {
    public:
        // An ostringstream that prints "[nullptr]" for a null pointer instead of failing. Every
        // insertion returns the SafeOstringStream itself, so a null pointer anywhere in a chain
        // is caught.
        class SafeOstringStream : public std::basic_ostringstream<char> {
        public:
            SafeOstringStream()
                : std::basic_ostringstream<char>(std::string(), std::ios_base::out | std::ios_base::ate) {}

            template <typename T>
            SafeOstringStream& operator<<(const T& value) {
                static_cast<std::ostream&>(*this) << value;
                return *this;
            }
            // Any other pointer, a null `char*` included.
            template <typename T>
            SafeOstringStream& operator<<(T* pointer) {
                if (pointer == nullptr) return *this << nullptr;
                static_cast<std::ostream&>(*this) << pointer;
                return *this;
            }
            SafeOstringStream& operator<<(const char* text);
            SafeOstringStream& operator<<(const void* pointer);
            SafeOstringStream& operator<<(std::nullptr_t);
            SafeOstringStream& operator<<(std::ostream& (*manipulator)(std::ostream&));
        };

        LoggingStream(const char* tag, int32_t level, const char* file, int32_t line);
        ~LoggingStream();
        LoggingStream(const LoggingStream&) = delete;
        LoggingStream& operator=(const LoggingStream&) = delete;

        SafeOstringStream& stream() { return m_stream; }

    private:
        const char* m_tag;
        const char* m_file;
        int32_t m_line;
        int32_t m_level;
        SafeOstringStream m_stream;
    };
};

} // namespace Logging
} // namespace Common
} // namespace Orvo

// Log statement: ORVO_LOG(INF, "Model string: %s.", model.c_str());
// The line reads "<file base name>:<line>><message>".
#define ORVO_LOG(level, format, ...)                                                                             \
    ::Orvo::Common::Logging::logPrintf(&::Orvo::Common::Logging::dlogLineSink, ::Orvo::Common::Logging::kLogTag, \
                                       ::Orvo::Common::Logging::level, nullptr, 0, "%s:%d>" format,              \
                                       ::Orvo::Common::Logging::baseName(__FILE__), __LINE__, ##__VA_ARGS__)

// Stream statement: ORVO_LOG_STREAM(ERR) << "Error while saving" << diagnostic;
#define ORVO_LOG_STREAM(level)                                                                                  \
    ::Orvo::Common::Logging::LoggingClass::LoggingStream(::Orvo::Common::Logging::kLogTag,                      \
                                                         ::Orvo::Common::Logging::level,                        \
                                                         ::Orvo::Common::Logging::baseName(__FILE__), __LINE__) \
        .stream()

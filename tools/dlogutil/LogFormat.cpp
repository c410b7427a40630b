#include "LogFormat.h"

#include "LogFilter.h"

#include "JsonString.h"

#include <algorithm>
#include <cinttypes>
#include <cstdarg>
#include <cstdio>
#include <ctime>

namespace Orvo {
namespace Emulator {
namespace {

using Tools::jsonString;

const struct {
    const char* name;
    LogFormat format;
} kFormats[] = {{"brief", LogFormat::Brief},
                {"process", LogFormat::Process},
                {"tag", LogFormat::Tag},
                {"thread", LogFormat::Thread},
                {"raw", LogFormat::Raw},
                {"time", LogFormat::Time},
                {"threadtime", LogFormat::ThreadTime},
                {"kerneltime", LogFormat::KernelTime},
                {"long", LogFormat::Long},
                {"json", LogFormat::Json}};

// UTC with nanoseconds; seconds as a number where the year does not fit a calendar (or the
// seconds do not fit a 32-bit time_t).
std::string jsonTime(const LogRecord& record) {
    const std::time_t seconds = static_cast<std::time_t>(record.seconds);
    std::tm utc{};
    char text[64];
    if (static_cast<std::int64_t>(seconds) != record.seconds || ::gmtime_r(&seconds, &utc) == nullptr ||
        utc.tm_year > 9999 - 1900 || utc.tm_year < -1900) {
        std::snprintf(text, sizeof text, "%" PRId64 ".%09d", record.seconds, static_cast<int>(record.nanoseconds));
        return text;
    }
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%09dZ", utc.tm_year + 1900, utc.tm_mon + 1,
                  utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec, static_cast<int>(record.nanoseconds));
    return text;
}

std::string printed(const char* pattern, ...) __attribute__((format(printf, 1, 2)));
std::string printed(const char* pattern, ...) {
    char text[256];
    va_list arguments;
    va_start(arguments, pattern);
    std::vsnprintf(text, sizeof text, pattern, arguments);
    va_end(arguments);
    return text;
}

// strftime of the record's local time with pattern.
std::string localTime(const LogRecord& record, const char* pattern) {
    const std::time_t seconds = static_cast<std::time_t>(record.seconds);
    std::tm local{};
    if (::localtime_r(&seconds, &local) == nullptr) local = std::tm{};
    char text[64];
    return std::string(text, std::strftime(text, sizeof text, pattern, &local));
}

// "%s.%03ld" of TIME and MS.
std::string timeAndMilliseconds(const LogRecord& record) {
    return localTime(record, "%m-%d %H:%M:%S") + printed(".%03d", static_cast<int>(record.nanoseconds / 1000000));
}

// Each line of the message between prefix and suffix; nothing after a final line feed.
std::string eachLine(const std::string& prefix, const std::string& message, const std::string& suffix) {
    std::string text;
    for (std::size_t start = 0; start < message.size();) {
        const std::size_t end = std::min(message.find('\n', start), message.size());
        text += prefix + message.substr(start, end - start) + suffix + "\n";
        start = end + 1;
    }
    return text;
}

std::string textRecord(const LogRecord& record, LogFormat format) {
    const char letter = priorityLetter(record.priority);
    const int pid = record.pid;
    const int tid = record.tid;
    // printf's %-8s, apart so that the tag is never cut by the bounded buffer.
    const std::string tag = record.tag.size() < 8 ? record.tag + std::string(8 - record.tag.size(), ' ') : record.tag;
    switch (format) {
    case LogFormat::Brief:
        return eachLine(printed("%c/", letter) + tag + printed("(%5d): ", pid), record.message, "");
    case LogFormat::Process:
        return eachLine(printed("%c(%5d) ", letter, pid), record.message, "  (" + record.tag + ")");
    case LogFormat::Tag:
        return eachLine(printed("%c/", letter) + tag + ": ", record.message, "");
    case LogFormat::Thread:
        return eachLine(printed("%c(P%5d, T%5d) ", letter, pid, tid), record.message, "");
    case LogFormat::Time:
        return eachLine(timeAndMilliseconds(record) + localTime(record, "%z") + printed(" %c/", letter) + tag +
                            printed("(%5d): ", pid),
                        record.message, "");
    case LogFormat::ThreadTime:
        return eachLine(timeAndMilliseconds(record) + localTime(record, "%z") + printed(" %c/", letter) + tag +
                            printed("(P%5d, T%5d): ", pid, tid),
                        record.message, "");
    case LogFormat::KernelTime:
        return eachLine(printed("%5" PRId64 ".%03d", record.seconds, static_cast<int>(record.nanoseconds / 1000000)) +
                            localTime(record, "%z") + printed(" %c/", letter) + tag +
                            printed("(P%5d, T%5d): ", pid, tid),
                        record.message, "");
    case LogFormat::Long:
        return "[ " + timeAndMilliseconds(record) + printed(" %c/", letter) + tag +
               printed(" P%5d, T%5d]\n", pid, tid) + record.message + "\n\n";
    default: // Raw
        return eachLine("", record.message, "");
    }
}

} // namespace

bool parseLogFormat(const std::string& name, LogFormat& format) {
    for (const auto& candidate : kFormats) {
        if (name == candidate.name) {
            format = candidate.format;
            return true;
        }
    }
    return false;
}

std::string formatLogRecord(const LogRecord& record, LogFormat format) {
    if (format != LogFormat::Json) return textRecord(record, format);
    const char* buffer = logBufferName(record.buffer);
    return "{\"time\":" + jsonString(jsonTime(record)) + ",\"pid\":" + std::to_string(record.pid) +
           ",\"tid\":" + std::to_string(record.tid) + ",\"buffer\":" + jsonString(buffer ? buffer : "") +
           ",\"priority\":" + std::to_string(record.priority) + ",\"tag\":" + jsonString(record.tag) +
           ",\"message\":" + jsonString(record.message) + "}\n";
}

} // namespace Emulator
} // namespace Orvo

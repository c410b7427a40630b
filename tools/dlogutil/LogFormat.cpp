#include "LogFormat.h"

#include "LogFilter.h"

#include "JsonString.h"

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
} kFormats[] = {{"brief", LogFormat::Brief},   {"process", LogFormat::Process}, {"tag", LogFormat::Tag},
                {"thread", LogFormat::Thread}, {"time", LogFormat::Time},       {"threadtime", LogFormat::ThreadTime},
                {"long", LogFormat::Long},     {"raw", LogFormat::Raw},         {"json", LogFormat::Json}};

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

// "MM-DD HH:MM:SS.mmm" in local time.
std::string localTime(const LogRecord& record) {
    const std::time_t seconds = static_cast<std::time_t>(record.seconds);
    std::tm local{};
    if (::localtime_r(&seconds, &local) == nullptr) local = std::tm{};
    char text[64];
    std::snprintf(text, sizeof text, "%02d-%02d %02d:%02d:%02d.%03d", local.tm_mon + 1, local.tm_mday, local.tm_hour,
                  local.tm_min, local.tm_sec, static_cast<int>(record.nanoseconds / 1000000));
    return text;
}

// Control characters shown, not obeyed, by a terminal: ^X for C0 and DEL, \u0080 for C1 (which
// UTF-8 writes as C2 80 to C2 9F). Line feeds are kept for the caller to split on.
std::string visible(const std::string& text) {
    std::string shown;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if ((c < 0x20 && c != '\t' && c != '\n') || c == 0x7f) {
            shown += '^';
            shown += static_cast<char>(c ^ 0x40);
        } else if (c == 0xc2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xa0 &&
                   static_cast<unsigned char>(text[i + 1]) >= 0x80) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned char>(text[++i]));
            shown += escaped;
        } else {
            shown += static_cast<char>(c);
        }
    }
    return shown;
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

// Each line of the message between prefix and suffix.
std::string eachLine(const std::string& prefix, const std::string& message, const std::string& suffix) {
    std::string text;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = message.find('\n', start);
        text += prefix + message.substr(start, end - start) + suffix + "\n";
        if (end == std::string::npos) return text;
        start = end + 1;
    }
}

std::string textRecord(const LogRecord& record, LogFormat format) {
    const std::string tag = visible(record.tag);
    const std::string message = visible(record.message);
    const char letter = priorityLetter(record.priority);
    const int pid = record.pid;
    const int tid = record.tid;
    // The tag is padded apart: printf's %-8s would cut it at a NUL and the buffer is bounded.
    const std::string paddedTag = tag.size() < 8 ? tag + std::string(8 - tag.size(), ' ') : tag;
    switch (format) {
    case LogFormat::Brief:
        return eachLine(printed("%c/", letter) + paddedTag + printed("(%5d): ", pid), message, "");
    case LogFormat::Process:
        return eachLine(printed("%c(%5d) ", letter, pid), message, "  (" + tag + ")");
    case LogFormat::Tag:
        return eachLine(printed("%c/", letter) + paddedTag + ": ", message, "");
    case LogFormat::Thread:
        return eachLine(printed("%c(%5d:%5d) ", letter, pid, tid), message, "");
    case LogFormat::Time:
        return eachLine(localTime(record) + printed(" %c/", letter) + paddedTag + printed("(%5d): ", pid), message, "");
    case LogFormat::ThreadTime:
        return eachLine(localTime(record) + printed(" %5d %5d %c ", pid, tid, letter) + paddedTag + ": ", message, "");
    case LogFormat::Long:
        return "[ " + localTime(record) + printed(" %5d:%5d %c/", pid, tid, letter) + paddedTag + " ]\n" + message +
               "\n\n";
    default: // Raw
        return eachLine("", message, "");
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

const char* logFormatNames() { return "brief, process, tag, thread, time, threadtime, long, raw or json"; }

std::string formatLogRecord(const LogRecord& record, LogFormat format) {
    if (format != LogFormat::Json) return textRecord(record, format);
    const char* buffer = logBufferName(record.buffer);
    return "{\"time\":" + jsonString(jsonTime(record)) + ",\"pid\":" + std::to_string(record.pid) +
           ",\"tid\":" + std::to_string(record.tid) + ",\"buffer\":" + jsonString(buffer ? buffer : "") +
           ",\"priority\":" + std::to_string(record.priority) + ",\"tag\":" + jsonString(record.tag) +
           ",\"message\":" + jsonString(record.message) + "}\n";
}

std::string bufferDivider(int buffer, LogFormat format) {
    const char* name = logBufferName(buffer);
    if (format == LogFormat::Json || name == nullptr) return std::string();
    return std::string("--------- beginning of ") + name + "\n";
}

} // namespace Emulator
} // namespace Orvo

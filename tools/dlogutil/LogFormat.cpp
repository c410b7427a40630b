#include "LogFormat.h"

#include "LogFilter.h"

#include "JsonString.h"

#include <cstdio>
#include <ctime>

namespace Orvo {
namespace Emulator {
namespace {

using Tools::jsonString;

std::string jsonTime(const LogRecord& record) {
    const std::time_t seconds = static_cast<std::time_t>(record.seconds);
    std::tm utc{};
    if (::gmtime_r(&seconds, &utc) == nullptr) return std::to_string(record.seconds);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%09dZ", utc.tm_year + 1900, utc.tm_mon + 1,
                  utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec, static_cast<int>(record.nanoseconds));
    return text;
}

std::string threadTimeHead(const LogRecord& record) {
    const std::time_t seconds = static_cast<std::time_t>(record.seconds);
    std::tm local{};
    ::localtime_r(&seconds, &local);
    char text[96];
    std::snprintf(text, sizeof text, "%02d-%02d %02d:%02d:%02d.%03d %5d %5d %c ", local.tm_mon + 1, local.tm_mday,
                  local.tm_hour, local.tm_min, local.tm_sec, static_cast<int>(record.nanoseconds / 1000000), record.pid,
                  record.tid, priorityLetter(record.priority));
    return text;
}

} // namespace

bool parseLogFormat(const std::string& name, LogFormat& format) {
    const struct {
        const char* name;
        LogFormat format;
    } formats[] = {{"brief", LogFormat::Brief},
                   {"threadtime", LogFormat::ThreadTime},
                   {"raw", LogFormat::Raw},
                   {"json", LogFormat::Json}};
    for (const auto& candidate : formats) {
        if (name == candidate.name) {
            format = candidate.format;
            return true;
        }
    }
    return false;
}

std::string formatLogRecord(const LogRecord& record, LogFormat format) {
    switch (format) {
    case LogFormat::Brief:
        return std::string(1, priorityLetter(record.priority)) + "/" + record.tag + "(" + std::to_string(record.pid) +
               "): " + record.message + "\n";
    case LogFormat::ThreadTime:
        return threadTimeHead(record) + record.tag + ": " + record.message + "\n";
    case LogFormat::Raw:
        return record.message + "\n";
    case LogFormat::Json: {
        const char* buffer = logBufferName(record.buffer);
        return "{\"time\":\"" + jsonTime(record) + "\",\"pid\":" + std::to_string(record.pid) +
               ",\"tid\":" + std::to_string(record.tid) + ",\"buffer\":" + jsonString(buffer ? buffer : "") +
               ",\"priority\":" + std::to_string(record.priority) + ",\"tag\":" + jsonString(record.tag) +
               ",\"message\":" + jsonString(record.message) + "}\n";
    }
    }
    return std::string();
}

} // namespace Emulator
} // namespace Orvo

#include "LogFeed.h"

#include "ConsoleError.h"
#include "LogFilter.h"
#include "LogFormat.h"

#include "orvo/device/LogStore.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace Orvo {
namespace Tools {
namespace Console {

using Emulator::LogRecord;
using nlohmann::json;

namespace {

constexpr int kBufferCount = 4; // main, radio, system, apps

std::vector<std::string> split(const std::string& text, const char* separators) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = std::min(text.find_first_of(separators, start), text.size());
        if (end > start) parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

std::string parameter(const std::map<std::string, std::string>& query, const char* name, const char* fallback) {
    const auto found = query.find(name);
    return found == query.end() ? fallback : found->second;
}

std::vector<int> buffersOf(const std::string& names) {
    std::vector<int> buffers;
    for (const std::string& name : split(names, ",")) {
        const int buffer = Emulator::logBufferId(name);
        if (buffer < 0) throw badRequest("unknown buffer " + quoted(name) + " (main, radio, system or apps)");
        if (std::find(buffers.begin(), buffers.end(), buffer) == buffers.end()) buffers.push_back(buffer);
    }
    if (buffers.empty()) throw badRequest("no buffer chosen");
    return buffers;
}

// The cursor is the byte offset reached in every buffer: "o0,o1,o2,o3".
std::vector<std::uint64_t> offsetsOf(const std::string& cursor) {
    std::vector<std::uint64_t> offsets(kBufferCount, 0);
    if (cursor.empty()) return offsets;
    const std::vector<std::string> parts = split(cursor, ",");
    bool valid = parts.size() == offsets.size();
    for (std::size_t i = 0; valid && i < parts.size(); ++i) {
        valid = parts[i].size() <= 19 && parts[i].find_first_not_of("0123456789") == std::string::npos;
        if (valid) offsets[i] = std::stoull(parts[i]);
    }
    if (!valid) throw badRequest("invalid cursor " + quoted(cursor));
    return offsets;
}

// dlogutil skips a spec it cannot read; a request that holds one is refused instead.
Emulator::LogFilter filterOf(const std::string& specs) {
    Emulator::LogFilter filter(split(specs, " \t,"));
    if (!filter.rejected().empty())
        throw badRequest("invalid filter " + quoted(filter.rejected().front()) +
                         " (expected TAG:P with P one of V D I W E F S, any case, or 1 to 9)");
    return filter;
}

} // namespace

json readLog(const std::string& deviceDir, const std::map<std::string, std::string>& query) {
    for (const auto& entry : query) {
        if (entry.first != "buffers" && entry.first != "filter" && entry.first != "format" && entry.first != "cursor" &&
            entry.first != "token")
            throw badRequest("unknown parameter " + quoted(entry.first));
    }
    const std::vector<int> buffers = buffersOf(parameter(query, "buffers", "main,system"));
    Emulator::LogFormat format = Emulator::LogFormat::Brief;
    const std::string formatName = parameter(query, "format", "brief");
    if (!Emulator::parseLogFormat(formatName, format))
        throw badRequest("unknown format " + quoted(formatName) + " (brief, threadtime, raw or json)");
    std::vector<std::uint64_t> offsets = offsetsOf(parameter(query, "cursor", ""));
    const Emulator::LogFilter filter = filterOf(parameter(query, "filter", ""));

    std::vector<LogRecord> records;
    for (int buffer = 0; buffer < kBufferCount; ++buffer) {
        // Buffers not shown are still followed, so that choosing one later starts from now.
        std::vector<LogRecord> more = Emulator::readLogRecords(deviceDir, buffer, offsets[buffer]);
        if (std::find(buffers.begin(), buffers.end(), buffer) == buffers.end()) continue;
        for (LogRecord& record : more) {
            if (filter.accepts(record.tag, record.priority)) records.push_back(std::move(record));
        }
    }
    std::stable_sort(records.begin(), records.end(), [](const LogRecord& a, const LogRecord& b) {
        return a.seconds != b.seconds ? a.seconds < b.seconds : a.nanoseconds < b.nanoseconds;
    });
    const bool cut = records.size() > kMaxLogRecords;
    json out = json::array();
    for (std::size_t i = cut ? records.size() - kMaxLogRecords : 0; i < records.size(); ++i) {
        const LogRecord& record = records[i];
        std::string text = Emulator::formatLogRecord(record, format);
        if (!text.empty() && text.back() == '\n') text.pop_back();
        out.push_back({{"buffer", Emulator::logBufferName(record.buffer)},
                       {"priority", std::string(1, Emulator::priorityLetter(record.priority))},
                       {"tag", record.tag},
                       {"text", text}});
    }
    std::string cursor;
    for (std::size_t i = 0; i < offsets.size(); ++i)
        cursor += (i ? "," : "") + std::to_string(offsets[i]);
    return {{"records", out}, {"cursor", cursor}, {"cut", cut}};
}

} // namespace Console
} // namespace Tools
} // namespace Orvo

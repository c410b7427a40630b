#pragma once
// The device's log for the console: the records appended since the reader's cursor, filtered
// and printed exactly as dlogutil prints them.

#include <nlohmann/json.hpp>

#include <map>
#include <string>

namespace Orvo {
namespace Tools {
namespace Console {

// At most this many records in one answer (the newest); a first read of a long log is cut.
constexpr std::size_t kMaxLogRecords = 1000;

// `query` holds the request's parameters, every one optional:
//   buffers  main,radio,system,apps (default: main,system, where the plug-in's lines go),
//            merged in time order
//   filter   dlogutil filter specs separated by blanks or commas (default *:D); a spec that
//            dlogutil would skip is refused
//   format   a dlogutil format: brief, threadtime, raw, json ... (default brief)
//   cursor   where the last answer ended (default: the start of every buffer)
// Answers {"records":[{"buffer","priority","tag","text"}...], "cursor":"...", "cut":bool}.
// Throws RequestError for an unknown parameter or a value that is not valid.
nlohmann::json readLog(const std::string& deviceDir, const std::map<std::string, std::string>& query);

} // namespace Console
} // namespace Tools
} // namespace Orvo

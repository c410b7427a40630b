#pragma once
// How dlogutil prints one record. Every format ends the record with a line feed; line feeds
// inside a message are printed as they are, except in json.
//   brief       P/TAG(PID): message
//   threadtime  MM-DD HH:MM:SS.mmm PID(5) TID(5) P TAG: message     (local time)
//   raw         message
//   json        {"time":"2026-11-21T13:45:01.123456789Z","pid":1,"tid":1,"buffer":"main",
//                "priority":4,"tag":"TAG","message":"..."}          (UTC, one object per line)

#include "orvo/device/LogStore.h"

#include <string>

namespace Orvo {
namespace Emulator {

enum class LogFormat { Brief, ThreadTime, Raw, Json };

// False for an unknown format name.
bool parseLogFormat(const std::string& name, LogFormat& format);

std::string formatLogRecord(const LogRecord& record, LogFormat format);

} // namespace Emulator
} // namespace Orvo

#pragma once
// How dlogutil prints records, in the platform's layouts (tags padded to 8 columns, ids to 5).
// Every line of a multi-line message carries the prefix (and the process format's suffix):
//   brief       P/TAG     (  PID): message
//   process     P(  PID) message  (TAG)
//   tag         P/TAG     : message
//   thread      P(  PID:  TID) message
//   time        MM-DD HH:MM:SS.mmm P/TAG     (  PID): message               (local time)
//   threadtime  MM-DD HH:MM:SS.mmm   PID   TID P TAG     : message          (local time)
//   long        [ MM-DD HH:MM:SS.mmm   PID:  TID P/TAG      ], the message, a blank line
//   raw         message
//   json        {"time":"2026-11-21T13:45:01.123456789Z","pid":1,"tid":1,"buffer":"main",
//                "priority":4,"tag":"TAG","message":"..."}          (UTC, one object per line)
// The text formats show a terminal control character of a tag or message as ^X (^? for DEL,
// \u0080 to \u009f for the C1 controls) rather than passing it to the terminal; tabs stay.

#include "orvo/device/LogStore.h"

#include <string>

namespace Orvo {
namespace Emulator {

enum class LogFormat { Brief, Process, Tag, Thread, Time, ThreadTime, Long, Raw, Json };

// False for an unknown format name.
bool parseLogFormat(const std::string& name, LogFormat& format);
// "brief, process, ..., json", for messages.
const char* logFormatNames();

std::string formatLogRecord(const LogRecord& record, LogFormat format);

// The line that starts the records of a buffer in a text format ("--------- beginning of main"),
// empty for json.
std::string bufferDivider(int buffer, LogFormat format);

} // namespace Emulator
} // namespace Orvo

#pragma once
// How dlogutil prints records (-v), in the platform's layouts; the example is priority I, tag
// MyTag, pid 1234, tid 1240, message "hello":
//   brief (default)  I/MyTag   ( 1234): hello
//   process          I( 1234) hello  (MyTag)
//   tag              I/MyTag   : hello
//   thread           I(P 1234, T 1240) hello
//   raw              hello
//   time             08-03 12:34:56.789+0900 I/MyTag   ( 1234): hello
//   threadtime       08-03 12:34:56.789+0900 I/MyTag   (P 1234, T 1240): hello
//   kerneltime        5678.789+0900 I/MyTag   (P 1234, T 1240): hello      (seconds as stored)
//   long             [ 08-03 12:34:56.789 I/MyTag    P 1234, T 1240], the message, a blank line
// Times are local. Each line of a message gets its own prefix (and the process format's suffix),
// except in long, which prints the message whole; an empty message prints nothing, except in long.
// The emulator's own format:
//   json             {"time":"2026-11-21T13:45:01.123456789Z","pid":1,"tid":1,"buffer":"main",
//                     "priority":4,"tag":"TAG","message":"..."}          (UTC, one object per line)

#include "orvo/device/LogStore.h"

#include <string>

namespace Orvo {
namespace Emulator {

enum class LogFormat { Brief, Process, Tag, Thread, Raw, Time, ThreadTime, KernelTime, Long, Json };

// False for an unknown format name.
bool parseLogFormat(const std::string& name, LogFormat& format);

std::string formatLogRecord(const LogRecord& record, LogFormat format);

} // namespace Emulator
} // namespace Orvo

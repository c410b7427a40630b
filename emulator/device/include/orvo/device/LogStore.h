#pragma once
// The dlog buffers of a device: one append-only file per buffer, <device>/log/<name>.log.
// A record is one line written with a single write(2), so records of several processes never
// tear: "<sec>.<nsec>\t<pid>\t<tid>\t<priority>\t<tag>\t<message>\n", with backslash, tab and
// line feed in tag and message escaped as \\, \t and \n.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Orvo {
namespace Emulator {

struct LogRecord {
    int64_t seconds = 0; // CLOCK_REALTIME
    int32_t nanoseconds = 0;
    int pid = 0;
    int tid = 0;
    int buffer = 0;   // log_id_t
    int priority = 0; // log_priority
    std::string tag;
    std::string message;
};

// "main", "radio", "system", "apps"; nullptr for an id out of range.
const char* logBufferName(int buffer);
// The id of a buffer name, or -1.
int logBufferId(const std::string& name);

// A record of at most this many tag and message bytes, whatever they hold, is appended without
// allocating, as the platform's dlog writes it; a longer one is built on the heap.
constexpr std::size_t kAllocationFreeTagLength = 128;
constexpr std::size_t kAllocationFreeMessageLength = 4076; // dlog's longest message

// Appends one record; returns the number of message bytes written, or -1 on an I/O error.
int appendLogRecord(const std::string& deviceDir, int buffer, int priority, const char* tag, const char* message,
                    std::size_t length);
int appendLogRecord(const char* deviceDir, int buffer, int priority, const char* tag, const char* message,
                    std::size_t length);

// Every well-formed record of one buffer, in file order. Malformed lines are skipped; a buffer
// nothing was logged to has none. A buffer file that cannot be read (a link, a special file, an
// I/O error) throws std::runtime_error naming the file and the reason: never read as empty.
std::vector<LogRecord> readLogRecords(const std::string& deviceDir, int buffer);
// The same from byte offset on, for readers that follow a buffer: offset moves past the last
// complete line read (back to the start when the file was truncated).
std::vector<LogRecord> readLogRecords(const std::string& deviceDir, int buffer, std::uint64_t& offset);

// Empties one buffer (a missing one is empty already); false with errno set on failure. A link or
// special file in place of the buffer's file is refused, never followed.
bool clearLogBuffer(const std::string& deviceDir, int buffer);
// The bytes one buffer holds (0 for a missing one); false with errno set on failure.
bool logBufferSize(const std::string& deviceDir, int buffer, std::uint64_t& size);

// Parses one record line (without its line feed).
bool parseLogRecord(const std::string& line, int buffer, LogRecord& out);

} // namespace Emulator
} // namespace Orvo

#include "orvo/device/LogStore.h"

#include "FileOps.h"
#include "orvo/device/TextValues.h"

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Orvo {
namespace Emulator {
namespace {

const char* const kBufferNames[] = {"main", "radio", "system", "apps"};
const int kBufferCount = sizeof kBufferNames / sizeof kBufferNames[0];

std::string logDirectory(const std::string& deviceDir)
{
    return deviceDir + "/log";
}

std::string logPath(const std::string& deviceDir, int buffer)
{
    return logDirectory(deviceDir) + "/" + logBufferName(buffer) + ".log";
}

void appendEscaped(std::string& line, const char* text, std::size_t length)
{
    for (std::size_t i = 0; i < length; ++i) {
        switch (text[i]) {
        case '\\':
            line += "\\\\";
            break;
        case '\t':
            line += "\\t";
            break;
        case '\n':
            line += "\\n";
            break;
        default:
            line += text[i];
        }
    }
}

bool unescape(const std::string& text, std::string& out)
{
    out.clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            out += text[i];
            continue;
        }
        if (++i == text.size())
            return false;
        switch (text[i]) {
        case '\\':
            out += '\\';
            break;
        case 't':
            out += '\t';
            break;
        case 'n':
            out += '\n';
            break;
        default:
            return false;
        }
    }
    return true;
}

std::vector<std::string> splitTabs(const std::string& line)
{
    std::vector<std::string> fields;
    std::size_t start = 0;
    for (;;) {
        const std::size_t tab = line.find('\t', start);
        fields.push_back(line.substr(start, tab - start));
        if (tab == std::string::npos)
            return fields;
        start = tab + 1;
    }
}

bool parseTime(const std::string& text, LogRecord& record)
{
    const std::size_t dot = text.find('.');
    long long seconds = 0;
    int nanoseconds = 0;
    if (dot == std::string::npos || dot + 10 != text.size() || !parseLongLong(text.substr(0, dot), seconds) ||
        text[dot + 1] == '-' || text[dot + 1] == '+' || !parseInt(text.substr(dot + 1), nanoseconds))
        return false;
    record.seconds = seconds;
    record.nanoseconds = nanoseconds;
    return true;
}

} // namespace

const char* logBufferName(int buffer)
{
    return buffer >= 0 && buffer < kBufferCount ? kBufferNames[buffer] : nullptr;
}

int logBufferId(const std::string& name)
{
    for (int buffer = 0; buffer < kBufferCount; ++buffer)
        if (name == kBufferNames[buffer])
            return buffer;
    return -1;
}

int appendLogRecord(const std::string& deviceDir, int buffer, int priority, const char* tag,
                    const char* message, std::size_t length)
{
    if (logBufferName(buffer) == nullptr || tag == nullptr || (message == nullptr && length > 0))
        return -1;
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    char head[96];
    std::snprintf(head, sizeof head, "%lld.%09ld\t%d\t%ld\t%d\t", static_cast<long long>(now.tv_sec),
                  static_cast<long>(now.tv_nsec), static_cast<int>(::getpid()),
                  static_cast<long>(::syscall(SYS_gettid)), priority);
    std::string line = head;
    appendEscaped(line, tag, std::char_traits<char>::length(tag));
    line += '\t';
    appendEscaped(line, message, length);
    line += '\n';

    const std::string path = logPath(deviceDir, buffer);
    int fd = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0 && errno == ENOENT && makeDirectories(logDirectory(deviceDir)))
        fd = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0)
        return -1;
    // One write(2): with O_APPEND the kernel places the whole record at the end of the file at
    // once, so records of concurrent writers never interleave.
    ssize_t written;
    do
        written = ::write(fd, line.data(), line.size());
    while (written < 0 && errno == EINTR);
    ::close(fd);
    return written == static_cast<ssize_t>(line.size()) ? static_cast<int>(length) : -1;
}

bool parseLogRecord(const std::string& line, int buffer, LogRecord& out)
{
    const std::vector<std::string> fields = splitTabs(line);
    LogRecord record;
    record.buffer = buffer;
    if (fields.size() != 6 || !parseTime(fields[0], record) || !parseInt(fields[1], record.pid) ||
        !parseInt(fields[2], record.tid) || !parseInt(fields[3], record.priority) ||
        !unescape(fields[4], record.tag) || !unescape(fields[5], record.message))
        return false;
    out = std::move(record);
    return true;
}

std::vector<LogRecord> readLogRecords(const std::string& deviceDir, int buffer)
{
    std::uint64_t offset = 0;
    return readLogRecords(deviceDir, buffer, offset);
}

std::vector<LogRecord> readLogRecords(const std::string& deviceDir, int buffer, std::uint64_t& offset)
{
    std::vector<LogRecord> records;
    if (logBufferName(buffer) == nullptr)
        return records;
    std::string content;
    if (!readFileFrom(logPath(deviceDir, buffer), offset, content))
        return records;
    std::size_t start = 0;
    for (std::size_t end; (end = content.find('\n', start)) != std::string::npos; start = end + 1) {
        LogRecord record;
        if (parseLogRecord(content.substr(start, end - start), buffer, record))
            records.push_back(std::move(record));
    }
    // A line without its line feed is not complete yet; the next read starts at it.
    offset += start;
    return records;
}

} // namespace Emulator
} // namespace Orvo

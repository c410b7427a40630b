#include "orvo/device/LogStore.h"

#include "FileOps.h"
#include "orvo/device/TextValues.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Orvo {
namespace Emulator {
namespace {

const char* const kBufferNames[] = {"main", "radio", "system", "apps"};
const int kBufferCount = sizeof kBufferNames / sizeof kBufferNames[0];

// "<sec>.<nsec>\t<pid>\t<tid>\t<priority>\t" takes at most 76 bytes.
constexpr std::size_t kHeadSize = 96;
// A line cut by a crash or a full disk is closed with more tabs than a record has (tabs in tag and
// message are escaped) before the next record: whatever part of a record the cut kept, readers
// skip it, and the cut swallows nothing but itself. Tabs rather than any escape sequence, since a
// cut may fall inside an escape.
const char kCutLineEnd[] = "\t\t\t\t\t\t\n";
constexpr std::size_t kCutLineEndLength = sizeof kCutLineEnd - 1;

constexpr std::size_t kStackLineSize =
    kHeadSize + 2 * kAllocationFreeTagLength + 1 + 2 * kAllocationFreeMessageLength + 1;

// <device>/log/<name>.log; false for a buffer out of range or a path longer than size.
bool formatLogPath(char* path, std::size_t size, const char* deviceDir, int buffer) {
    const char* name = logBufferName(buffer);
    if (name == nullptr) return false;
    const int length = std::snprintf(path, size, "%s/log/%s.log", deviceDir, name);
    return length >= 0 && static_cast<std::size_t>(length) < size;
}

// The letter that follows the backslash of an escaped character, or 0 for a character kept as is.
char escapeLetter(char c) {
    switch (c) {
    case '\\':
        return '\\';
    case '\t':
        return 't';
    case '\n':
        return 'n';
    default:
        return 0;
    }
}

std::size_t escapedLength(const char* text, std::size_t length) {
    return length +
           static_cast<std::size_t>(std::count_if(text, text + length, [](char c) { return escapeLetter(c) != 0; }));
}

// Writes text escaped at out; returns the end of what it wrote.
char* appendEscaped(char* out, const char* text, std::size_t length) {
    for (const char* c = text; c != text + length; ++c) {
        const char letter = escapeLetter(*c);
        if (letter != 0) {
            *out++ = '\\';
            *out++ = letter;
        } else {
            *out++ = *c;
        }
    }
    return out;
}

// Creates the log directory of a device that has none yet: path is cut at its last '/' for the call.
bool makeLogDirectory(char* path) {
    char* const slash = std::strrchr(path, '/');
    *slash = '\0';
    const bool made = ::mkdir(path, 0755) == 0 || errno == EEXIST;
    *slash = '/';
    return made;
}

int openLogFile(char* path) {
    const int flags = O_RDWR | O_APPEND | O_CREAT; // readable for endsInsideALine
    int fd = openRegularFile(path, flags, 0644);
    if (fd < 0 && errno == ENOENT && makeLogDirectory(path)) fd = openRegularFile(path, flags, 0644);
    return fd;
}

// Whether the file ends inside a line: a record cut by a crash or a full disk. False with errno set
// when that cannot be told.
bool endsInsideALine(int fd, bool& inside) {
    struct stat status;
    char last = '\n';
    inside = false;
    if (::fstat(fd, &status) != 0) return false;
    if (status.st_size == 0) return true;
    const ssize_t got = ::pread(fd, &last, 1, status.st_size - 1);
    inside = got == 1 && last != '\n'; // 0: emptied meanwhile
    return got >= 0;
}

// One write(2): with O_APPEND the kernel places the whole record at the end of the file at once,
// so records of concurrent writers never interleave. The bytes before line are free: they take
// kCutLineEnd when the file ends inside a line.
bool appendLine(const char* deviceDir, char* path, char* line, std::size_t size) {
    if (!staysBeneath(deviceDir, path)) return false;
    const int fd = openLogFile(path);
    if (fd < 0) return false;
    bool inside = false;
    if (!endsInsideALine(fd, inside)) {
        const int error = errno;
        ::close(fd);
        errno = error;
        return false;
    }
    if (inside) {
        line -= kCutLineEndLength;
        size += kCutLineEndLength;
        std::memcpy(line, kCutLineEnd, kCutLineEndLength);
    }
    ssize_t written;
    do
        written = sys::write(fd, line, size);
    while (written < 0 && errno == EINTR);
    const bool whole = written == static_cast<ssize_t>(size);
    const int error = written < 0 ? errno : ENOSPC; // a short write: the disk is full
    ::close(fd);
    if (!whole) errno = error;
    return whole;
}

bool unescape(const std::string& text, std::string& out) {
    out.clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            out += text[i];
            continue;
        }
        if (++i == text.size()) return false;
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

std::vector<std::string> splitTabs(const std::string& line) {
    std::vector<std::string> fields;
    std::size_t start = 0;
    for (;;) {
        const std::size_t tab = line.find('\t', start);
        fields.push_back(line.substr(start, tab - start));
        if (tab == std::string::npos) return fields;
        start = tab + 1;
    }
}

bool parseTime(const std::string& text, LogRecord& record) {
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

const char* logBufferName(int buffer) { return buffer >= 0 && buffer < kBufferCount ? kBufferNames[buffer] : nullptr; }

int logBufferId(const std::string& name) {
    for (int buffer = 0; buffer < kBufferCount; ++buffer)
        if (name == kBufferNames[buffer]) return buffer;
    return -1;
}

int appendLogRecord(const std::string& deviceDir, int buffer, int priority, const char* tag, const char* message,
                    std::size_t length) {
    return appendLogRecord(deviceDir.c_str(), buffer, priority, tag, message, length);
}

int appendLogRecord(const char* deviceDir, int buffer, int priority, const char* tag, const char* message,
                    std::size_t length) {
    char path[PATH_MAX];
    if (deviceDir == nullptr || tag == nullptr || (message == nullptr && length > 0) ||
        !formatLogPath(path, sizeof path, deviceDir, buffer))
        return -1;
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    const std::size_t tagLength = std::strlen(tag);
    // Room before the line for appendLine.
    const std::size_t bufferSize =
        kCutLineEndLength + kHeadSize + escapedLength(tag, tagLength) + 1 + escapedLength(message, length) + 1;
    char stackBuffer[kCutLineEndLength + kStackLineSize];
    std::unique_ptr<char[]> heapBuffer(bufferSize > sizeof stackBuffer ? new char[bufferSize] : nullptr);
    char* const line = (heapBuffer ? heapBuffer.get() : stackBuffer) + kCutLineEndLength;

    char* end = line + std::snprintf(line, kHeadSize, "%lld.%09ld\t%d\t%ld\t%d\t", static_cast<long long>(now.tv_sec),
                                     static_cast<long>(now.tv_nsec), static_cast<int>(::getpid()),
                                     static_cast<long>(::syscall(SYS_gettid)), priority);
    end = appendEscaped(end, tag, tagLength);
    *end++ = '\t';
    end = appendEscaped(end, message, length);
    *end++ = '\n';
    return appendLine(deviceDir, path, line, static_cast<std::size_t>(end - line)) ? static_cast<int>(length) : -1;
}

bool parseLogRecord(const std::string& line, int buffer, LogRecord& out) {
    const std::vector<std::string> fields = splitTabs(line);
    LogRecord record;
    record.buffer = buffer;
    if (fields.size() != 6 || !parseTime(fields[0], record) || !parseInt(fields[1], record.pid) ||
        !parseInt(fields[2], record.tid) || !parseInt(fields[3], record.priority) || !unescape(fields[4], record.tag) ||
        !unescape(fields[5], record.message))
        return false;
    out = std::move(record);
    return true;
}

std::vector<LogRecord> readLogRecords(const std::string& deviceDir, int buffer) {
    std::uint64_t offset = 0;
    return readLogRecords(deviceDir, buffer, offset);
}

std::vector<LogRecord> readLogRecords(const std::string& deviceDir, int buffer, std::uint64_t& offset) {
    std::vector<LogRecord> records;
    char path[PATH_MAX];
    std::string content;
    if (!formatLogPath(path, sizeof path, deviceDir.c_str(), buffer)) return records;
    if (!staysBeneath(deviceDir.c_str(), path) || !readFileFrom(path, offset, content)) {
        if (errno == ENOENT) return records; // nothing logged to this buffer yet
        throw std::runtime_error(std::string(path) + ": " + describeFileError(errno));
    }
    std::size_t start = 0;
    for (std::size_t end; (end = content.find('\n', start)) != std::string::npos; start = end + 1) {
        LogRecord record;
        if (parseLogRecord(content.substr(start, end - start), buffer, record)) records.push_back(std::move(record));
    }
    // A line without its line feed is not complete yet; the next read starts at it.
    offset += start;
    return records;
}

namespace {

// The buffer's file, opened as every device file is (no link followed, no FIFO waited on);
// -1 with errno set, ENOENT for a buffer nothing was logged to.
int openExistingLogFile(const std::string& deviceDir, int buffer, int flags) {
    char path[PATH_MAX];
    if (!formatLogPath(path, sizeof path, deviceDir.c_str(), buffer)) {
        errno = EINVAL;
        return -1;
    }
    if (!staysBeneath(deviceDir.c_str(), path)) return -1;
    return openRegularFile(path, flags);
}

} // namespace

bool clearLogBuffer(const std::string& deviceDir, int buffer) {
    const int fd = openExistingLogFile(deviceDir, buffer, O_WRONLY);
    if (fd < 0) return errno == ENOENT;
    const bool cleared = sys::ftruncate(fd, 0) == 0;
    const int error = errno;
    ::close(fd);
    errno = error;
    return cleared;
}

bool logBufferSize(const std::string& deviceDir, int buffer, std::uint64_t& size) {
    size = 0;
    const int fd = openExistingLogFile(deviceDir, buffer, O_RDONLY);
    if (fd < 0) return errno == ENOENT;
    struct stat status {};
    const bool known = ::fstat(fd, &status) == 0;
    if (known) size = static_cast<std::uint64_t>(status.st_size);
    ::close(fd);
    return known;
}

} // namespace Emulator
} // namespace Orvo

#include "Common/Logging/Logging.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace Orvo {
namespace Common {
namespace Logging {
namespace {

constexpr std::size_t kStackBufferSize = 1024;
constexpr std::size_t kHeapBufferSize = 16384;
constexpr int32_t kBytesPerRow = 16;
constexpr int32_t kDefaultDumpLength = 4; // a caller's zero length still dumps four bytes
constexpr char kHexDigits[] = "0123456789abcdef";

struct FreeDeleter {
    void operator()(char* buffer) const noexcept { std::free(buffer); }
};

// Appends " %04x=" and a row of hex bytes behind the message, one sink call per row; stops with
// a warning when the buffer has no room for the next row header or byte.
void dumpRows(LogSink sink, const char* tag, int32_t level, char* buffer, std::size_t bufferSize,
              std::size_t messageLength, const unsigned char* data, int32_t dataLength) {
    const std::size_t space = bufferSize - messageLength - 1;
    char* const rowStart = buffer + messageLength;
    int32_t remaining = dataLength > 0 ? dataLength : kDefaultDumpLength;
    for (unsigned row = 0; remaining > 0; ++row) {
        *rowStart = '\0'; // the previous row's text goes
        char header[16];
        const std::size_t headerLength = static_cast<std::size_t>(std::snprintf(header, sizeof header, " %04x=", row));
        bool fits = headerLength <= space;
        std::size_t used = 0;
        if (fits) {
            std::memcpy(rowStart, header, headerLength + 1);
            used = headerLength;
        }
        const int32_t rowBytes = remaining < kBytesPerRow ? remaining : kBytesPerRow;
        for (int32_t i = 0; fits && i < rowBytes; ++i) {
            fits = used + 2 <= space;
            if (fits) {
                rowStart[used++] = kHexDigits[*data >> 4];
                rowStart[used++] = kHexDigits[*data & 0x0f];
                rowStart[used] = '\0';
                ++data;
            }
        }
        if (!fits) {
            char tooLong[] = "BELOW DATA MESSAGE IS TOO LONG TO BE DISPLAYED!";
            sink(tag, WRN, tooLong);
            sink(tag, level, buffer);
            return;
        }
        sink(tag, level, buffer);
        remaining -= rowBytes;
    }
}

} // namespace

void logPrintf(LogSink sink, const char* tag, int32_t level, const void* data, int32_t dataLength, const char* format,
               ...) noexcept {
    if (static_cast<uint32_t>(level) <= 1U) return; // levels 0 and VERBOSE are never emitted

    char stackBuffer[kStackBufferSize];
    char* buffer = stackBuffer;
    std::size_t bufferSize = kStackBufferSize;
    std::unique_ptr<char, FreeDeleter> heapBuffer;

    va_list args;
    va_start(args, format);
    int length = std::vsnprintf(stackBuffer, kStackBufferSize, format, args);
    va_end(args);
    if (length < 0 || static_cast<std::size_t>(length) >= kStackBufferSize) {
        heapBuffer.reset(static_cast<char*>(std::malloc(kHeapBufferSize)));
        if (heapBuffer) {
            buffer = heapBuffer.get();
            bufferSize = kHeapBufferSize;
            va_start(args, format);
            length = std::vsnprintf(buffer, kHeapBufferSize, format, args);
            va_end(args);
        }
        if (length < 0) buffer[0] = '\0'; // the formatter failed: an empty text
    }
    // A text that did not fit even the heap buffer stays cut at its last byte.

    if (data == nullptr) {
        sink(tag, level, buffer);
        return;
    }
    dumpRows(sink, tag, level, buffer, bufferSize, std::strlen(buffer), static_cast<const unsigned char*>(data),
             dataLength);
}

} // namespace Logging
} // namespace Common
} // namespace Orvo

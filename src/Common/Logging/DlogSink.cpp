#include "Common/Logging/LogLevels.h"
#include "Common/Logging/Logging.h"

#include <dlog.h>

#include <atomic>
#include <cstring>

namespace Orvo {
namespace Common {
namespace Logging {
namespace {

// Texts up to this length go out as one line, line feeds and all.
constexpr std::size_t kLineLength = 768;

std::atomic<uint32_t> g_sequence{0}; // the first line carries 1; wraps silently

void emitLine(const LevelRoute& route, const char* tag, const char* line) {
    char threadText[kThreadTextSize];
    formatThreadText(threadText);
    const uint32_t sequence = g_sequence.fetch_add(1, std::memory_order_relaxed) + 1;
    __dlog_print(static_cast<log_id_t>(route.buffer), route.priority, tag, route.format, moduleName(), threadText,
                 sequence, line);
}

// Emits [begin, end) in chunks of kLineLength, terminating each chunk in place for the call
// and restoring the byte behind it afterwards. An empty piece is one empty line.
void emitPiece(const LevelRoute& route, const char* tag, char* begin, char* end) {
    do {
        char* const chunkEnd = end - begin > static_cast<std::ptrdiff_t>(kLineLength) ? begin + kLineLength : end;
        const char saved = *chunkEnd;
        *chunkEnd = '\0';
        emitLine(route, tag, begin);
        *chunkEnd = saved;
        begin = chunkEnd;
    } while (begin != end);
}

} // namespace

void dlogLineSink(const char* tag, int32_t level, char* text) {
    const LevelRoute& route = levelRoute(level);
    if (strnlen(text, kLineLength + 1) <= kLineLength) {
        emitLine(route, tag, text);
        return;
    }
    // Longer texts: one line per line feed (the feed itself dropped), nothing after a final one.
    char* piece = text;
    while (*piece != '\0') {
        char* const feed = std::strchr(piece, '\n');
        if (feed == nullptr) {
            emitPiece(route, tag, piece, piece + std::strlen(piece));
            return;
        }
        emitPiece(route, tag, piece, feed);
        piece = feed + 1;
    }
}

} // namespace Logging
} // namespace Common
} // namespace Orvo

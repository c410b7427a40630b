#include "Common/Logging/Logging.h"

#include <ostream>

namespace Orvo {
namespace Common {
namespace Logging {
namespace {

constexpr const char* kNullText = "[nullptr]";

} // namespace

using SafeOstringStream = LoggingClass::LoggingStream::SafeOstringStream;

SafeOstringStream& SafeOstringStream::operator<<(const char* text) {
    static_cast<std::ostream&>(*this) << (text != nullptr ? text : kNullText);
    return *this;
}

SafeOstringStream& SafeOstringStream::operator<<(const void* pointer) {
    if (pointer == nullptr) return *this << kNullText;
    static_cast<std::ostream&>(*this) << pointer;
    return *this;
}

SafeOstringStream& SafeOstringStream::operator<<(std::nullptr_t) { return *this << kNullText; }

SafeOstringStream& SafeOstringStream::operator<<(std::ostream& (*manipulator)(std::ostream&)) {
    manipulator(*this);
    return *this;
}

LoggingClass::LoggingStream::LoggingStream(const char* tag, int32_t level, const char* file, int32_t line)
    : m_tag(tag), m_file(file), m_line(line), m_level(level) {}

LoggingClass::LoggingStream::~LoggingStream() {
    if (m_level == 0) return;
    const std::string text = m_stream.str();
    logPrintf(&dlogLineSink, m_tag, m_level, nullptr, 0, "%s:%d>%s", m_file, m_line, text.c_str());
}

} // namespace Logging
} // namespace Common
} // namespace Orvo

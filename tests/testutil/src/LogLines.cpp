#include "orvo/testing/LogLines.h"

#include <dlog.h>

#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>

namespace Orvo::Testing {
namespace {

// Reads "[<field>]" at position; false when the text has no such field there.
bool readBracketed(const std::string& message, std::size_t& position, std::string& field) {
    if (position >= message.size() || message[position] != '[') return false;
    const std::size_t close = message.find(']', position + 1);
    if (close == std::string::npos) return false;
    field = message.substr(position + 1, close - position - 1);
    position = close + 1;
    return true;
}

// Where the message of a statement's first line starts: after "<file>:<line>>". Continuation
// lines of a text that the log cut have no such prefix; npos for them.
std::string::size_type messageStart(const std::string& text) {
    const std::string::size_type colon = text.find(':');
    const std::string::size_type close = text.find('>');
    const bool prefixed = colon != std::string::npos && close != std::string::npos && colon != 0 && close > colon + 1 &&
                          text.find_first_of(" \n") > close && text.find_first_not_of("0123456789", colon + 1) == close;
    return prefixed ? close + 1 : std::string::npos;
}

} // namespace

LogLine parseLogLine(const std::string& message) {
    LogLine line;
    std::size_t position = 0;
    std::string sequence;
    if (!readBracketed(message, position, line.module) || !readBracketed(message, position, line.thread) ||
        !readBracketed(message, position, sequence) || !readBracketed(message, position, line.level) ||
        position >= message.size() || message[position] != ' ' || sequence.empty() ||
        sequence.find_first_not_of("0123456789") != std::string::npos)
        return line;
    line.sequence = static_cast<uint32_t>(std::strtoul(sequence.c_str(), nullptr, 10));
    line.text = message.substr(position + 1);
    line.wellFormed = true;
    return line;
}

std::vector<LogLine> logLines(const TestDevice& device, int buffer) {
    std::vector<LogLine> lines;
    for (const Orvo::Emulator::LogRecord& record : device.logRecords(buffer)) {
        LogLine line = parseLogLine(record.message);
        line.priority = record.priority;
        line.tag = record.tag;
        lines.push_back(line);
    }
    return lines;
}

std::string messageOf(const LogLine& line) {
    const std::string::size_type start = messageStart(line.text);
    return start == std::string::npos ? line.text : line.text.substr(start);
}

std::vector<std::string> loggedTexts(const TestDevice& device, const std::string& level) {
    const bool systemBuffer = level == "ERR" || level == "FTL";
    std::vector<std::string> texts;
    for (const LogLine& line : logLines(device, systemBuffer ? LOG_ID_SYSTEM : LOG_ID_MAIN))
        if (line.wellFormed && line.level == level && messageStart(line.text) != std::string::npos)
            texts.push_back(messageOf(line));
    return texts;
}

std::vector<std::string> loggedMessages(const TestDevice& device, int buffer) {
    std::vector<std::string> messages;
    for (const LogLine& line : logLines(device, buffer))
        if (line.wellFormed) messages.push_back(line.level + " " + messageOf(line));
    return messages;
}

std::string currentThreadText() {
    char name[17] = {};
    prctl(PR_GET_NAME, name, 0, 0, 0);
    return std::to_string(syscall(SYS_gettid)) + " " + name;
}

} // namespace Orvo::Testing

// dlogutil: prints the device's log buffers in time order and, unless -d or -t is given, follows
// them; clears them (-c) and tells their sizes (-g).

#include "CommandLine.h"
#include "LogFilter.h"
#include "LogFormat.h"

#include "orvo/device/Device.h"
#include "orvo/device/LogStore.h"

#include <dlog.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Orvo::Emulator::LogFormat;
using Orvo::Emulator::LogRecord;
using Orvo::Tools::UsageError;

const char kUsage[] =
    "Usage: dlogutil [OPTION]... [FILTERSPEC]...\n"
    "\n"
    "Prints the records of the chosen buffers of the emulated device ($ORVO_DEVICE_DIR, or the\n"
    "default device) in time order, then follows new records until interrupted.\n"
    "  -b NAME   a buffer to read: main, radio, system or apps; repeat for several\n"
    "            (default: main and system, where the platform's ERR lines go)\n"
    "  -d        print the records there are and exit\n"
    "  -t N      print the last N records and exit\n"
    "  -c        clear the buffers and exit\n"
    "  -g        print the size of each buffer and exit\n"
    "  -s        set the default filter to silent (*:S)\n"
    "  -f FILE   append the output to FILE instead of standard output\n"
    "  -v FMT    the output format (default brief), as the platform prints it:\n"
    "              brief       P/TAG     (  PID): message\n"
    "              process     P(  PID) message  (TAG)\n"
    "              tag         P/TAG     : message\n"
    "              thread      P(  PID:  TID) message\n"
    "              time        MM-DD HH:MM:SS.mmm P/TAG     (  PID): message\n"
    "              threadtime  MM-DD HH:MM:SS.mmm   PID   TID P TAG     : message\n"
    "              long        [ MM-DD HH:MM:SS.mmm   PID:  TID P/TAG      ] and the message\n"
    "              raw         the message only\n"
    "              json        one object per line: time (UTC, \"2026-11-21T13:45:01.123456789Z\"),\n"
    "                          pid, tid, buffer, priority (a number), tag, message\n"
    "            Times are local. Every line of a multi-line message carries the prefix; control\n"
    "            characters are shown as ^X. With several buffers each run of one buffer's\n"
    "            records starts with \"--------- beginning of BUFFER\" (not in json).\n"
    "FILTERSPEC  TAG:P prints TAG's records of priority P or above, P one of V D I W E F S\n"
    "            (any case; S: none) or 0 to 8; TAG alone is TAG:V; * stands for every other\n"
    "            tag. Several specs in one argument are separated by blanks or commas.\n"
    "            Default *:I; specs without * silence other tags.\n"
    "\n"
    "The emulated device keeps each buffer in a file without a size limit: -g tells the bytes\n"
    "held, not a ring buffer's size.\n";

// How often a follower looks for new records.
const long kPollIntervalNanoseconds = 100 * 1000 * 1000;

volatile std::sig_atomic_t stopRequested = 0;

void requestStop(int) { stopRequested = 1; }

struct Options {
    bool dumpOnly = false;
    bool clear = false;
    bool sizes = false;
    long lastCount = -1; // -t N
    std::string outputFile;
    std::vector<int> buffers;
    LogFormat format = LogFormat::Brief;
    std::vector<std::string> filterSpecs;
    bool help = false;
};

long parseCount(const char* text) {
    char* end = nullptr;
    errno = 0;
    const long count = std::strtol(text, &end, 10);
    if (*text == '\0' || *end != '\0' || errno != 0 || count < 0)
        throw UsageError("-t takes a number of records, not \"" + std::string(text) + "\"");
    return count;
}

Options parseOptions(const std::vector<std::string>& args) {
    static const option longOptions[] = {{"help", no_argument, nullptr, 'h'}, {nullptr, 0, nullptr, 0}};
    Options options;
    bool silent = false;
    options.filterSpecs =
        Orvo::Tools::parseCommandLine(args, "hdcgst:f:b:v:", longOptions, [&](int option, const char* value) {
            switch (option) {
            case 'h':
                options.help = true;
                break;
            case 'd':
                options.dumpOnly = true;
                break;
            case 'c':
                options.clear = true;
                break;
            case 'g':
                options.sizes = true;
                break;
            case 's':
                silent = true;
                break;
            case 't':
                options.lastCount = parseCount(value);
                break;
            case 'f':
                options.outputFile = value;
                break;
            case 'b': {
                const int buffer = Orvo::Emulator::logBufferId(value);
                if (buffer < 0)
                    throw UsageError("unknown buffer \"" + std::string(value) + "\" (main, radio, system or apps)");
                if (std::find(options.buffers.begin(), options.buffers.end(), buffer) == options.buffers.end())
                    options.buffers.push_back(buffer);
                break;
            }
            default: // 'v'
                if (!Orvo::Emulator::parseLogFormat(value, options.format))
                    throw UsageError("unknown format \"" + std::string(value) + "\" (" +
                                     Orvo::Emulator::logFormatNames() + ")");
            }
        });
    if (silent) options.filterSpecs.insert(options.filterSpecs.begin(), "*:S");
    if (options.buffers.empty()) options.buffers = {LOG_ID_MAIN, LOG_ID_SYSTEM};
    if (options.clear && options.sizes) throw UsageError("-c and -g are separate runs");
    return options;
}

class BufferReader {
public:
    BufferReader(const std::string& deviceDir, const std::vector<int>& buffers)
        : m_deviceDir(deviceDir), m_buffers(buffers), m_offsets(buffers.size(), 0) {}

    // The records appended to the buffers since the last call, merged in time order.
    std::vector<LogRecord> readNew() {
        std::vector<LogRecord> records;
        for (std::size_t i = 0; i < m_buffers.size(); ++i) {
            std::vector<LogRecord> more = Orvo::Emulator::readLogRecords(m_deviceDir, m_buffers[i], m_offsets[i]);
            records.insert(records.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
        }
        std::stable_sort(records.begin(), records.end(), [](const LogRecord& a, const LogRecord& b) {
            return a.seconds != b.seconds ? a.seconds < b.seconds : a.nanoseconds < b.nanoseconds;
        });
        return records;
    }

private:
    std::string m_deviceDir;
    std::vector<int> m_buffers;
    std::vector<std::uint64_t> m_offsets;
};

// Writes the records that pass the filter; with several buffers, each change of buffer is
// marked as the platform marks it.
class Printer {
public:
    Printer(const Orvo::Emulator::LogFilter& filter, const Options& options, std::FILE* out)
        : m_filter(filter), m_format(options.format), m_divided(options.buffers.size() > 1), m_out(out) {}

    std::vector<LogRecord> accepted(std::vector<LogRecord> records) const {
        records.erase(std::remove_if(records.begin(), records.end(),
                                     [this](const LogRecord& r) { return !m_filter.accepts(r.tag, r.priority); }),
                      records.end());
        return records;
    }

    void print(const std::vector<LogRecord>& records) {
        for (const LogRecord& record : records) {
            std::string text;
            if (m_divided && record.buffer != m_lastBuffer)
                text = Orvo::Emulator::bufferDivider(record.buffer, m_format);
            m_lastBuffer = record.buffer;
            text += Orvo::Emulator::formatLogRecord(record, m_format);
            std::fwrite(text.data(), 1, text.size(), m_out);
        }
        std::fflush(m_out);
    }

private:
    Orvo::Emulator::LogFilter m_filter;
    LogFormat m_format;
    bool m_divided;
    int m_lastBuffer = -1;
    std::FILE* m_out;
};

void installStopHandlers() {
    struct sigaction action {};
    action.sa_handler = requestStop;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

std::string bufferError(int buffer, const char* what) {
    return std::string(what) + " the " + Orvo::Emulator::logBufferName(buffer) + " buffer: " + std::strerror(errno);
}

void clearBuffers(const std::string& deviceDir, const std::vector<int>& buffers) {
    for (const int buffer : buffers)
        if (!Orvo::Emulator::clearLogBuffer(deviceDir, buffer))
            throw std::runtime_error(bufferError(buffer, "cannot clear"));
}

// The platform's line per buffer, with what the emulated device can tell.
void printSizes(const std::string& deviceDir, const std::vector<int>& buffers, std::FILE* out) {
    for (const int buffer : buffers) {
        std::uint64_t size = 0;
        if (!Orvo::Emulator::logBufferSize(deviceDir, buffer, size))
            throw std::runtime_error(bufferError(buffer, "cannot read"));
        std::fprintf(out, "%s: ring buffer is unlimited (%lluKb consumed), max entry is %zub, max payload is %zub\n",
                     Orvo::Emulator::logBufferName(buffer), static_cast<unsigned long long>((size + 1023) / 1024),
                     Orvo::Emulator::kAllocationFreeMessageLength + Orvo::Emulator::kAllocationFreeTagLength,
                     Orvo::Emulator::kAllocationFreeMessageLength);
    }
}

int run(const std::vector<std::string>& args) {
    const Options options = parseOptions(args);
    if (options.help) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    const std::string deviceDir = Orvo::Emulator::toolDeviceDirectory();
    if (options.clear) {
        clearBuffers(deviceDir, options.buffers);
        return 0;
    }
    const Orvo::Emulator::LogFilter filter(options.filterSpecs); // checked before the output file is made
    std::FILE* out = stdout;
    if (!options.outputFile.empty() && !(out = std::fopen(options.outputFile.c_str(), "ae")))
        throw std::runtime_error("cannot write " + options.outputFile + ": " + std::strerror(errno));
    Printer printer(filter, options, out);
    if (options.sizes) {
        printSizes(deviceDir, options.buffers, out);
    } else {
        installStopHandlers();
        BufferReader reader(deviceDir, options.buffers);
        std::vector<LogRecord> records = printer.accepted(reader.readNew());
        if (options.lastCount >= 0 && records.size() > static_cast<std::size_t>(options.lastCount))
            records.erase(records.begin(), records.end() - options.lastCount);
        printer.print(records);
        const bool follow = !options.dumpOnly && options.lastCount < 0;
        while (follow && !stopRequested) {
            const timespec interval{0, kPollIntervalNanoseconds};
            ::nanosleep(&interval, nullptr);
            printer.print(printer.accepted(reader.readNew()));
        }
    }
    const bool failed = std::ferror(out) != 0;
    if (out != stdout && std::fclose(out) != 0) return 1;
    return failed ? 1 : 0;
}

} // namespace

int main(int argc, char** argv) {
    return Orvo::Tools::runTool("dlogutil", [&] { return run(std::vector<std::string>(argv + 1, argv + argc)); });
}

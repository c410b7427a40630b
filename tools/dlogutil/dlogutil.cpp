// dlogutil: prints the device's log buffers in time order and, unless -d is given, follows them.

#include "LogFilter.h"
#include "LogFormat.h"

#include "orvo/device/Device.h"
#include "orvo/device/LogStore.h"

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Orvo::Emulator::LogRecord;

const char kUsage[] =
    "Usage: dlogutil [-d] [-b main|radio|system|apps]... [-v brief|threadtime|raw|json] [TAG[:PRIORITY]]...\n"
    "\n"
    "Prints the records of the chosen buffers (default: main) of the emulated device\n"
    "($ORVO_DEVICE_DIR, or the default device) in time order, then follows new records\n"
    "until interrupted.\n"
    "  -d       print the records there are and exit\n"
    "  -b NAME  a buffer to read; repeat for several\n"
    "  -v FMT   brief (default): P/TAG(PID): message\n"
    "           threadtime:      MM-DD HH:MM:SS.mmm   PID   TID P TAG: message (local time)\n"
    "           raw:             the message only\n"
    "           json:            one object per line: time (UTC, \"2026-11-21T13:45:01.123456789Z\"),\n"
    "                            pid, tid, buffer, priority (a number), tag, message\n"
    "  TAG:P    print TAG's records of priority P or above, P one of V D I W E F S (S: none);\n"
    "           * stands for every other tag. Default *:I; specs without * silence other tags.\n";

// How often a follower looks for new records.
const long kPollIntervalNanoseconds = 100 * 1000 * 1000;

volatile std::sig_atomic_t stopRequested = 0;

void requestStop(int) { stopRequested = 1; }

struct Options {
    bool dumpOnly = false;
    std::vector<int> buffers;
    Orvo::Emulator::LogFormat format = Orvo::Emulator::LogFormat::Brief;
    std::vector<std::string> filterSpecs;
    bool help = false;
};

std::string nextArgument(const std::vector<std::string>& args, std::size_t& i) {
    if (++i == args.size()) throw std::invalid_argument(args[i - 1] + " needs a value");
    return args[i];
}

Options parseOptions(const std::vector<std::string>& args) {
    Options options;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (arg == "--help" || arg == "-h") {
            options.help = true;
        } else if (arg == "-d") {
            options.dumpOnly = true;
        } else if (arg == "-b") {
            const std::string name = nextArgument(args, i);
            const int buffer = Orvo::Emulator::logBufferId(name);
            if (buffer < 0)
                throw std::invalid_argument("unknown buffer \"" + name + "\" (main, radio, system or apps)");
            if (std::find(options.buffers.begin(), options.buffers.end(), buffer) == options.buffers.end())
                options.buffers.push_back(buffer);
        } else if (arg == "-v") {
            const std::string name = nextArgument(args, i);
            if (!Orvo::Emulator::parseLogFormat(name, options.format))
                throw std::invalid_argument("unknown format \"" + name + "\" (brief, threadtime, raw or json)");
        } else if (arg.size() > 1 && arg[0] == '-') {
            throw std::invalid_argument("unknown option " + arg);
        } else {
            options.filterSpecs.push_back(arg);
        }
    }
    if (options.buffers.empty()) options.buffers.push_back(0);
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

void print(const std::vector<LogRecord>& records, const Orvo::Emulator::LogFilter& filter,
           Orvo::Emulator::LogFormat format) {
    for (const LogRecord& record : records) {
        if (filter.accepts(record.tag, record.priority)) {
            const std::string text = Orvo::Emulator::formatLogRecord(record, format);
            std::fwrite(text.data(), 1, text.size(), stdout);
        }
    }
    std::fflush(stdout);
}

void installStopHandlers() {
    struct sigaction action {};
    action.sa_handler = requestStop;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

int run(const std::vector<std::string>& args) {
    const Options options = parseOptions(args);
    if (options.help) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    const Orvo::Emulator::LogFilter filter(options.filterSpecs);
    installStopHandlers();
    BufferReader reader(Orvo::Emulator::toolDeviceDirectory(), options.buffers);
    print(reader.readNew(), filter, options.format);
    while (!options.dumpOnly && !stopRequested) {
        const timespec interval{0, kPollIntervalNanoseconds};
        ::nanosleep(&interval, nullptr);
        print(reader.readNew(), filter, options.format);
    }
    return std::ferror(stdout) ? 1 : 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(std::vector<std::string>(argv + 1, argv + argc));
    } catch (const std::invalid_argument& error) {
        std::fprintf(stderr, "dlogutil: %s (see dlogutil --help)\n", error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "dlogutil: %s\n", error.what());
        return 1;
    }
}

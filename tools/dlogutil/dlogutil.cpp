// dlogutil: the platform's log reader over the emulated device. Prints one buffer's records and,
// unless -d or -t is given, follows it; clears it (-c), tells its size (-g), saves it raw (-f)
// and prints a saved file (--dumpfile). Options it does not know are reported by getopt and
// skipped, as on the platform.

#include "LogFilter.h"
#include "LogFormat.h"

#include "orvo/device/Device.h"
#include "orvo/device/LogStore.h"

#include <dlog.h>

#include <getopt.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <fstream>
#include <string>
#include <vector>

namespace {

using Orvo::Emulator::LogFormat;
using Orvo::Emulator::LogRecord;

const char kUsage[] =
    "Usage: dlogutil [OPTION]... [FILTERSPEC]...\n"
    "\n"
    "Prints the records of one buffer of the emulated device ($ORVO_DEVICE_DIR, or the default\n"
    "device), then follows new records until interrupted.\n"
    "  -b NAME   the buffer: main (default), radio, system or apps; the last -b counts\n"
    "  -d        print the records there are and exit\n"
    "  -t N      print the last N records and exit\n"
    "  -c        clear the buffer and exit\n"
    "  -g        print the size of the buffer and exit\n"
    "  -s        set the filter to *:S; filter specs are then ignored\n"
    "  -f FILE   append the buffer's records to FILE in the raw binary form and exit\n"
    "  -r KB, -n N  rotation of the -f file (accepted, not applied here)\n"
    "  --dumpfile FILE  print a file written by -f\n"
    "  -v FMT    brief (default), process, tag, thread, raw, time, threadtime, kerneltime, long;\n"
    "            an unknown format is brief\n"
    "FILTERSPEC  TAG[:P], P one of V D I W E F S (any case, only the first character counts) or\n"
    "            1 to 9; several per argument, separated by blanks or commas. TAG alone is TAG:V,\n"
    "            * is *:D and stands for every other tag. Default *:D. VERBOSE is never shown.\n"
    "\n"
    "The emulator's own:\n"
    "  -v json   one JSON object per record: time (UTC, \"2026-11-21T13:45:01.123456789Z\"),\n"
    "            pid, tid, buffer, priority (a number), tag, message\n"
    "  --help    this text\n";

// The buffer's size as the platform's log configuration gives it (<buffer>_size).
const int kBufferSizeBytes = 1048576;
// The raw file's header: an int telling the byte order, then the format's version.
const std::int32_t kRawMagic = 0x12345678;
const std::int32_t kRawVersion = 1;
// A raw record: u16 length of the whole record, u16 padding, i32 pid, tid, sec, nsec, then the
// priority byte, the tag and the message, each ended by a NUL.
const std::size_t kRawHeaderSize = 20;
// How often a follower looks for new records.
const long kPollIntervalNanoseconds = 100 * 1000 * 1000;

volatile std::sig_atomic_t stopRequested = 0;

void requestStop(int) { stopRequested = 1; }

struct Options {
    bool dumpOnly = false;
    bool clear = false;
    bool size = false;
    bool silent = false;
    bool help = false;
    long lastCount = -1; // -t N
    int buffer = LOG_ID_MAIN;
    std::string rawFile;  // -f
    std::string dumpFile; // --dumpfile
    LogFormat format = LogFormat::Brief;
    std::vector<std::string> filterSpecs;
};

// getopt reports an unknown option or a missing value itself; either is then skipped. False when
// the buffer named is not one.
bool parseOptions(int argc, char** argv, Options& options) {
    enum { kDumpFile = 256, kHelp };
    static const option longOptions[] = {{"dumpfile", required_argument, nullptr, kDumpFile},
                                         {"help", no_argument, nullptr, kHelp},
                                         {nullptr, 0, nullptr, 0}};
    for (int option; (option = ::getopt_long(argc, argv, "b:cdf:gn:r:st:v:", longOptions, nullptr)) != -1;) {
        switch (option) {
        case 'b':
            options.buffer = Orvo::Emulator::logBufferId(optarg);
            if (options.buffer < 0) {
                std::printf("There is no buffer \"%s\"\n", optarg);
                return false;
            }
            break;
        case 'c':
            options.clear = true;
            break;
        case 'd':
            options.dumpOnly = true;
            break;
        case 'f':
            options.rawFile = optarg;
            break;
        case 'g':
            options.size = true;
            break;
        case 's':
            options.silent = true;
            break;
        case 't':
            options.lastCount = std::atoi(optarg);
            break;
        case 'v':
            if (!Orvo::Emulator::parseLogFormat(optarg, options.format)) options.format = LogFormat::Brief;
            break;
        case kDumpFile:
            options.dumpFile = optarg;
            break;
        case kHelp:
            options.help = true;
            break;
        default: // -r, -n, and what getopt refused
            break;
        }
    }
    options.filterSpecs.assign(argv + optind, argv + argc);
    if (options.silent) options.filterSpecs = {"*:s"};
    return true;
}

void print(const std::vector<LogRecord>& records, const Orvo::Emulator::LogFilter& filter, LogFormat format) {
    for (const LogRecord& record : records) {
        if (!filter.accepts(record.tag, record.priority)) continue;
        const std::string text = Orvo::Emulator::formatLogRecord(record, format);
        std::fwrite(text.data(), 1, text.size(), stdout);
    }
    std::fflush(stdout);
}

template <typename T>
void putRaw(std::string& out, T value) {
    out.append(reinterpret_cast<const char*>(&value), sizeof value);
}

template <typename T>
T getRaw(const std::string& in, std::size_t at) {
    T value;
    std::memcpy(&value, in.data() + at, sizeof value);
    return value;
}

// -f: what the platform's daemon would append to the file, written once.
int saveRaw(const std::string& path, const std::vector<LogRecord>& records, const Orvo::Emulator::LogFilter& filter) {
    std::string raw;
    if (std::ifstream(path, std::ios::binary | std::ios::ate).tellg() <= 0) {
        putRaw(raw, kRawMagic);
        putRaw(raw, kRawVersion);
    }
    for (const LogRecord& record : records) {
        const std::size_t size = kRawHeaderSize + 1 + record.tag.size() + 1 + record.message.size() + 1;
        if (!filter.accepts(record.tag, record.priority) || size > 0xffff) continue;
        putRaw(raw, static_cast<std::uint16_t>(size));
        putRaw(raw, std::uint16_t{0});
        for (const std::int64_t field :
             {std::int64_t{record.pid}, std::int64_t{record.tid}, record.seconds, std::int64_t{record.nanoseconds}})
            putRaw(raw, static_cast<std::int32_t>(field));
        raw += static_cast<char>(record.priority);
        raw.append(record.tag.c_str(), record.tag.size() + 1);
        raw.append(record.message.c_str(), record.message.size() + 1);
    }
    std::ofstream out(path, std::ios::binary | std::ios::app);
    if (!(out << raw).flush()) {
        std::fprintf(stderr, "dlogutil: cannot write %s: %s\n", path.c_str(), std::strerror(errno));
        return 1;
    }
    return 0;
}

// --dumpfile: the records of a raw file; a cut record at its end is left out.
int dumpRaw(const std::string& path, const Orvo::Emulator::LogFilter& filter, LogFormat format) {
    std::ifstream in(path, std::ios::binary);
    const std::string raw((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (!in.good() && !in.eof()) return 1;
    if (raw.size() < 8 || getRaw<std::int32_t>(raw, 0) != kRawMagic) {
        std::fputs("Unsupported endianness!\n", stderr);
        return 1;
    }
    if (getRaw<std::int32_t>(raw, 4) != kRawVersion) {
        std::fputs("Obsolete file format version!\n", stderr);
        return 1;
    }
    std::vector<LogRecord> records;
    for (std::size_t at = 8; at + kRawHeaderSize < raw.size();) {
        const std::size_t size = getRaw<std::uint16_t>(raw, at);
        if (size < kRawHeaderSize + 3 || at + size > raw.size()) break;
        LogRecord record;
        record.pid = getRaw<std::int32_t>(raw, at + 4);
        record.tid = getRaw<std::int32_t>(raw, at + 8);
        record.seconds = getRaw<std::int32_t>(raw, at + 12);
        record.nanoseconds = getRaw<std::int32_t>(raw, at + 16);
        record.priority = static_cast<unsigned char>(raw[at + kRawHeaderSize]);
        const char* text = raw.data() + at + kRawHeaderSize + 1;
        record.tag.assign(text, strnlen(text, size - kRawHeaderSize - 1));
        const std::size_t messageAt = kRawHeaderSize + 1 + record.tag.size() + 1;
        if (messageAt < size)
            record.message.assign(raw.data() + at + messageAt, strnlen(raw.data() + at + messageAt, size - messageAt));
        records.push_back(std::move(record));
        at += size;
    }
    print(records, filter, format);
    return 0;
}

void installStopHandlers() {
    struct sigaction action {};
    action.sa_handler = requestStop;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

int run(int argc, char** argv) {
    Options options;
    if (!parseOptions(argc, argv, options)) return 1;
    if (options.help) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    const Orvo::Emulator::LogFilter filter(options.filterSpecs);
    if (!options.dumpFile.empty()) return dumpRaw(options.dumpFile, filter, options.format);
    const std::string deviceDir = Orvo::Emulator::toolDeviceDirectory();
    if (options.clear) {
        if (Orvo::Emulator::clearLogBuffer(deviceDir, options.buffer)) return 0;
        std::puts("Error: could not send a CLEAR request to logger; socket write failed");
        return 1;
    }
    if (options.size) {
        std::printf("Buffer #%d (%s) has size %d KB\n", options.buffer, Orvo::Emulator::logBufferName(options.buffer),
                    kBufferSizeBytes / 1024);
        return 0;
    }
    std::uint64_t offset = 0;
    std::vector<LogRecord> records = Orvo::Emulator::readLogRecords(deviceDir, options.buffer, offset);
    if (!options.rawFile.empty()) return saveRaw(options.rawFile, records, filter);
    if (options.lastCount >= 0) {
        std::vector<LogRecord> shown;
        for (LogRecord& record : records)
            if (filter.accepts(record.tag, record.priority)) shown.push_back(std::move(record));
        if (shown.size() > static_cast<std::size_t>(options.lastCount))
            shown.erase(shown.begin(), shown.end() - options.lastCount);
        records.swap(shown);
    }
    print(records, filter, options.format);
    if (options.dumpOnly || options.lastCount >= 0) return 0;
    installStopHandlers();
    while (!stopRequested) {
        const timespec interval{0, kPollIntervalNanoseconds};
        ::nanosleep(&interval, nullptr);
        print(Orvo::Emulator::readLogRecords(deviceDir, options.buffer, offset), filter, options.format);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "dlogutil: %s\n", error.what());
        return 1;
    }
}

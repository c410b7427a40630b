#include "orvo/testing/Process.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using Lines = std::vector<std::pair<std::string, std::string>>; // buffer, line of its log file

// A record in the device's own format, so that its time is known; \n, \t and \\ are escaped there.
std::string record(const std::string& time, int priority, const std::string& tag, const std::string& message,
                   const std::string& ids = "1234\t1240") {
    return time + "\t" + ids + "\t" + std::to_string(priority) + "\t" + tag + "\t" + message;
}

Orvo::Testing::ProcessResult dlogutil(std::vector<std::string> args) {
    args.insert(args.begin(), Orvo::Testing::toolPath("dlogutil"));
    return Orvo::Testing::runProcess(args, "", {{"TZ", "JST-9"}});
}

// A device whose logs hold the lines, for tools run one after another.
struct LoggedDevice {
    explicit LoggedDevice(const Lines& lines) {
        for (const auto& [buffer, line] : lines)
            std::ofstream(device.dir() + "/log/" + buffer + ".log", std::ios::app) << line << "\n";
    }
    Orvo::Testing::TestDevice device;
};

struct Row {
    const char* row;
    std::vector<std::string> args;
    std::string out;
    int exitCode = 0;
};

void expectRows(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        const auto result = dlogutil(row.args);
        EXPECT_EQ(row.out, result.out) << row.row;
        EXPECT_EQ(row.exitCode, result.exitCode) << row.row << ": " << result.err;
    }
}

} // namespace

// Options and filter specs of the platform's dlogutil (pipe backend), one row each. Records are
// "TAG/priority" in raw format; tag A has 2 (VERBOSE), 3, 4, 6 and 8 (SILENT).
TEST(DlogutilParity, OptionsAndFilterSpecs) {
    Lines lines = {{"system", record("1.000000000", 4, "S", "S/4")}, {"radio", record("1.000000000", 4, "R", "R/4")}};
    for (const std::string message : {"A/2", "A/3", "A/4", "A/6", "A/8", "B/3", "B/5", "C/7"})
        lines.push_back({"main", record(std::to_string(lines.size()) + ".000000002", message[2] - '0',
                                        message.substr(0, 1), message)});
    const LoggedDevice logged(lines);
    const std::string all = "A/3\nA/4\nA/6\nA/8\nB/3\nB/5\nC/7\n";
    expectRows({
        {"no -b: main only; default *:D; VERBOSE never shown", {"-d", "-v", "raw"}, all},
        {"-b: one buffer", {"-d", "-vraw", "-b", "system"}, "S/4\n"},
        {"-b: the last wins", {"-d", "-vraw", "-b", "system", "-bradio"}, "R/4\n"},
        {"-b unknown: There is no buffer, exit 1", {"-d", "-b", "events"}, "There is no buffer \"events\"\n", 1},
        {"-t N: the last N shown, then exit", {"-vraw", "-t", "2", "A"}, "A/6\nA/8\n"},
        {"-t 0", {"-vraw", "-t0"}, ""},
        {"-g: the buffer's configured size", {"-g", "-b", "system"}, "Buffer #2 (system) has size 1024 KB\n"},
        {"-s: *:s, filter specs ignored", {"-d", "-vraw", "-s", "B:D"}, "A/8\n"},
        {"-v unknown: brief, no error", {"-d", "-v", "color", "C"}, "S/A       ( 1234): A/8\nF/C       ( 1234): C/7\n"},
        {"unknown option: skipped", {"-d", "-x", "-vraw", "C"}, "A/8\nC/7\n"},
        {"TAG:P", {"-d", "-vraw", "A:E"}, "A/6\nA/8\n"},
        {"P in any case, first character only", {"-d", "-vraw", "a:e", "A:warning"}, "A/6\nA/8\n"},
        {"several specs: comma", {"-d", "-vraw", "A:e,B:w"}, "A/6\nA/8\nB/5\n"},
        {"several specs: blank and tab", {"-d", "-vraw", "A:6 B:5\tC:s"}, "A/6\nA/8\nB/5\n"},
        {"* alone is *:D", {"-d", "-vraw", "*"}, all},
        {"bare TAG is TAG:V", {"-d", "-vraw", "B"}, "A/8\nB/3\nB/5\n"},
        {"TAG:* is TAG:V", {"-d", "-vraw", "B:*"}, "A/8\nB/3\nB/5\n"},
        {"digit 1 is *", {"-d", "-vraw", "B:1"}, "A/8\nB/3\nB/5\n"},
        {"digits 2-7 VERBOSE..FATAL", {"-d", "-vraw", "A:6", "B:5", "*:7"}, "A/6\nA/8\nB/5\nC/7\n"},
        {"digits 8 and 9 are VERBOSE", {"-d", "-vraw", "A:8,B:9"}, "A/3\nA/4\nA/6\nA/8\nB/3\nB/5\n"},
        {"digit 0 invalid: ignored", {"-d", "-vraw", "A:0", "B:W", "*:E"}, "A/6\nA/8\nB/5\nC/7\n"},
        {"bad letter: ignored", {"-d", "-vraw", "A:X", "*:E"}, "A/6\nA/8\nC/7\n"},
        {"global level silent until a * spec", {"-d", "-vraw", "C:F"}, "A/8\nC/7\n"},
        {"the last rule for a tag wins", {"-d", "-vraw", "A:V", "A:F", "*:S"}, "A/8\n"},
        {"S: only SILENT records", {"-d", "-vraw", "*:S"}, "A/8\n"},
        {"options after filter specs", {"-vraw", "A:E", "-d"}, "A/6\nA/8\n"},
    });
}

// Every format of the platform's -v, as its table lays out I/MyTag/1234/1240/"hello" at
// 08-03 12:34:56.789 in a +0900 zone; each line its own prefix, except in long.
TEST(DlogutilParity, Formats) {
    const std::string seconds = "1785728096";
    const LoggedDevice logged({{"main", record(seconds + ".789000000", 4, "MyTag", "hello")},
                               {"radio", record(seconds + ".789000000", 6, "LongerTag", "one\\ntwo\\n")},
                               {"system", record("5678.789000000", 4, "MyTag", "hello")},
                               {"apps", record(seconds + ".000000000", 4, "T", "")},
                               {"apps", record(seconds + ".000000000", 9, "T", "?")},
                               {"apps", record(seconds + ".000000000", 1, "T", "below DEBUG")}});
    expectRows({
        {"brief", {"-d", "-v", "brief"}, "I/MyTag   ( 1234): hello\n"},
        {"process", {"-d", "-v", "process"}, "I( 1234) hello  (MyTag)\n"},
        {"tag", {"-d", "-v", "tag"}, "I/MyTag   : hello\n"},
        {"thread", {"-d", "-v", "thread"}, "I(P 1234, T 1240) hello\n"},
        {"raw", {"-d", "-v", "raw"}, "hello\n"},
        {"time", {"-d", "-v", "time"}, "08-03 12:34:56.789+0900 I/MyTag   ( 1234): hello\n"},
        {"threadtime", {"-d", "-v", "threadtime"}, "08-03 12:34:56.789+0900 I/MyTag   (P 1234, T 1240): hello\n"},
        {"long", {"-d", "-v", "long"}, "[ 08-03 12:34:56.789 I/MyTag    P 1234, T 1240]\nhello\n\n"},
        {"kerneltime: raw seconds",
         {"-d", "-b", "system", "-v", "kerneltime"},
         " 5678.789+0900 I/MyTag   (P 1234, T 1240): hello\n"},
        {"each line its prefix; a tag of 8 or more unpadded",
         {"-d", "-b", "radio"},
         "E/LongerTag( 1234): one\nE/LongerTag( 1234): two\n"},
        {"each line its suffix",
         {"-d", "-b", "radio", "-vprocess"},
         "E( 1234) one  (LongerTag)\nE( 1234) two  (LongerTag)\n"},
        {"long: the message whole",
         {"-d", "-b", "radio", "-vlong"},
         "[ 08-03 12:34:56.789 E/LongerTag P 1234, T 1240]\none\ntwo\n\n\n"},
        {"empty message: nothing; letter ?", {"-d", "-b", "apps", "T:1"}, "?/T       ( 1234): ?\n"},
        {"long prints an empty message",
         {"-d", "-b", "apps", "-vlong", "T:V"},
         "[ 08-03 12:34:56.000 I/T        P 1234, T 1240]\n\n\n[ 08-03 12:34:56.000 ?/T        P 1234, T 1240]\n?\n\n"},
    });
}

// -c empties the chosen buffer only; -f saves it raw; --dumpfile prints such a file.
TEST(DlogutilParity, ClearRawFileAndDumpfile) {
    const LoggedDevice logged({{"main", record("1.500000000", 4, "T", "main one")},
                               {"main", record("2.500000000", 5, "T", "main two")},
                               {"system", record("3.000000000", 4, "T", "system")}});
    const std::string file = logged.device.dir() + "/saved.raw";
    for (int round = 0; round < 2; ++round) {
        const auto saved = dlogutil({"-f", file, "-r", "16", "-n", "2", "T:W"});
        EXPECT_EQ(0, saved.exitCode) << saved.err;
        EXPECT_EQ("", saved.out + saved.err);
    }
    EXPECT_EQ("W/T       ( 1234): main two\nW/T       ( 1234): main two\n", dlogutil({"--dumpfile", file}).out)
        << "one file header, records appended";
    EXPECT_EQ(0, dlogutil({"--dumpfile", file}).exitCode);

    const std::string bad = logged.device.dir() + "/bad.raw";
    const std::vector<std::pair<std::string, std::string>> badFiles = {
        {std::string("\x78\x56\x34\x12\x02\0\0\0", 8), "Obsolete file format version!\n"},
        {std::string("\x12\x34\x56\x78\x01\0\0\0", 8), "Unsupported endianness!\n"}};
    for (const auto& [content, message] : badFiles) {
        std::ofstream(bad, std::ios::binary) << content;
        const auto result = dlogutil({"--dumpfile", bad});
        EXPECT_EQ(1, result.exitCode) << message;
        EXPECT_EQ(message, result.err);
    }
    EXPECT_EQ(1, dlogutil({"--dumpfile", bad + ".missing"}).exitCode);

    const auto cleared = dlogutil({"-c"});
    EXPECT_EQ(0, cleared.exitCode) << cleared.err;
    EXPECT_EQ("", cleared.out + cleared.err);
    EXPECT_EQ("", dlogutil({"-d"}).out);
    EXPECT_EQ("system\n", dlogutil({"-d", "-vraw", "-b", "system"}).out) << "system was not chosen";
    EXPECT_EQ(0, dlogutil({"-c", "-b", "apps"}).exitCode) << "a missing buffer is empty already";
}

TEST(DlogutilParity, ALinkOrFifoWhereALogBelongsIsAnErrorNotAnEmptyLog) {
    const LoggedDevice logged({{"main", record("1.000000000", 4, "T", "kept")}});
    const std::string log = logged.device.dir() + "/log/system.log";
    const std::vector<std::pair<std::string, std::function<int()>>> cases = {
        {"a link", [&] { return ::symlink((logged.device.dir() + "/log/main.log").c_str(), log.c_str()); }},
        {"a FIFO", [&] { return ::mkfifo(log.c_str(), 0644); }}};
    for (const auto& [what, make] : cases) {
        std::remove(log.c_str());
        ASSERT_EQ(0, make()) << what;
        for (const std::vector<std::string>& args :
             std::vector<std::vector<std::string>>{{"-d", "-b", "system"}, {"-t", "1", "-b", "system"}}) {
            const auto result = dlogutil(args);
            EXPECT_EQ(1, result.exitCode) << what;
            EXPECT_EQ(0u, result.err.find("dlogutil: " + log + ": ")) << what << ": " << result.err;
        }
    }
}

// The device console's HTTP API, without a browser: a ConsoleServer on the sandbox's fresh
// device with the real plug-in, driven through an HTTP client as the page drives it.

#include "ConsoleError.h"
#include "ConsoleServer.h"
#include "Language.h"
#include "LogFormat.h"
#include "MenuSession.h"
#include "orvo/device/DeviceConf.h"
#include "orvo/device/SettingsStore.h"
#include "orvo/testing/TestUtil.h"

#include <dlog.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <thread>

namespace Orvo::Testing {
namespace {

using nlohmann::json;
using namespace Tools;

constexpr const char* kAutoUpdate = "db/menu/support/softwareupdate/autoupdate";

std::string fileText(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// Everything a refused request must leave as it was.
std::string deviceSnapshot(const TestDevice& device) {
    std::string snapshot = fileText(device.dir() + "/device.conf");
    for (const std::string& key : Emulator::listSettings(device.dir())) {
        Emulator::Setting setting;
        Emulator::readSetting(device.dir(), key, setting);
        snapshot += key + "=" + setting.value + "\n";
    }
    return snapshot + fileText(device.rootfsPath("/common/version.txt"));
}

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// A connection to the console; a non-blocking one may still be under way.
int connectTo(int port, int flags = 0) {
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | flags, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int connected = ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address);
    EXPECT_TRUE(connected == 0 || flags != 0);
    return fd;
}

// Sends the pieces `gap` apart, then reads until the console closes; the status, 0 for none.
int exchange(int port, const std::vector<std::string>& pieces, milliseconds gap = milliseconds(0)) {
    const int fd = connectTo(port);
    for (const std::string& piece : pieces) {
        if (::send(fd, piece.data(), piece.size(), MSG_NOSIGNAL) < 0) break; // answered already
        std::this_thread::sleep_for(gap);
    }
    std::string answer;
    char buffer[4096];
    pollfd readable{fd, POLLIN, 0};
    for (ssize_t got = 1; got > 0 && ::poll(&readable, 1, 3000) == 1;) {
        got = ::recv(fd, buffer, sizeof buffer, 0);
        answer.append(buffer, static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    }
    ::close(fd);
    return answer.compare(0, 9, "HTTP/1.1 ") == 0 ? std::stoi(answer.substr(9, 3)) : 0;
}

class ConsoleApi : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(inSandbox()) << "the console reads the device through its absolute paths";
        Console::ConsoleConfig config{"127.0.0.1", 0, device.dir(), ORVO_CONSOLE_ASSETS, ""};
        config.limits = limits;
        server = std::make_unique<Console::ConsoleServer>(provider, config);
        serving = std::thread([this] { server->run(); });
        client = std::make_unique<httplib::Client>("127.0.0.1", server->port());
        client->set_default_headers({{"X-Console-Token", server->token()}});
        for (int i = 0; i < 200 && !client->Get("/api/menu"); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    void TearDown() override {
        server->stop();
        serving.join();
    }

    static json answer(const httplib::Result& result, const std::string& what, int status) {
        EXPECT_TRUE(result) << what;
        if (!result) return json();
        EXPECT_EQ(result->status, status) << what << ": " << result->body;
        return json::parse(result->body);
    }
    json get(const std::string& path, int status = 200) { return answer(client->Get(path.c_str()), path, status); }
    json post(const std::string& path, const std::string& body) {
        return answer(client->Post(path.c_str(), body, "application/json"), body, 200);
    }
    json press(const std::string& key) { return post("/api/key", json{{"key", key}}.dump()); }

    Console::FrontLimits limits;
    TestDevice device;
    const bool english = (MenuHost::selectLanguage("en"), true); // as orvo-menu starts
    const MenuHost::PluginLibrary library{ORVO_MENU_PLUGIN};
    const MenuHost::Provider provider{library};
    std::unique_ptr<Console::ConsoleServer> server;
    std::thread serving;
    std::unique_ptr<httplib::Client> client;
};

TEST_F(ConsoleApi, EveryApiRequestNeedsTheTokenEveryRequestTheConsolesHostAndNoForeignOrigin) {
    const std::string port = std::to_string(server->port());
    const std::string own = "127.0.0.1:" + port;
    const std::string token = server->token();
    const std::pair<std::string, std::string> host{"Host", own}, key{"X-Console-Token", token};
    const struct {
        const char* what;
        httplib::Headers headers;
        int page; // the page and its scripts, which hold nothing secret
        int api;
    } cases[] = {{"no token", {host}, 200, 403},
                 {"wrong token", {host, {"X-Console-Token", token + "0"}}, 200, 403},
                 {"token as header", {host, key}, 200, 200},
                 {"token as cookie", {host, {"Cookie", "a=b; orvo_console_token=" + token}}, 200, 403},
                 {"localhost", {{"Host", "localhost:" + port}, key}, 200, 200},
                 {"rebound name", {{"Host", "attacker.example:" + port}, key}, 403, 403},
                 {"other port", {{"Host", "127.0.0.1:1"}, key}, 403, 403},
                 {"own origin", {host, {"Origin", "http://" + own}, key}, 200, 200},
                 {"foreign origin", {host, {"Origin", "http://attacker.example"}, key}, 403, 403},
                 {"null origin", {host, {"Origin", "null"}, key}, 403, 403},
                 {"second Host foreign", {host, {"Host", "attacker.example"}, key}, 400, 400},
                 {"second Origin foreign",
                  {host, {"Origin", "http://" + own}, {"Origin", "http://attacker.example"}, key},
                  400,
                  400}};
    const std::pair<const char*, bool> paths[] = {
        {"/", false},          {"/console.css", false}, {"/console.js", false},     {"/api/menu", true},
        {"/api/device", true}, {"/api/log", true},      {"/api/localisation", true}};
    httplib::Client bare("127.0.0.1", server->port());
    for (const auto& c : cases) {
        for (const auto& path : paths) {
            const httplib::Result result = bare.Get(path.first, c.headers);
            ASSERT_TRUE(result) << c.what << " " << path.first;
            EXPECT_EQ(result->status, path.second ? c.api : c.page)
                << c.what << " " << path.first << ": " << result->body;
            EXPECT_EQ(result->get_header_value("Set-Cookie"), "") << c.what << " " << path.first;
        }
        // Changes are refused alike, and refused ones change nothing.
        const std::string before = deviceSnapshot(device);
        const httplib::Result key = bare.Post("/api/key", c.headers, R"({"key":"Down"})", "application/json");
        const httplib::Result change =
            bare.Post("/api/device", c.headers, R"({"kind":"setting","key":"db/x","type":"int","value":"1"})",
                      "application/json");
        ASSERT_TRUE(key && change);
        EXPECT_EQ(key->status, c.api) << c.what;
        EXPECT_EQ(change->status, c.api) << c.what;
        if (c.api != 200) {
            EXPECT_EQ(deviceSnapshot(device), before) << c.what;
            EXPECT_NE(json::parse(key->body).value("error", ""), "") << c.what;
        }
        Emulator::removeSetting(device.dir(), "db/x");
    }
    EXPECT_EQ(get("/api/menu")["selected"], 3); // the three accepted Down presses only
    // The token travels in the URL's fragment, which the browser keeps to itself.
    EXPECT_EQ(server->url(), "http://127.0.0.1:" + port + "/#token=" + token);
}

TEST_F(ConsoleApi, KeysDriveTheMenuAsTheTerminalMenuDoes) {
    json menu = get("/api/menu");
    ASSERT_EQ(menu["items"].size(), 5u);
    EXPECT_EQ(menu["title"], provider.title(MenuHost::kBranchId).text.value());
    EXPECT_EQ(press("Up")["selected"], 0);
    for (int i = 0; i < 6; ++i)
        menu = press("Down");
    EXPECT_EQ(menu["selected"], 4);
    press("Up");
    menu = press("Up");
    EXPECT_EQ(menu["items"][2]["id"], kAutoUpdate);
    EXPECT_EQ(menu["items"][2]["on"], true);

    menu = press("Enter"); // setIntValue through the plug-in, then the branch is read again
    EXPECT_EQ(menu["items"][2]["on"], false);
    EXPECT_EQ(menu["status"], "Auto Update: Off");
    Emulator::Setting stored;
    ASSERT_EQ(Emulator::readSetting(device.dir(), kAutoUpdate, stored), 0);
    EXPECT_EQ(stored.value, "0");

    const std::string help = menu["description"];
    menu = press("Info");
    EXPECT_EQ(menu["description"].get<std::string>().rfind("SW Version: T-KTM2DEUC-1302.5\n", 0), 0u) << menu;
    EXPECT_EQ(press("Down")["description"], menu["description"]); // moving reads nothing again
    EXPECT_EQ(press("Refresh")["description"], help);             // the detailed block came once

    menu = press("Back");
    EXPECT_EQ(menu["open"], false);
    menu = press("Down"); // any key opens the branch again, on its first item
    EXPECT_EQ(menu["open"], true);
    EXPECT_EQ(menu["selected"], 0);
}

TEST_F(ConsoleApi, ValidChangesAreWrittenAndTheMenuShowsThemAtOnce) {
    json answer =
        post("/api/device", R"({"kind":"system-info","key":128,"type":"string","value":"T-KTM2DEUC-1410.2"})");
    EXPECT_NE(answer["menu"]["description"].get<std::string>().find("Current version: 1410"), std::string::npos);
    const std::pair<const char*, const char*> changes[] = {
        // the change, its line in device.conf
        {R"({"kind":"system-info","key":77,"type":"int","value":"-3"})", "system-info.77 = int -3"},
        {R"({"kind":"system-info","key":740,"type":"bool","value":"true"})", "system-info.740 = bool true"},
        {R"({"kind":"system-info","key":12,"type":"double","value":"2.5"})", "system-info.12 = double 2.5"},
        {R"({"kind":"system-info","key":869,"type":"error","value":"-5"})", "system-info.869 = error -5"},
        {R"({"kind":"system-info","key":8,"type":"string","value":""})", "system-info.8 = string "},
        {R"({"kind":"production","value":true})", "production = true"}};
    for (const auto& [change, line] : changes) {
        post("/api/device", change);
        const std::string conf = fileText(device.dir() + "/device.conf");
        EXPECT_NE(conf.find("\n" + std::string(line) + "\n"), std::string::npos) << change << "\n" << conf;
    }
    EXPECT_EQ(get("/api/device")["production"], true);
    EXPECT_EQ(Emulator::DeviceConf::load(device.dir()).systemInfo.at(869).errorCode, -5);
    EXPECT_NE(fileText(device.dir() + "/device.conf").find("# Platform directory roots."), std::string::npos)
        << "comments stay";

    const std::tuple<const char*, const char*, const char*> settings[] = {// type, value, stored
                                                                          {"int", "-42", "-42"},
                                                                          {"bool", "true", "1"},
                                                                          {"double", "0.1", "0.10000000000000001"},
                                                                          {"string", "two\nlines", "two\nlines"}};
    for (const auto& [type, value, stored] : settings) {
        post("/api/device",
             json{{"kind", "setting"}, {"key", "memory/console/x"}, {"type", type}, {"value", value}}.dump());
        Emulator::Setting setting;
        ASSERT_EQ(Emulator::readSetting(device.dir(), "memory/console/x", setting), 0);
        EXPECT_EQ(setting.value, stored) << type;
        EXPECT_STREQ(Emulator::settingTypeName(setting.type), type);
    }

    post("/api/device", R"({"kind":"development-keys","value":false})");
    post("/api/device", R"({"kind":"version-file","value":"18.001.0 2024-01-01"})");
    answer = press("Info");
    EXPECT_EQ(answer["description"], "SW Version: T-KTM2DEUC-1410.2\nCommon version: 18.001.0");
    post("/api/device", R"({"kind":"version-file","value":null})");
    EXPECT_EQ(get("/api/device")["versionFile"], nullptr);
    EXPECT_EQ(get("/api/device")["developmentKeys"], false);

    answer = post("/api/device", R"({"kind":"language","value":"de"})");
    EXPECT_EQ(answer["menu"]["title"], "Software-Update");
    EXPECT_EQ(get("/api/device")["language"], "de");
}

TEST_F(ConsoleApi, BadInputIsRefusedWithOneLineAndChangesNothing) {
    const std::string tooLong(Console::kMaxValueLength + 1, 'x');
    const struct {
        const char* path;
        std::string body;
        int status;
        const char* reason; // part of the one-line error
    } cases[] = {
        {"/api/device", "{\"kind\":", 400, "bad JSON"},
        {"/api/device", "[1,2]", 400, "\"kind\""},
        {"/api/device", R"({"kind":"production","value":true,"extra":1})", 400, "unknown key \"extra\""},
        {"/api/device", R"({"kind":"setting","key":"db/a","type":"int"})", 400, "missing key \"value\""},
        {"/api/device", R"({"kind":"setting","key":"db/a","type":"int","value":"12x"})", 400, "not a valid int"},
        {"/api/device", R"({"kind":"setting","key":"db/a","type":"int","value":"99999999999"})", 400,
         "not a valid int"},
        {"/api/device", R"({"kind":"setting","key":"db/a","type":"bool","value":"yes"})", 400, "not a valid bool"},
        {"/api/device", R"({"kind":"setting","key":"db/a","type":"long","value":"1"})", 400, "unknown setting type"},
        {"/api/device", R"({"kind":"setting","key":"db/a b","type":"int","value":"1"})", 400, "not a setting key"},
        {"/api/device", R"({"kind":"setting","key":"db/a","type":"int","value":1})", 400, "must be a string"},
        {"/api/device", R"({"kind":"setting","key":"db/a","type":"string","value":")" + tooLong + "\"}", 400,
         "longer than 4096 bytes"},
        {"/api/device", R"({"kind":"system-info","key":128,"type":"string","value":"a\nb"})", 400, "one line"},
        {"/api/device", R"({"kind":"system-info","key":869,"type":"error","value":"0"})", 400, "not a valid error"},
        {"/api/device", R"({"kind":"system-info","key":12,"type":"double","value":"2,5"})", 400, "not a valid double"},
        {"/api/device", R"({"kind":"system-info","key":-1,"type":"int","value":"1"})", 400, "key number"},
        {"/api/device", R"({"kind":"system-info","key":"128","type":"int","value":"1"})", 400, "key number"},
        {"/api/device", R"({"kind":"production","value":"true"})", 400, "true or false"},
        {"/api/device", R"({"kind":"reboot"})", 400, "unknown kind"},
        {"/api/device", R"({"kind":"language","value":"xx"})", 400, "no catalogue"},
        {"/api/device", "{\"kind\":\"version-file\",\"value\":\"" + tooLong + "\"}", 400, "longer than"},
        {"/api/device", R"({"kind":"setting","key":"db/a","type":"string","value":"T-AB\u0000CD-1.2"})", 400, "NUL"},
        {"/api/device", R"({"kind":"system-info","key":128,"type":"string","value":"T-AB\u0000CD-1.2"})", 400, "NUL"},
        {"/api/device", R"({"kind":"version-file","value":"18.001.0\u0000"})", 400, "NUL"},
        {"/api/key", R"({"key":"Home"})", 400, "unknown key \"Home\""},
        {"/api/key", R"({"key":"Down","repeat":2})", 400, "unknown key \"repeat\""},
        {"/api/key", R"({"key":["Down"]})", 400, "name of a key"},
        {"/api/key", std::string(70 * 1024, ' '), 413, ""},
        {"/api/nothing", "{}", 404, "no such page"},
    };
    const std::string before = deviceSnapshot(device);
    for (const auto& c : cases) {
        const httplib::Result result = client->Post(c.path, c.body, "application/json");
        ASSERT_TRUE(result) << c.body.substr(0, 80);
        EXPECT_EQ(result->status, c.status) << c.body.substr(0, 80) << ": " << result->body;
        if (c.status != 413) {
            const std::string error = json::parse(result->body).value("error", "");
            EXPECT_NE(error.find(c.reason), std::string::npos) << c.body.substr(0, 80) << ": " << error;
            EXPECT_EQ(error.find('\n'), std::string::npos) << error;
        }
    }
    const httplib::Result form = client->Post("/api/key", "key=Down", "application/x-www-form-urlencoded");
    ASSERT_TRUE(form);
    EXPECT_EQ(form->status, 415);
    EXPECT_EQ(deviceSnapshot(device), before);
    EXPECT_EQ(get("/api/menu")["selected"], 0);
    EXPECT_EQ(get("/api/menu")["language"], "en");
}

TEST_F(ConsoleApi, LogShowsNewRecordsFilteredAndLaidOutAsDlogutil) {
    device.clearLogs();
    json log = get("/api/log?buffers=main&format=brief");
    const std::string cursor = log["cursor"];
    ASSERT_TRUE(log["records"].empty()) << log;
    const char* const messages[] = {"first", "second"};
    for (const char* message : messages)
        Emulator::appendLogRecord(device.dir(), LOG_ID_MAIN, DLOG_INFO, "ConsoleTest", message, std::strlen(message));
    Emulator::appendLogRecord(device.dir(), LOG_ID_MAIN, DLOG_VERBOSE, "ConsoleTest", "quiet", 5);
    Emulator::appendLogRecord(device.dir(), LOG_ID_RADIO, DLOG_ERROR, "Radio", "elsewhere", 9);

    const std::vector<Emulator::LogRecord> records = device.logRecords(LOG_ID_MAIN);
    ASSERT_EQ(records.size(), 3u);
    for (const char* format : {"brief", "threadtime", "raw", "json"}) {
        Emulator::LogFormat layout;
        ASSERT_TRUE(Emulator::parseLogFormat(format, layout));
        log = get("/api/log?buffers=main&format=" + std::string(format) + "&cursor=" + cursor);
        ASSERT_EQ(log["records"].size(), 2u) << format << log; // *:D by default, VERBOSE never
        const std::string expected = Emulator::formatLogRecord(records[1], layout);
        EXPECT_EQ(log["records"][1]["text"].get<std::string>() + "\n", expected) << format;
    }
    const std::string next = log["cursor"];
    EXPECT_TRUE(get("/api/log?buffers=main&cursor=" + next)["records"].empty()) << "only new records";
    EXPECT_EQ(get("/api/log?buffers=main&filter=ConsoleTest:W&cursor=" + cursor)["records"].size(), 0u);
    EXPECT_EQ(get("/api/log?buffers=main&filter=ConsoleTest:S,*:V&cursor=" + cursor)["records"].size(), 0u);
    log = get("/api/log?buffers=radio,main&filter=Radio:E%20ConsoleTest:I&cursor=" + cursor);
    ASSERT_EQ(log["records"].size(), 3u);
    EXPECT_EQ(log["records"][2]["buffer"], "radio");

    const char* const bad[] = {
        "/api/log?buffers=kernel", "/api/log?format=xml", "/api/log?filter=Tag:Q",          "/api/log?cursor=1,2",
        "/api/log?cursor=a,b,c,d", "/api/log?since=0",    "/api/log?format=raw&format=json"};
    for (const char* query : bad)
        EXPECT_NE(get(query, 400).value("error", ""), "") << query;
}

TEST_F(ConsoleApi, LocalisationShowsTheBranchInEveryCatalogueLanguage) {
    const json view = get("/api/localisation");
    EXPECT_EQ(view["languages"], json({"de", "en", "fr"}));
    EXPECT_EQ(view["widths"]["title"], Console::FieldWidths().title);
    // Titles and descriptions of the branch and its five items, and the three value texts.
    ASSERT_EQ(view["rows"].size(), 6u * 2 + 3);
    EXPECT_EQ(view["rows"][0]["id"], MenuHost::kBranchId);
    EXPECT_EQ(view["rows"][0]["field"], "title");
    EXPECT_EQ(view["rows"][0]["texts"][0]["text"], "Software-Update");
    EXPECT_EQ(view["rows"][0]["texts"][1]["text"], "Software Update");
    for (const json& row : view["rows"])
        for (const json& text : row["texts"])
            EXPECT_EQ(text["rawId"], false) << row;
    EXPECT_EQ(get("/api/menu")["language"], "en") << "the view leaves the menu's language alone";
}

TEST_F(ConsoleApi, ConcurrentEditsLoseNothingAndTearNothing) {
    constexpr int kWriters = 6;
    constexpr int kRounds = 15;
    const Emulator::DeviceConf before = Emulator::DeviceConf::load(device.dir());
    std::vector<std::thread> writers;
    for (int w = 0; w < kWriters; ++w) {
        writers.emplace_back([this, w] {
            httplib::Client own("127.0.0.1", server->port());
            own.set_default_headers({{"X-Console-Token", server->token()}});
            for (int round = 0; round < kRounds; ++round) {
                const std::pair<const char*, json> requests[] = {
                    {"/api/device",
                     {{"kind", "system-info"},
                      {"key", 5000 + w},
                      {"type", "int"},
                      {"value", std::to_string(w * 1000 + round)}}},
                    {"/api/device",
                     {{"kind", "setting"},
                      {"key", "db/console/shared"},
                      {"type", "string"},
                      {"value", std::string(3000, static_cast<char>('a' + w))}}},
                    {"/api/key", {{"key", "Enter"}}}};
                for (const auto& [path, body] : requests) {
                    const httplib::Result result = own.Post(path, body.dump(), "application/json");
                    EXPECT_TRUE(result && result->status == 200) << body;
                }
            }
        });
    }
    for (std::thread& writer : writers)
        writer.join();

    const Emulator::DeviceConf after = Emulator::DeviceConf::load(device.dir());
    for (int w = 0; w < kWriters; ++w) {
        ASSERT_TRUE(after.systemInfo.count(5000 + w)) << "the last change of writer " << w << " was lost";
        EXPECT_EQ(after.systemInfo.at(5000 + w).intValue, w * 1000 + kRounds - 1);
    }
    EXPECT_EQ(after.systemInfo.size(), before.systemInfo.size() + kWriters) << "an entry was lost";
    Emulator::Setting shared;
    ASSERT_EQ(Emulator::readSetting(device.dir(), "db/console/shared", shared), 0);
    EXPECT_EQ(shared.value, std::string(3000, shared.value.at(0))) << "a setting was torn";
    // Every Enter flipped Auto Update exactly once, whichever thread pressed it.
    Emulator::Setting autoUpdate;
    ASSERT_EQ(Emulator::readSetting(device.dir(), kAutoUpdate, autoUpdate), 0);
    EXPECT_EQ(autoUpdate.value, (kWriters * kRounds) % 2 == 0 ? "1" : "0");
}

// A console with short deadlines and few connections, so that its limits show quickly.
class ConsoleLimits : public ConsoleApi {
protected:
    ConsoleLimits() {
        limits.headDeadline = milliseconds(400);
        limits.requestDeadline = milliseconds(800);
        limits.maxConnections = 12;
    }
    std::string head(const std::string& method, const std::string& headers) const {
        return method + " /api/" + (method == "GET" ? "menu" : "key") +
               " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server->port()) +
               "\r\nX-Console-Token: " + server->token() +
               "\r\nContent-Type: application/json\r\nConnection: close\r\n" + headers + "\r\n";
    }
};

TEST_F(ConsoleLimits, EveryRequestIsRefusedAsSoonAsItBreaksALimit) {
    const std::string chunk = "4000\r\n" + std::string(0x4000, ' ') + "\r\n";
    const std::string slowHead = "GET /api/menu HTTP/1.1\r\nX-Slow: 0123456789";
    std::vector<std::string> bytes;
    for (char c : slowHead)
        bytes.emplace_back(1, c);
    const std::string chunked = head("POST", "Transfer-Encoding: chunked\r\n");
    const struct {
        const char* what;
        std::vector<std::string> pieces;
        int status;
        milliseconds gap{0};
    } cases[] = {
        {"chunked body within the limit", {chunked, "e\r\n{\"key\":\"Down\"}\r\n0\r\n\r\n"}, 200},
        {"chunks beyond the limit", {chunked, chunk, chunk, chunk, chunk, chunk, "0\r\n\r\n"}, 413},
        {"one chunk announced beyond the limit", {chunked, "8000000\r\n{"}, 413},
        {"length beyond the limit, body never sent", {head("POST", "Content-Length: 100000000\r\n")}, 413},
        {"unknown transfer encoding", {head("POST", "Transfer-Encoding: gzip\r\n")}, 501},
        {"length and chunks", {head("POST", "Content-Length: 5\r\nTransfer-Encoding: chunked\r\n")}, 400},
        {"headers too long", {head("GET", "X-Big: " + std::string(20000, 'x') + "\r\n")}, 431},
        {"headers a byte at a time", bytes, 408, milliseconds(50)},
        {"headers stalled", {"GET /api/menu HTTP/1.1\r\n"}, 408},
        {"body stalled", {head("POST", "Content-Length: 15\r\n"), "{\"key\""}, 408},
    };
    for (const auto& c : cases) {
        const Clock::time_point start = Clock::now();
        EXPECT_EQ(exchange(server->port(), c.pieces, c.gap), c.status) << c.what;
        EXPECT_LT(Clock::now() - start, milliseconds(2500)) << c.what;
    }
    EXPECT_EQ(get("/api/menu")["selected"], 1) << "the one request within the limits";
}

TEST_F(ConsoleLimits, StalledClientsHoldNoWorkerAndConnectionsBeyondTheCapAreRefused) {
    limits.headDeadline = milliseconds(5000); // the stalled ones stay for the whole test
    TearDown();
    SetUp();
    std::vector<int> stalled;
    for (int i = 0; i < 8; ++i) {
        stalled.push_back(connectTo(server->port()));
        ASSERT_EQ(::send(stalled.back(), "GET / HTTP/1.1\r\n", 16, MSG_NOSIGNAL), 16);
    }
    const Clock::time_point start = Clock::now();
    EXPECT_EQ(exchange(server->port(), {head("GET", "")}), 200);
    EXPECT_LT(Clock::now() - start, milliseconds(1000));
    while (stalled.size() < limits.maxConnections)
        stalled.push_back(connectTo(server->port()));
    httplib::Client refused("127.0.0.1", server->port());
    const httplib::Result answer = refused.Get("/api/menu", {{"X-Console-Token", server->token()}});
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 503);
    EXPECT_NE(json::parse(answer->body).value("error", "").find("connections open"), std::string::npos);
    for (int fd : stalled)
        ::close(fd);
}

TEST_F(ConsoleLimits, TheBacklogHoldsABurstWhileNothingIsAccepted) {
    server->stop(); // the socket keeps listening; nothing takes its connections
    serving.join();
    Console::ConsoleServer idle(provider,
                                Console::ConsoleConfig{"127.0.0.1", 0, device.dir(), ORVO_CONSOLE_ASSETS, ""});
    std::vector<pollfd> burst;
    for (int i = 0; i < 64; ++i)
        burst.push_back({connectTo(idle.port(), SOCK_NONBLOCK), POLLOUT, 0});
    ::poll(burst.data(), burst.size(), 0);
    std::this_thread::sleep_for(milliseconds(300));
    int established = 0;
    for (pollfd& entry : burst) {
        established += ::poll(&entry, 1, 0) == 1 && entry.revents == POLLOUT;
        ::close(entry.fd);
    }
    EXPECT_EQ(established, 64);
    serving = std::thread([this] { server->run(); }); // for TearDown
}

TEST(ConsoleListen, OnlyLoopbackAddressesUnlessRemoteAccessIsAllowed) {
    TestDevice device;
    const MenuHost::PluginLibrary library{ORVO_MENU_PLUGIN};
    const MenuHost::Provider provider{library};
    const std::pair<const char*, bool> cases[] = {{"0.0.0.0", false},  {"::", false},       {"192.0.2.1", false},
                                                  {"127.0.0.1", true}, {"127.0.0.2", true}, {"localhost", true}};
    for (const auto& c : cases) {
        try {
            Console::ConsoleServer server(provider,
                                          Console::ConsoleConfig{c.first, 0, device.dir(), ORVO_CONSOLE_ASSETS, ""});
            EXPECT_TRUE(c.second) << c.first << " was taken";
        } catch (const std::runtime_error& error) {
            EXPECT_FALSE(c.second) << c.first << ": " << error.what();
            EXPECT_NE(std::string(error.what()).find("ssh -L 8080:127.0.0.1:8080"), std::string::npos) << error.what();
        }
    }
}

TEST(ConsoleText, RawMessageIdsAreRecognised) {
    for (const char* id : {"COM_AUTO_UPDATE", "TV_SID_UPDATE_UPDATE_CHANNELS", "COM_MIX_NEW_VER"})
        EXPECT_TRUE(Console::looksLikeMessageId(id)) << id;
    for (const char* text : {"Auto Update", "T-KTM2DEUC", "UPDATE", "_COM", "COM__X", "COM_", "", "Com_Auto"})
        EXPECT_FALSE(Console::looksLikeMessageId(text)) << text;
}

} // namespace
} // namespace Orvo::Testing

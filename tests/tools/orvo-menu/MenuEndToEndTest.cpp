// orvo-menu on the emulated device with the real plug-in, whose callbacks are read through the
// host's own record: the contract check, green on every profile, vouches that it is read right.

#include "Json.h"
#include "Language.h"
#include "TextLayout.h"
#include "orvo/testing/TestUtil.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmp.h>

#include <csignal>

namespace Orvo::Testing {
namespace {

using namespace Tools::MenuHost;

constexpr const char* kModelSearch = "menu/support/softwareupdate/searchmodels";
constexpr const char* kAutoUpdate = "db/menu/support/softwareupdate/autoupdate";
constexpr const char* kCellular = "db/menu/support/softwareupdate/use_cellular_int";
const std::pair<const char*, const char*> kItemKinds[] = {
    {kBranchId, "branch"},   {"menu/support/softwareupdate/updatenow", "action"},
    {kModelSearch, "value"}, {kAutoUpdate, "toggle"},
    {kCellular, "toggle"},   {"menu/support/softwareupdate/osupgrade", "action"}};

// The real plug-in loaded into this process, which speaks `language`.
struct Plugin {
    explicit Plugin(const char* language) { selectLanguage(language); }
    std::string title(const std::string& id) const { return provider.title(id).text.value(); }
    std::string description(const std::string& id) const { return provider.description(id).text.value(); }
    std::string stateText(const std::string& id) const { return translate(provider.valueText(id).text.value()); }

    const PluginLibrary library{ORVO_MENU_PLUGIN};
    const Provider provider{library};
};

ProcessResult menu(std::vector<std::string> arguments, const std::string& input = "") {
    arguments.insert(arguments.begin(), toolPath("orvo-menu"));
    return runProcess(arguments, input);
}

int storedInt(const std::string& key) {
    const ProcessResult result = runProcess({toolPath("vconftool"), "get", key});
    return std::atoi(result.out.substr(key.size() + 10).c_str());
}

void store(const std::string& key, int value) {
    EXPECT_EQ(runProcess({toolPath("vconftool"), "set", "-t", "int", key, std::to_string(value)}).exitCode, 0);
}

class OrvoMenuOnDevice : public testing::TestWithParam<std::string> {
protected:
    TestDevice device{GetParam()};
};

TEST_P(OrvoMenuOnDevice, ShowJsonAndCheckAgreeWithTheCallbacks) {
    const ProcessResult text = menu({"--language", "de", "--width", "1000", "show"});
    const ProcessResult json = menu({"--language", "de", "show", "--json"});
    ASSERT_EQ(text.exitCode + json.exitCode, 0) << text.err << json.err;
    EXPECT_EQ(runProcess({"python3", "-m", "json.tool"}, json.out).exitCode, 0) << json.out;
    const Plugin plugin("de");
    for (const auto& item : kItemKinds) {
        const std::string title = plugin.title(item.first);
        const std::string description = plugin.description(item.first);
        EXPECT_NE(json.out.find("{\"id\":" + jsonString(item.first) + ",\"kind\":\"" + item.second +
                                "\",\"title\":" + jsonString(title) + ",\"description\":" + jsonString(description)),
                  std::string::npos)
            << item.first;
        const std::string plain = richTextToPlain(description);
        EXPECT_NE(text.out.find(title), std::string::npos) << item.first;
        EXPECT_NE(text.out.find(" " + plain.substr(0, plain.find('\n')) + "\n"), std::string::npos) << plain;
    }
    const std::string model = plugin.provider.valueString(kModelSearch).text.value();
    EXPECT_NE(text.out.find("\n  " + joinWithLeader(plugin.title(kModelSearch), model, 998) + "\n"), std::string::npos);
    EXPECT_NE(json.out.find("\"value\":" + jsonString(model)), std::string::npos);
    for (const char* toggle : {kAutoUpdate, kCellular}) {
        const std::string setting = std::to_string(storedInt(toggle));
        const std::string state = plugin.stateText(toggle);
        EXPECT_NE(text.out.find("\n  " + joinWithLeader(plugin.title(toggle), state, 998) + "\n"), std::string::npos);
        EXPECT_NE(text.out.find(toggle + (" = " + setting) + ","), std::string::npos) << toggle;
        const std::size_t item = json.out.find("{\"id\":" + jsonString(toggle));
        EXPECT_NE(json.out.find("\"setting\":" + setting + ",", item), std::string::npos) << toggle;
        EXPECT_NE(json.out.find("\"stateText\":" + jsonString(state), item), std::string::npos) << toggle;
    }
    for (const std::string& key : providerPropertyKeys()) {
        const std::string value = plugin.provider.property(key).text.value();
        EXPECT_NE(text.out.find("\n" + joinWithLeader(key, value, 1000) + "\n"), std::string::npos) << key;
        EXPECT_NE(json.out.find(jsonString(key) + ":" + jsonString(value)), std::string::npos) << key;
    }
    const int autoUpdate = storedInt(kAutoUpdate);
    const ProcessResult check = menu({"check"});
    EXPECT_TRUE(check.exitCode == 0 && check.out.find(" 0 violated, 0 skipped\n") != std::string::npos) << check.out;
    EXPECT_EQ(storedInt(kAutoUpdate), autoUpdate) << "the check puts settings back";
}

INSTANTIATE_TEST_SUITE_P(Profiles, OrvoMenuOnDevice, testing::Values("tv", "pane", "monitor"));

class OrvoMenuOnTv : public testing::Test {
protected:
    TestDevice device{"tv"};
};

TEST_F(OrvoMenuOnTv, ScriptRunsInOneProcessWhenItParsesAndSpendsTheInfoKeyOnce) {
    const int flipped = 1 - storedInt(kAutoUpdate);
    const std::string set = "set " + std::string(kAutoUpdate) + " " + std::to_string(flipped) + "\n";
    ProcessResult result = menu({"script"}, set + "jump\n");
    EXPECT_EQ(result.err, "orvo-menu: line 2: unknown action 'jump'\n");
    EXPECT_EQ(storedInt(kAutoUpdate), 1 - flipped) << "nothing runs before the whole script parses";

    const std::string describe = std::string("description ") + kBranchId + "\n";
    result = menu({"--language", "en", "script"}, set + "key XF86Info\n" + describe + "# again\n" + describe);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(storedInt(kAutoUpdate), flipped);
    const Plugin plugin("en");
    const std::string normal = richTextToPlain(plugin.description(kBranchId));
    plugin.provider.keyEvent(kInfoKey);
    const std::string detailed = plugin.description(kBranchId);
    ASSERT_EQ(detailed.rfind("SW Version: ", 0), 0u) << detailed;
    EXPECT_EQ(result.out, detailed + "\n" + normal + "\n");
}

// The interactive menu on a pseudo-terminal; the test holds the slave end to read its modes after.
class MenuSession {
public:
    MenuSession() {
        struct winsize size = {40, 100, 0, 0};
        if (openpty(&m_master, &m_slave, nullptr, nullptr, &size) != 0) throw std::runtime_error("openpty failed");
        tcgetattr(m_slave, &m_initial);
        const std::string tool = toolPath("orvo-menu");
        m_pid = fork();
        if (m_pid == 0) {
            login_tty(m_slave);
            execl(tool.c_str(), tool.c_str(), "--language", "en", static_cast<char*>(nullptr));
            _exit(127);
        }
        // Keys typed before the first screen would be flushed when the menu enters raw mode.
        readUntil([this] { return m_output.find("q quit") != std::string::npos; });
    }
    ~MenuSession() {
        if (m_pid > 0 && kill(m_pid, SIGKILL) == 0) waitpid(m_pid, nullptr, 0);
        close(m_master);
        close(m_slave);
    }

    // Sends the keys; the exit status (128 + signal when killed) once the menu has ended.
    int finish(const std::string& keys) {
        EXPECT_EQ(write(m_master, keys.data(), keys.size()), ssize_t(keys.size()));
        int status = 0;
        if (!readUntil([&] { return waitpid(m_pid, &status, WNOHANG) == m_pid; })) return -1;
        m_pid = -1;
        EXPECT_TRUE(readUntil([this] { return m_output.find("\033[?25h\033[?1049l") != std::string::npos; }, 10))
            << "cursor and main screen back";
        struct termios now {};
        tcgetattr(m_slave, &now);
        EXPECT_TRUE(now.c_lflag == m_initial.c_lflag && now.c_iflag == m_initial.c_iflag) << "terminal modes";
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    // Every screen the menu drew: the first, then one per key it handled.
    std::vector<std::string> screens() const {
        std::vector<std::string> screens;
        for (std::size_t at = m_output.find("\033[H"), next; at != std::string::npos; at = next) {
            next = m_output.find("\033[H", at + 1);
            screens.push_back(m_output.substr(at, next - at));
        }
        return screens;
    }

private:
    // Collects output until `done`, for at most `polls` times 100 ms (30 s: only a hang takes that).
    template <typename Done>
    bool readUntil(Done done, int polls = 300) {
        char buffer[4096];
        for (struct pollfd ready = {m_master, POLLIN, 0}; !done(); --polls) {
            if (polls == 0) return false;
            const ssize_t count = poll(&ready, 1, 100) > 0 ? read(m_master, buffer, sizeof buffer) : 0;
            if (count > 0) m_output.append(buffer, static_cast<std::size_t>(count));
        }
        return true;
    }

    int m_master = -1, m_slave = -1;
    pid_t m_pid = -1;
    struct termios m_initial {};
    std::string m_output;
};

std::string menuLine(const std::string& mark, const std::string& title, const std::string& state) {
    return joinWithLeader(mark + title, "[" + state + "] ", 100, ' ');
}

TEST_F(OrvoMenuOnTv, InteractiveMenuMovesTogglesShowsInfoRefreshesAndQuits) {
    store(kCellular, 0);
    const Plugin plugin("en");
    const std::string cellularOff = plugin.stateText(kCellular);
    const int autoUpdate = storedInt(kAutoUpdate);
    MenuSession session;
    store(kCellular, 1);
    EXPECT_EQ(session.finish("j\033[B\rirq"), 0); // down twice, toggle, Info, refresh, quit
    EXPECT_EQ(storedInt(kAutoUpdate), 1 - autoUpdate);

    const std::vector<std::string> screens = session.screens();
    ASSERT_EQ(screens.size(), 6u);
    const std::string cellularTitle = plugin.title(kCellular);
    EXPECT_NE(screens[0].find(menuLine("   ", cellularTitle, cellularOff)), std::string::npos) << screens[0];
    EXPECT_NE(screens[3].find(menuLine(" > ", plugin.title(kAutoUpdate), plugin.stateText(kAutoUpdate))),
              std::string::npos)
        << screens[3];
    const std::string help = plugin.description(kBranchId).substr(0, 20);
    EXPECT_NE(screens[0].find(help), std::string::npos);
    EXPECT_NE(screens[4].find("SW Version: "), std::string::npos);
    EXPECT_EQ(screens[4].find(help), std::string::npos);
    EXPECT_NE(screens[5].find(help), std::string::npos) << "the detailed version is shown once";
    EXPECT_NE(screens[5].find(menuLine("   ", cellularTitle, plugin.stateText(kCellular))), std::string::npos)
        << "a setting changed with vconftool shows at once";
}

TEST_F(OrvoMenuOnTv, LanguageKeySwitchesInOneProcessAndCtrlCQuits) {
    const std::string frenchTitle = Plugin("fr").title(kAutoUpdate); // after en comes fr
    MenuSession session;
    EXPECT_EQ(session.finish("l\003"), 128 + SIGINT);
    const std::vector<std::string> screens = session.screens();
    ASSERT_EQ(screens.size(), 2u);
    EXPECT_EQ(screens[0].find(frenchTitle), std::string::npos);
    EXPECT_NE(screens[1].find(frenchTitle), std::string::npos);
    EXPECT_NE(screens[1].find("language fr"), std::string::npos);
}

} // namespace
} // namespace Orvo::Testing

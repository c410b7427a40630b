// The interactive menu driven through a pseudo-terminal, as a user at a terminal would.

#include "RawPlugin.h"
#include "orvo/testing/TestUtil.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <string>

namespace Orvo {
namespace Testing {
namespace {

constexpr const char* kAutoUpdate = "db/menu/support/softwareupdate/autoupdate";
constexpr const char* kCellular = "db/menu/support/softwareupdate/use_cellular_int";
constexpr const char* kBranch = "menu/support/softwareupdate";
// Guards against a hang only; a healthy menu answers long before.
constexpr std::chrono::seconds kPatience{30};

// orvo-menu on a terminal of its own. The test keeps the terminal's other end open, so that its
// settings can be read after the menu has gone.
class MenuSession {
public:
    MenuSession() {
        struct winsize size {};
        size.ws_col = 100;
        size.ws_row = 40;
        if (openpty(&m_master, &m_slave, nullptr, nullptr, &size) != 0) throw std::runtime_error("openpty failed");
        tcgetattr(m_slave, &m_initial);
        const std::string tool = toolPath("orvo-menu");
        m_pid = fork();
        if (m_pid == 0) {
            setsid();
            ioctl(m_slave, TIOCSCTTY, 0);
            dup2(m_slave, 0);
            dup2(m_slave, 1);
            dup2(m_slave, 2);
            execl(tool.c_str(), tool.c_str(), "--language", "en", static_cast<char*>(nullptr));
            _exit(127);
        }
    }

    ~MenuSession() {
        if (m_pid > 0 && m_status < 0) {
            kill(m_pid, SIGKILL);
            waitpid(m_pid, nullptr, 0);
        }
        close(m_master);
        close(m_slave);
    }

    void send(const std::string& keys) { ASSERT_EQ(write(m_master, keys.data(), keys.size()), ssize_t(keys.size())); }

    // The latest complete screen: from a cursor-home to the clear-to-end that closes the frame.
    std::string screen() const {
        const std::size_t end = m_output.rfind("\033[J");
        if (end == std::string::npos) return "";
        const std::size_t home = m_output.rfind("\033[H", end);
        return home == std::string::npos ? "" : m_output.substr(home, end - home);
    }

    // Reads until the latest screen satisfies `done`; false when the menu stops answering.
    bool waitFor(const std::function<bool(const std::string&)>& done) {
        const auto deadline = std::chrono::steady_clock::now() + kPatience;
        while (!done(screen())) {
            if (std::chrono::steady_clock::now() > deadline || !readSome(200)) return false;
        }
        return true;
    }

    bool shows(const std::string& text) {
        return waitFor([&](const std::string& screen) { return screen.find(text) != std::string::npos; });
    }

    // Waits for the menu to end (killing it if it does not) and collects what it wrote last;
    // returns its exit status (128 + signal when killed).
    int finish() {
        const auto deadline = std::chrono::steady_clock::now() + kPatience;
        int status = 0;
        while (waitpid(m_pid, &status, WNOHANG) == 0) {
            if (std::chrono::steady_clock::now() > deadline) {
                kill(m_pid, SIGKILL);
                waitpid(m_pid, &status, 0);
                break;
            }
            readSome(200);
        }
        while (readSome(0)) {
        }
        m_status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        return m_status;
    }

    pid_t pid() const { return m_pid; }
    const std::string& output() const { return m_output; }

    bool terminalRestored() const {
        struct termios now {};
        tcgetattr(m_slave, &now);
        return now.c_lflag == m_initial.c_lflag && now.c_iflag == m_initial.c_iflag;
    }

private:
    // Appends what the menu wrote within `milliseconds`; false on end of output, or when nothing
    // came while not waiting.
    bool readSome(int milliseconds) {
        struct pollfd ready = {m_master, POLLIN, 0};
        if (poll(&ready, 1, milliseconds) < 0) return false;
        if (!(ready.revents & (POLLIN | POLLHUP))) return milliseconds > 0;
        char buffer[4096];
        const ssize_t count = read(m_master, buffer, sizeof buffer);
        if (count <= 0) return false;
        m_output.append(buffer, static_cast<std::size_t>(count));
        return true;
    }

    int m_master = -1;
    int m_slave = -1;
    pid_t m_pid = -1;
    int m_status = -1;
    struct termios m_initial {};
    std::string m_output;
};

bool lineHas(const std::string& screen, const std::string& first, const std::string& second) {
    for (std::size_t start = 0; start < screen.size();) {
        std::size_t end = screen.find('\n', start);
        if (end == std::string::npos) end = screen.size();
        const std::string line = screen.substr(start, end - start);
        if (line.find(first) != std::string::npos && line.find(second) != std::string::npos) return true;
        start = end + 1;
    }
    return false;
}

int storedInt(const std::string& key) {
    const ProcessResult result = runProcess({toolPath("vconftool"), "get", key});
    return std::atoi(result.out.substr(key.size() + 10).c_str());
}

class OrvoMenuInteractive : public testing::Test {
protected:
    TestDevice device{"tv"};
    void SetUp() override { useLanguage("en"); }
};

TEST_F(OrvoMenuInteractive, TogglesRefreshesShowsInfoAndQuitsCleanly) {
    const RawPlugin plugin(ORVO_MENU_PLUGIN);
    const std::string autoTitle = plugin.title(kAutoUpdate);
    const std::string cellularTitle = plugin.title(kCellular);
    const std::string normalHelp = plugin.description(kBranch).substr(0, 20);
    const int before = plugin.intValue(kAutoUpdate);
    MenuSession session;
    ASSERT_TRUE(session.shows(autoTitle)) << session.output();
    EXPECT_TRUE(lineHas(session.screen(), autoTitle, "[" + plugin.stateText(kAutoUpdate) + "]"));
    EXPECT_NE(session.screen().find(normalHelp), std::string::npos);

    session.send("j");
    session.send("\033[B");  // down twice: the automatic-update toggle
    ASSERT_TRUE(session.shows("> " + autoTitle)) << session.screen();
    session.send("\r");
    ASSERT_TRUE(session.waitFor([&](const std::string&) { return storedInt(kAutoUpdate) == 1 - before; }));
    EXPECT_TRUE(session.shows(autoTitle + ": " + plugin.stateText(kAutoUpdate))) << session.screen();

    ASSERT_EQ(runProcess({toolPath("vconftool"), "set", "-t", "int", kCellular, "1"}).exitCode, 0);
    session.send("r");
    ASSERT_TRUE(session.shows("Refreshed"));
    EXPECT_TRUE(lineHas(session.screen(), cellularTitle, "[" + plugin.stateText(kCellular) + "]"))
        << session.screen();

    session.send("i");
    ASSERT_TRUE(session.shows("SW Version: ")) << session.screen();
    EXPECT_EQ(session.screen().find(normalHelp), std::string::npos);
    session.send("r");
    ASSERT_TRUE(session.shows(normalHelp)) << session.screen();
    EXPECT_EQ(session.screen().find("SW Version: "), std::string::npos);

    session.send("q");
    EXPECT_EQ(session.finish(), 0);
    EXPECT_TRUE(session.terminalRestored());
    EXPECT_NE(session.output().rfind("\033[?1049l"), std::string::npos) << "left the alternate screen";
}

TEST_F(OrvoMenuInteractive, LanguageKeySwitchesTheMenuLanguage) {
    // The catalogue's languages in order (de, en, fr): the next after English is French.
    useLanguage("fr");
    const std::string frenchTitle = RawPlugin(ORVO_MENU_PLUGIN).title(kAutoUpdate);
    useLanguage("en");
    MenuSession session;
    ASSERT_TRUE(session.shows("language en"));
    session.send("l");
    ASSERT_TRUE(session.shows("language fr")) << session.screen();
    EXPECT_NE(session.screen().find(frenchTitle), std::string::npos) << session.screen();
    session.send("\003");
    EXPECT_EQ(session.finish(), 128 + SIGINT);
    EXPECT_TRUE(session.terminalRestored());
}

TEST_F(OrvoMenuInteractive, TerminationSignalRestoresTheTerminal) {
    MenuSession session;
    ASSERT_TRUE(session.shows("q quit"));
    kill(session.pid(), SIGTERM);
    EXPECT_EQ(session.finish(), 128 + SIGTERM);
    EXPECT_TRUE(session.terminalRestored());
    EXPECT_NE(session.output().rfind("\033[?25h"), std::string::npos) << "cursor shown again";
}

} // namespace
} // namespace Testing
} // namespace Orvo

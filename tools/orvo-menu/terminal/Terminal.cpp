#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <stdexcept>

namespace Orvo {
namespace Tools {
namespace MenuHost {

namespace {

volatile sig_atomic_t g_stopSignal = 0;
volatile sig_atomic_t g_resized = 0;

constexpr int kStopSignals[] = {SIGINT, SIGTERM, SIGHUP};
struct sigaction g_savedStop[3];
struct sigaction g_savedResize;

void onStopSignal(int signal) { g_stopSignal = signal; }
void onResize(int) { g_resized = 1; }

// No SA_RESTART: a signal interrupts the blocking read so that the loop can end.
void install(int signal, void (*handler)(int), struct sigaction* saved) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, saved);
}

constexpr const char* kEnterScreen = "\033[?1049h\033[?25l";
constexpr const char* kLeaveScreen = "\033[0m\033[?25h\033[?1049l";

} // namespace

Key decodeKey(const std::string& bytes, std::size_t& consumed) {
    Key key;
    consumed = std::min<std::size_t>(bytes.size(), 1);
    if (bytes.empty()) return key;
    const char first = bytes[0];
    if (first == '\033') {
        const bool sequence = bytes.size() >= 3 && (bytes[1] == '[' || bytes[1] == 'O');
        if (!sequence) {
            key.type = KeyType::Escape;
            return key;
        }
        // A control sequence ends with its first byte in '@'..'~'.
        std::size_t end = 2;
        while (end + 1 < bytes.size() && (bytes[end] < '@' || bytes[end] > '~'))
            ++end;
        consumed = end + 1;
        if (end == 2 && bytes[2] == 'A') key.type = KeyType::Up;
        if (end == 2 && bytes[2] == 'B') key.type = KeyType::Down;
        return key;
    }
    if (first == '\r' || first == '\n')
        key.type = KeyType::Enter;
    else if (first == '\003')
        key.type = KeyType::Interrupt;
    else {
        key.type = KeyType::Character;
        key.character = first;
    }
    return key;
}

Terminal::Terminal(int inputFd, int outputFd) : input_(inputFd), output_(outputFd) {
    if (tcgetattr(input_, &saved_) != 0 || !isatty(output_)) throw std::runtime_error("the menu needs a terminal");
    struct termios raw = saved_;
    raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG | IEXTEN);
    raw.c_iflag &= ~static_cast<tcflag_t>(IXON | ICRNL);
    raw.c_cc[VMIN] = 1;
    raw.c_cc[VTIME] = 0;
    g_stopSignal = 0;
    g_resized = 0;
    for (std::size_t i = 0; i < 3; ++i)
        install(kStopSignals[i], onStopSignal, &g_savedStop[i]);
    install(SIGWINCH, onResize, &g_savedResize);
    tcsetattr(input_, TCSAFLUSH, &raw);
    write(kEnterScreen);
}

Terminal::~Terminal() {
    write(kLeaveScreen);
    tcsetattr(input_, TCSAFLUSH, &saved_);
    for (std::size_t i = 0; i < 3; ++i)
        sigaction(kStopSignals[i], &g_savedStop[i], nullptr);
    sigaction(SIGWINCH, &g_savedResize, nullptr);
}

bool Terminal::readKey(Key& key) {
    char buffer[64];
    while (g_stopSignal == 0) {
        if (!pending_.empty()) {
            std::size_t consumed = 0;
            key = decodeKey(pending_, consumed);
            pending_.erase(0, consumed);
            return true;
        }
        const ssize_t count = read(input_, buffer, sizeof buffer);
        if (count > 0) {
            pending_.assign(buffer, static_cast<std::size_t>(count));
            continue;
        }
        if (count == 0) {
            g_stopSignal = SIGHUP; // the terminal went away
        } else if (errno != EINTR) {
            throw std::runtime_error("cannot read from the terminal");
        } else if (g_resized) {
            key = Key{};
            return true;
        }
    }
    return false;
}

int Terminal::stopSignal() const { return g_stopSignal; }

bool Terminal::takeResize() {
    const bool resized = g_resized != 0;
    g_resized = 0;
    return resized;
}

std::size_t Terminal::columns() const {
    struct winsize size {};
    return ioctl(output_, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

std::size_t Terminal::rows() const {
    struct winsize size {};
    return ioctl(output_, TIOCGWINSZ, &size) == 0 && size.ws_row > 0 ? size.ws_row : 24;
}

void Terminal::write(const std::string& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t count = ::write(output_, text.data() + done, text.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return;
        done += static_cast<std::size_t>(count);
    }
}

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo

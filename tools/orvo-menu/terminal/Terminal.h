#pragma once
// A terminal in raw mode for the interactive menu. The constructor switches to the alternate
// screen with keys unbuffered and unechoed; the destructor puts everything back, so the terminal
// is restored on every way out (quit, Ctrl-C, SIGINT/SIGTERM/SIGHUP, exceptions).

#include <termios.h>

#include <cstddef>
#include <string>

namespace Orvo {
namespace Tools {
namespace MenuHost {

enum class KeyType { Character, Up, Down, Enter, Escape, Interrupt, Other };

struct Key {
    KeyType type = KeyType::Other;
    char character = 0; // KeyType::Character
};

// Decodes the first key in `bytes` (one read may deliver several keys) and sets `consumed` to
// the number of bytes it took; an empty input gives KeyType::Other and consumes nothing.
Key decodeKey(const std::string& bytes, std::size_t& consumed);

class Terminal {
public:
    Terminal(int inputFd, int outputFd); // throws std::runtime_error when not a terminal
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    // Blocks for the next key; returns false when a signal asked to stop.
    bool readKey(Key& key);
    // The signal that asked to stop (0 when none).
    int stopSignal() const;
    // True once after the window changed size.
    bool takeResize();

    std::size_t columns() const;
    std::size_t rows() const;
    void write(const std::string& text);

private:
    int input_;
    int output_;
    struct termios saved_ {};
    std::string pending_; // bytes read but not yet decoded
};

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo

#pragma once
// The device console: a local web server that shows the menu as the television does, the
// device's facts and its log. Every API request must carry the console's random token (in the
// URL's fragment, which the page keeps and sends as X-Console-Token; no cookie, which the
// browser would also hand to every other server of the machine), and a request whose Host or
// Origin is not the console's own is refused, so that neither another site in the browser nor
// a rebound DNS name can drive it. It listens on a loopback address only, unless told otherwise.

#include "FrontLimits.h"
#include "Provider.h"

#include <iosfwd>
#include <memory>
#include <string>

namespace Orvo {
namespace Tools {
namespace Console {

struct ConsoleConfig {
    std::string host = "127.0.0.1"; // the address to listen on
    int port = 0;                   // 0: any free port
    std::string deviceDir;          // the device whose facts and log the console shows
    std::string assetsDir;          // index.html, console.css, console.js
    std::string token;              // empty: a new random token
    bool allowRemote = false;       // listen on an address other machines can reach
    FrontLimits limits{};
};

// <directory of the running executable>/../share/orvo-menu/console
std::string defaultAssetsDirectory();

class ConsoleServer {
public:
    // Loads the assets and binds the port; throws std::runtime_error with a one-line reason,
    // also for an address that is not a loopback one unless remote access is allowed.
    ConsoleServer(const MenuHost::Provider& provider, const ConsoleConfig& config);
    ~ConsoleServer();
    ConsoleServer(const ConsoleServer&) = delete;
    ConsoleServer& operator=(const ConsoleServer&) = delete;

    int port() const;
    const std::string& token() const;
    // http://HOST:PORT/#token=TOKEN
    std::string url() const;

    // Serves until stop(), from any thread (or a signal handler's thread).
    void run();
    void stop();

private:
    struct State;
    std::unique_ptr<State> state_;
};

// Serves until SIGINT or SIGTERM after printing the URL on `out`; returns the exit status.
int serveUntilInterrupted(const MenuHost::Provider& provider, const ConsoleConfig& config, std::ostream& out);

} // namespace Console
} // namespace Tools
} // namespace Orvo

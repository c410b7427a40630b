#pragma once
// The console's front: the listening socket and every connection, in front of cpp-httplib's
// routing. The library on its own reads a request on one of its few threads for as long as the
// client keeps sending (a byte every few seconds is enough), reads a chunked body whole before
// its length limit applies, and listens with a backlog of 5. Here one thread reads every
// connection without blocking, and a request reaches the library only once it is whole and
// within every limit:
// - the request line and headers within a deadline and a size, the whole request within a
//   second deadline (408, 431); a kept-alive connection that stays idle is closed;
// - a body longer than the limit is refused before it is read, by its Content-Length or as
//   soon as its chunks exceed it (413); other transfer encodings are refused (501);
// - more than one Host or Origin header, or a Content-Length beside chunks, is refused (400);
// - connections beyond the cap are answered 503 at once, and the backlog holds a burst.
// The library then parses the whole request from memory on a worker thread, runs the routes
// and writes the answer within a deadline; slow clients therefore hold no worker.

#include "FrontLimits.h"

#include <httplib.h>

#include <memory>
#include <string>

namespace Orvo {
namespace Tools {
namespace Console {

// httplib::Server whose request processing the front drives.
class Routes : public httplib::Server {
public:
    using httplib::Server::process_request;
};

// True when `host` (a name or an address) resolves to a loopback address only.
bool isLoopback(const std::string& host);

class HttpFront {
public:
    // Binds and listens; throws std::runtime_error with a one-line reason.
    HttpFront(Routes& routes, const std::string& host, int port, const FrontLimits& limits);
    ~HttpFront();
    HttpFront(const HttpFront&) = delete;
    HttpFront& operator=(const HttpFront&) = delete;

    int port() const;
    // Serves until stop(), which may come from any thread, even before run().
    void run();
    void stop();

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace Console
} // namespace Tools
} // namespace Orvo

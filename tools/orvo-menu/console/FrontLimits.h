#pragma once
// The limits every request to the console is held to (HttpFront.h says how).

#include <chrono>
#include <cstddef>

namespace Orvo {
namespace Tools {
namespace Console {

struct FrontLimits {
    std::size_t maxBodyLength = 64 * 1024;
    std::size_t maxHeadLength = 16 * 1024; // the request line and headers
    std::chrono::milliseconds headDeadline{5000};
    std::chrono::milliseconds requestDeadline{10000}; // the whole request, body included
    std::chrono::milliseconds idleTimeout{5000};      // between the requests of a connection
    std::chrono::milliseconds writeDeadline{5000};    // an answer, to a client that reads it slowly
    std::size_t maxConnections = 256;
    int backlog = 1024; // the kernel caps it at net.core.somaxconn
    std::size_t workers = 4;
};

} // namespace Console
} // namespace Tools
} // namespace Orvo

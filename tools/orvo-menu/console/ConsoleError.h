#pragma once
// A request the console refuses: its HTTP status and a one-line reason for the client.

#include "JsonString.h"

#include <stdexcept>
#include <string>

namespace Orvo {
namespace Tools {
namespace Console {

class RequestError : public std::runtime_error {
public:
    RequestError(int status, const std::string& reason) : std::runtime_error(reason), status_(status) {}
    int status() const { return status_; }

private:
    int status_;
};

// A text from the request as a reason quotes it: escaped on one line, a long one cut.
inline std::string quoted(const std::string& text) {
    constexpr std::size_t kShown = 60;
    return jsonString(text.size() > kShown ? text.substr(0, kShown) + "..." : text);
}

// 400 Bad Request: the request is understood but its content is not acceptable.
inline RequestError badRequest(const std::string& reason) { return RequestError(400, reason); }

} // namespace Console
} // namespace Tools
} // namespace Orvo

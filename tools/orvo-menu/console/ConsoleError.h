#pragma once
// A request the console refuses: its HTTP status and a one-line reason for the client, and the
// checks of a request's JSON members that raise it.

#include "JsonString.h"

#include <nlohmann/json.hpp>

#include <initializer_list>
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

// The longest text a member may carry (the largest setting value).
constexpr std::size_t kMaxValueLength = 4096;

// Checks that `object` is an object whose members are all in `allowed` and that every name of
// `required` is there; throws RequestError naming the first one that is not.
void checkMembers(const nlohmann::json& object, std::initializer_list<const char*> required,
                  std::initializer_list<const char*> allowed);

// A string member of at most maxLength bytes without a NUL (the device's files and the
// platform's string calls end a text there).
const std::string& stringMember(const nlohmann::json& object, const char* name,
                                std::size_t maxLength = kMaxValueLength);

bool boolMember(const nlohmann::json& object, const char* name);

} // namespace Console
} // namespace Tools
} // namespace Orvo

#include "ConsoleError.h"

#include <algorithm>

namespace Orvo {
namespace Tools {
namespace Console {

using nlohmann::json;

void checkMembers(const json& object, std::initializer_list<const char*> required,
                  std::initializer_list<const char*> allowed) {
    if (!object.is_object()) throw badRequest("the request body must be a JSON object");
    for (const auto& member : object.items()) {
        if (std::none_of(allowed.begin(), allowed.end(), [&member](const char* name) { return member.key() == name; }))
            throw badRequest("unknown key " + quoted(member.key()));
    }
    for (const char* name : required) {
        if (!object.contains(name)) throw badRequest(std::string("missing key \"") + name + "\"");
    }
}

const std::string& stringMember(const json& object, const char* name, std::size_t maxLength) {
    const json& member = object.at(name);
    if (!member.is_string()) throw badRequest(std::string("\"") + name + "\" must be a string");
    const std::string& text = member.get_ref<const std::string&>();
    if (text.size() > maxLength)
        throw badRequest(std::string("\"") + name + "\" is longer than " + std::to_string(maxLength) + " bytes");
    if (text.find('\0') != std::string::npos)
        throw badRequest(std::string("\"") + name + "\" holds a NUL character, which the device cannot keep");
    return text;
}

bool boolMember(const json& object, const char* name) {
    const json& member = object.at(name);
    if (!member.is_boolean()) throw badRequest(std::string("\"") + name + "\" must be true or false");
    return member.get<bool>();
}

} // namespace Console
} // namespace Tools
} // namespace Orvo

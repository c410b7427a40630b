#include "Script.h"

#include "Branch.h"
#include "Language.h"
#include "TextView.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <map>
#include <ostream>
#include <sstream>

namespace Orvo {
namespace Tools {
namespace MenuHost {

namespace {

struct Arity {
    std::size_t minimum;
    std::size_t maximum;
};

const std::map<std::string, Arity>& verbs() {
    static const std::map<std::string, Arity> table = {
        {"set", {2, 2}},         {"get", {1, 1}},   {"key", {1, 1}},  {"title", {1, 1}},
        {"description", {1, 1}}, {"value", {1, 1}}, {"show", {0, 1}}, {"language", {1, 1}},
    };
    return table;
}

bool parseInt(const std::string& text, int& value) {
    if (text.empty()) return false;
    errno = 0;
    char* end = nullptr;
    const long parsed = std::strtol(text.c_str(), &end, 10);
    if (errno != 0 || *end != '\0' || parsed < INT_MIN || parsed > INT_MAX) return false;
    value = static_cast<int>(parsed);
    return true;
}

// The printed result of one action, or a ScriptError with the reason it failed.
std::string perform(const Provider& provider, const ScriptAction& action, std::size_t width) {
    const std::string& verb = action.verb;
    const std::string argument = action.arguments.empty() ? std::string() : action.arguments[0];
    const auto text = [](const StringCall& call, const char* callback) {
        if (!call.text) throw ScriptError(std::string(callback) + " gave nothing: " + callText(call));
        return *call.text;
    };
    if (verb == "set") {
        int value = 0;
        parseInt(action.arguments[1], value);
        const int result = provider.setIntValue(argument, value);
        if (result != 0) throw ScriptError("setIntValue failed (result " + std::to_string(result) + ")");
        return "";
    }
    if (verb == "get") {
        const IntCall call = provider.intValue(argument);
        if (!call.value) throw ScriptError("getIntValue failed (result " + std::to_string(call.code) + ")");
        return std::to_string(*call.value) + '\n';
    }
    if (verb == "key") {
        if (!provider.keyEvent(argument)) throw ScriptError("onKeyEvent is not offered");
        return "";
    }
    if (verb == "title") return text(provider.title(argument), "getTitle") + '\n';
    if (verb == "description") return richTextToPlain(text(provider.description(argument), "getDescription")) + '\n';
    if (verb == "value") {
        const ItemView item = readItem(provider, argument);
        const std::string shown = shownValue(item);
        if (shown.empty() || (item.kind == ItemKind::Toggle && item.stateText.empty())) {
            throw ScriptError("no value for " + argument);
        }
        return shown + '\n';
    }
    if (verb == "show") {
        return action.arguments.empty() ? renderBranch(readBranch(provider), width)
                                        : renderItem(readItem(provider, argument), width);
    }
    selectLanguage(argument); // "language"
    return "";
}

} // namespace

std::vector<ScriptAction> parseScript(const std::vector<std::string>& lines) {
    std::vector<ScriptAction> actions;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::istringstream words(lines[i]);
        ScriptAction action;
        action.line = i + 1;
        if (!(words >> action.verb) || action.verb[0] == '#') continue;
        for (std::string word; words >> word;)
            action.arguments.push_back(word);
        const std::string where = "line " + std::to_string(action.line) + ": ";
        const auto verb = verbs().find(action.verb);
        if (verb == verbs().end()) throw ScriptError(where + "unknown action '" + action.verb + "'");
        const std::size_t count = action.arguments.size();
        if (count < verb->second.minimum || count > verb->second.maximum) {
            throw ScriptError(where + "wrong number of arguments for '" + action.verb + "'");
        }
        if (action.verb == "show" && count == 1 && !isMenuItem(action.arguments[0]))
            throw ScriptError(where + unknownItemReason(action.arguments[0]));
        int value = 0;
        if (action.verb == "set" && !parseInt(action.arguments[1], value)) {
            throw ScriptError(where + "'" + action.arguments[1] + "' is not an integer");
        }
        actions.push_back(action);
    }
    return actions;
}

int runScript(const Provider& provider, const std::vector<ScriptAction>& actions, std::ostream& out,
              std::ostream& errors, std::size_t width) {
    int status = 0;
    for (const ScriptAction& action : actions) {
        try {
            out << perform(provider, action, width) << std::flush;
        } catch (const ScriptError& error) {
            errors << "orvo-menu: line " << action.line << " (" << action.verb << "): " << error.what() << '\n';
            status = 1;
        }
    }
    return status;
}

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo

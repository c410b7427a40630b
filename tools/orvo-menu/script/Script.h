#pragma once
// Scripted host actions, run one after another in one process (so that state the plug-in keeps,
// such as the armed Info key, carries from one action to the next). One action per line:
//
//   set ID VALUE      setIntValue(ID, VALUE)
//   get ID            getIntValue(ID), prints the value
//   key NAME          onKeyEvent(NAME)
//   title ID          getTitle(ID)
//   description ID    getDescription(ID), "<br>" shown as a line break
//   value ID          a toggle's translated state, or a value item's text
//   show [ID]         the whole branch, or one item, as `orvo-menu show` prints it
//   language LANG     switches the language
//
// Blank lines and lines starting with '#' are ignored.

#include "Provider.h"

#include <cstddef>
#include <iosfwd>
#include <stdexcept>
#include <string>
#include <vector>

namespace Orvo {
namespace Tools {
namespace MenuHost {

class ScriptError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct ScriptAction {
    std::size_t line = 0; // 1-based position in the script
    std::string verb;
    std::vector<std::string> arguments;
};

// Parses the whole script before anything runs; throws ScriptError naming the first bad line.
std::vector<ScriptAction> parseScript(const std::vector<std::string>& lines);

// Runs every action; a failing action is reported on `errors` and the run goes on. Returns 0
// when every action succeeded, 1 otherwise.
int runScript(const Provider& provider, const std::vector<ScriptAction>& actions, std::ostream& out,
              std::ostream& errors, std::size_t width);

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo

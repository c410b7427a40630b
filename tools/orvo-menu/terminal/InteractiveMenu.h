#pragma once
// The settings menu on a terminal: the branch's items with a cursor, the selected item's help
// below, keys as on the television's remote.

#include "Branch.h"
#include "Terminal.h"

#include <cstddef>
#include <string>

namespace Orvo {
namespace Tools {
namespace MenuHost {

struct MenuScreen {
    BranchView view;
    std::size_t selected = 0; // index into view.items
    std::string status;
};

// The remote's keys as the menu handles them, whatever sends them (a terminal, the web console).
enum class MenuKey { Up, Down, Enter, Info, NextLanguage, Refresh };

// Applies one key as the television's menu does: Up/Down move without asking the plug-in; Enter
// on a toggle calls setIntValue; Info forwards XF86Info; Info, a language switch and Refresh
// read the branch again at once, so after Info the branch shows its detailed block once.
void applyMenuKey(const Provider& provider, MenuScreen& screen, MenuKey key);

// The whole screen as terminal output (cursor home, lines, clear to end).
std::string renderScreen(const MenuScreen& screen, std::size_t columns, std::size_t rows);

// Runs until q, Escape, Ctrl-C or a stop signal; returns the exit status (0, or 128 + signal).
int runInteractiveMenu(const Provider& provider, Terminal& terminal);

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo

#include "InteractiveMenu.h"

#include "Language.h"
#include "TextLayout.h"
#include "TextView.h"

#include <algorithm>
#include <csignal>
#include <vector>

namespace Orvo {
namespace Tools {
namespace MenuHost {

namespace {

constexpr const char* kKeyHelp = "Up/Down j/k move   Enter/Space toggle   i info   l language   r refresh   q quit";
constexpr const char* kInverse = "\033[7m";
constexpr const char* kBold = "\033[1m";
constexpr const char* kPlain = "\033[0m";

void appendPanel(std::vector<std::string>& lines, const std::string& text, std::size_t width, std::size_t room) {
    std::vector<std::string> wrapped = wrapText(richTextToPlain(text), width - 2);
    if (wrapped.size() > room) wrapped.resize(room);
    for (const std::string& line : wrapped)
        lines.push_back(" " + line);
}

// Enter on the selected item: a toggle flips its setting, the menu then shows the new state.
void activate(const Provider& provider, MenuScreen& screen) {
    const ItemView& item = screen.view.items[screen.selected];
    const std::string title = callText(item.title);
    if (item.kind != ItemKind::Toggle) {
        screen.status = title + ": nothing to change here";
        return;
    }
    const int next = item.setting.value && *item.setting.value == 1 ? 0 : 1;
    const int result = provider.setIntValue(item.id, next);
    screen.view = readBranch(provider);
    screen.status = result == 0 ? title + ": " + shownValue(screen.view.items[screen.selected])
                                : title + ": setIntValue failed (result " + std::to_string(result) + ")";
}

} // namespace

std::string renderScreen(const MenuScreen& screen, std::size_t columns, std::size_t rows) {
    const std::size_t width = std::max<std::size_t>(columns, 20);
    const std::string rule(width, '-');
    const std::size_t fixed = 2 + screen.view.items.size() + 2 + 3;
    const std::size_t room = rows > fixed ? rows - fixed : 0;
    const std::size_t branchRoom = room / 2;

    std::vector<std::string> lines;
    lines.push_back(kBold +
                    clipToWidth(joinWithLeader(" " + callText(screen.view.branch.title),
                                               "language " + screen.view.language + " ", width, ' '),
                                width) +
                    kPlain);
    appendPanel(lines, callText(screen.view.branch.description), width, branchRoom);
    lines.push_back(rule);
    for (std::size_t i = 0; i < screen.view.items.size(); ++i) {
        const ItemView& item = screen.view.items[i];
        const bool selected = i == screen.selected;
        const std::string row = (selected ? " > " : "   ") + callText(item.title);
        const std::string value =
            item.kind == ItemKind::Toggle ? "[" + shownValue(item) + "] " : shownValue(item) + " ";
        const std::string line = clipToWidth(joinWithLeader(row, value, width, ' '), width);
        lines.push_back(selected ? kInverse + line + kPlain : line);
    }
    lines.push_back(rule);
    if (screen.selected < screen.view.items.size()) {
        const std::size_t used = lines.size() + 3;
        appendPanel(lines, callText(screen.view.items[screen.selected].description), width,
                    rows > used ? rows - used : 0);
    }
    lines.push_back("");
    lines.push_back(clipToWidth(" " + screen.status, width));
    lines.push_back(clipToWidth(" " + std::string(kKeyHelp), width));

    std::string out = "\033[H";
    for (std::size_t i = 0; i < lines.size() && i < rows; ++i) {
        out += lines[i] + "\033[K";
        if (i + 1 < rows && i + 1 < lines.size()) out += "\r\n";
    }
    return out + "\033[J";
}

void applyMenuKey(const Provider& provider, MenuScreen& screen, MenuKey key) {
    const std::size_t count = screen.view.items.size();
    screen.status.clear();
    switch (key) {
    case MenuKey::Up:
        if (screen.selected > 0) --screen.selected;
        return;
    case MenuKey::Down:
        if (screen.selected + 1 < count) ++screen.selected;
        return;
    case MenuKey::Enter:
        if (screen.selected < count) activate(provider, screen);
        return;
    case MenuKey::Info:
        screen.status =
            provider.keyEvent(kInfoKey) ? "Info: detailed version shown once" : "Info: onKeyEvent not offered";
        break;
    case MenuKey::NextLanguage:
        selectLanguage(nextLanguage(catalogueLanguages(), currentLanguage()));
        screen.status = "Language: " + currentLanguage();
        break;
    case MenuKey::Refresh:
        screen.status = "Refreshed";
        break;
    }
    screen.view = readBranch(provider);
}

int runInteractiveMenu(const Provider& provider, Terminal& terminal) {
    MenuScreen screen;
    screen.view = readBranch(provider);
    while (true) {
        terminal.write(renderScreen(screen, terminal.columns(), terminal.rows()));
        Key key;
        if (!terminal.readKey(key)) return 128 + terminal.stopSignal();
        terminal.takeResize();
        const char c = key.type == KeyType::Character ? key.character : 0;
        if (key.type == KeyType::Interrupt) return 128 + SIGINT;
        if (key.type == KeyType::Escape || c == 'q') return 0;
        screen.status.clear();
        if (key.type == KeyType::Up || c == 'k') applyMenuKey(provider, screen, MenuKey::Up);
        if (key.type == KeyType::Down || c == 'j') applyMenuKey(provider, screen, MenuKey::Down);
        if (key.type == KeyType::Enter || c == ' ') applyMenuKey(provider, screen, MenuKey::Enter);
        if (c == 'i') applyMenuKey(provider, screen, MenuKey::Info);
        if (c == 'l') applyMenuKey(provider, screen, MenuKey::NextLanguage);
        if (c == 'r') applyMenuKey(provider, screen, MenuKey::Refresh);
    }
}

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo

#include "Language.h"

#include <dirent.h>
#include <libintl.h>
#include <sys/stat.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>

namespace Orvo {
namespace Tools {
namespace MenuHost {

void selectLanguage(const std::string& language) {
    if (!language.empty()) {
        setenv("LANGUAGE", language.c_str(), 1);
    } else if (currentLanguage().empty()) {
        setenv("LANGUAGE", "en", 1);
    }
    // setlocale to the locale already in force returns early, and gettext would keep answering
    // from its cache; passing through "C" makes it look messages up again.
    setlocale(LC_ALL, "C");
    setlocale(LC_ALL, "C.UTF-8");
}

std::string currentLanguage() {
    const char* language = std::getenv("LANGUAGE");
    return language ? language : "";
}

std::vector<std::string> foundCatalogueLanguages() {
    std::vector<std::string> languages;
    const char* root = bindtextdomain(kTextDomain, nullptr);
    if (DIR* directory = root ? opendir(root) : nullptr) {
        while (const dirent* entry = readdir(directory)) {
            const std::string name = entry->d_name;
            if (name.empty() || name[0] == '.') continue;
            const std::string catalogue = std::string(root) + "/" + name + "/LC_MESSAGES/" + kTextDomain + ".mo";
            struct stat status {};
            if (stat(catalogue.c_str(), &status) == 0 && S_ISREG(status.st_mode)) languages.push_back(name);
        }
        closedir(directory);
    }
    std::sort(languages.begin(), languages.end());
    return languages;
}

std::vector<std::string> catalogueLanguages() {
    const std::vector<std::string> languages = foundCatalogueLanguages();
    if (languages.empty()) return {"en", "de", "fr"};
    return languages;
}

std::string nextLanguage(const std::vector<std::string>& languages, const std::string& current) {
    if (languages.empty()) return current;
    const auto position = std::find(languages.begin(), languages.end(), current);
    if (position == languages.end() || position + 1 == languages.end()) return languages.front();
    return *(position + 1);
}

std::string translate(const std::string& messageId) { return dgettext(kTextDomain, messageId.c_str()); }

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo

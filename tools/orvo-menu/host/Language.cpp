#include "Language.h"

#include <dirent.h>
#include <libintl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <system_error>

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
        // readdir returns null both at the end and on an error; only errno tells them apart.
        errno = 0;
        while (const dirent* entry = readdir(directory)) {
            const std::string name = entry->d_name;
            const std::string catalogue = std::string(root) + "/" + name + "/LC_MESSAGES/" + kTextDomain + ".mo";
            struct stat status {};
            if (!name.empty() && name[0] != '.' && stat(catalogue.c_str(), &status) == 0 && S_ISREG(status.st_mode))
                languages.push_back(name);
            errno = 0;
        }
        const int readError = errno;
        closedir(directory);
        if (readError != 0)
            throw std::system_error(readError, std::generic_category(),
                                    std::string("cannot list the languages in ") + root);
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

#pragma once
// A message catalogue of the text domain made for one test: compiled into the device's locale
// directory under a language of its own, and selected for this process.

#include "orvo/testing/Process.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <map>
#include <sstream>
#include <string>

namespace Orvo {
namespace Testing {

// A .po string literal for text (quotes, backslashes and line feeds escaped).
inline std::string poQuoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (c == '\n') {
            quoted += "\\n";
        } else {
            quoted += c;
        }
    }
    return quoted + "\"";
}

// glibc ignores LANGUAGE in the "C" locale; setting the locale again drops gettext's cache.
inline void useLanguage(const std::string& language) {
    ASSERT_NE(nullptr, std::setlocale(LC_ALL, "C.UTF-8"));
    ASSERT_EQ(0, setenv("LANGUAGE", language.c_str(), 1));
    ASSERT_NE(nullptr, std::setlocale(LC_ALL, "C.UTF-8"));
}

// Compiles the translations into <locale dir>/<language>/LC_MESSAGES/Tizen_Orvo.mo on the
// device and makes gettext use that language.
inline void installCatalogue(TestDevice& device, const std::string& language,
                             const std::map<std::string, std::string>& translations) {
    std::ostringstream po;
    po << "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n";
    for (const auto& entry : translations) {
        po << "\nmsgid " << poQuoted(entry.first) << "\nmsgstr " << poQuoted(entry.second) << "\n";
    }
    const std::string directory = "/usr/share/orvotv/res/locale/" + language + "/LC_MESSAGES";
    device.writeFile(directory + "/Tizen_Orvo.po", po.str());
    const ProcessResult compiled = runProcess(
        {"msgfmt", "-o", device.rootfsPath(directory + "/Tizen_Orvo.mo"), device.rootfsPath(directory + "/Tizen_Orvo.po")});
    ASSERT_EQ(0, compiled.exitCode) << compiled.err;
    useLanguage(language);
}

} // namespace Testing
} // namespace Orvo

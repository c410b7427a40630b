#pragma once
// A message catalogue of the text domain made for one test, compiled into the device's locale
// directory under the language "xx", which the process then uses.

#include "orvo/testing/Process.h"
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <map>
#include <string>

namespace Orvo {
namespace Testing {

// Texts may hold line feeds but no quotes or backslashes.
inline void installCatalogue(TestDevice& device, const std::map<std::string, std::string>& translations) {
    std::string po = "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n";
    for (const auto& entry : translations) {
        std::string text = entry.second;
        for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 2)) {
            text.replace(at, 1, "\\n");
        }
        po += "msgid \"" + entry.first + "\"\nmsgstr \"" + text + "\"\n";
    }
    const std::string directory = "/usr/share/orvotv/res/locale/xx/LC_MESSAGES/";
    device.writeFile(directory + "Tizen_Orvo.po", po);
    const ProcessResult compiled = runProcess({"msgfmt", "-o", device.rootfsPath(directory + "Tizen_Orvo.mo"),
                                               device.rootfsPath(directory + "Tizen_Orvo.po")});
    ASSERT_EQ(0, compiled.exitCode) << compiled.err;
    // glibc ignores LANGUAGE in the "C" locale.
    ASSERT_EQ(0, setenv("LANGUAGE", "xx", 1));
    ASSERT_NE(nullptr, std::setlocale(LC_ALL, "C.UTF-8"));
}

} // namespace Testing
} // namespace Orvo

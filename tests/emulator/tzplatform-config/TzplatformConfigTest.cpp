// tzplatform-config against the platform's library, row by row, with the television's numbering
// given by the device.
#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <tzplatform_config.h>

#include <functional>
#include <unistd.h>

namespace {

tzplatform_variable id(int index) { return static_cast<tzplatform_variable>(index); }

std::string text(const char* value) { return value == nullptr ? "NULL" : value; }

} // namespace

TEST(TzplatformConfig, EachCallGivesThePlatformsResult) {
    Orvo::Testing::TestDevice device;
    device.setConf("tzplatform.40", "/var/run");
    device.setConf("tzplatform.40.name", "TZ_SYS_RUN");
    device.setConf("tzplatform.41", "/opt/");
    device.setConf("tzplatform.42", "9222");
    device.setConf("tzplatform.43", "root");
    device.setConf("tzplatform.44", "no-such-user-or-group");
    device.setConf("tzplatform.45.name", "TZ_SYS_NOTHING");
    const struct {
        const char* row;
        std::function<std::string()> call;
        std::string expected;
    } rows[] = {
        {"getenv", [] { return text(tzplatform_getenv(id(40))); }, "/var/run"},
        {"getenv, index without a value", [] { return text(tzplatform_getenv(id(45))); }, "NULL"},
        {"getenv, id < 0", [] { return text(tzplatform_getenv(_TZPLATFORM_VARIABLES_INVALID_)); }, "NULL"},
        {"getenv, id >= count", [] { return text(tzplatform_getenv(id(46))); }, "NULL"},
        {"getcount: one past the highest index", [] { return std::to_string(tzplatform_getcount()); }, "46"},
        {"getname", [] { return text(tzplatform_getname(id(40))); }, "TZ_SYS_RUN"},
        {"getname, index without a name", [] { return text(tzplatform_getname(id(41))); }, "NULL"},
        {"getname, id >= count", [] { return text(tzplatform_getname(id(46))); }, "NULL"},
        {"getid", [] { return std::to_string(tzplatform_getid("TZ_SYS_RUN")); }, "40"},
        {"getid, unknown name", [] { return std::to_string(tzplatform_getid("TZ_SYS_RUNS")); }, "-1"},
        {"mkstr", [] { return text(tzplatform_mkstr(id(40), "abc")); }, "/var/runabc"},
        {"mkstr, no value", [] { return text(tzplatform_mkstr(id(45), "abc")); }, "NULL"},
        {"mkpath: a '/' added", [] { return text(tzplatform_mkpath(id(40), "memory")); }, "/var/run/memory"},
        {"mkpath: a duplicate '/' dropped", [] { return text(tzplatform_mkpath(id(41), "/usr")); }, "/opt/usr"},
        {"mkpath: one '/' kept", [] { return text(tzplatform_mkpath(id(40), "/usr")); }, "/var/run/usr"},
        {"mkpath: an empty part skipped", [] { return text(tzplatform_mkpath(id(40), "")); }, "/var/run"},
        {"mkpath3", [] { return text(tzplatform_mkpath3(id(41), "a/", "b")); }, "/opt/a/b"},
        {"mkpath3: a NULL part ends the list", [] { return text(tzplatform_mkpath3(id(40), nullptr, "b")); },
         "/var/run"},
        {"mkpath4", [] { return text(tzplatform_mkpath4(id(40), "a", "", "/c/")); }, "/var/run/a/c/"},
        {"mkpath, no value", [] { return text(tzplatform_mkpath(id(45), "a")); }, "NULL"},
        {"getenv_int: atoi", [] { return std::to_string(tzplatform_getenv_int(id(42))); }, "9222"},
        {"getenv_int, no value", [] { return std::to_string(tzplatform_getenv_int(id(45))); }, "-1"},
        {"getuid", [] { return std::to_string(static_cast<long>(tzplatform_getuid(id(43)))); }, "0"},
        {"getuid, no such user", [] { return std::to_string(tzplatform_getuid(id(44)) == uid_t(-1)); }, "1"},
        {"getgid", [] { return std::to_string(static_cast<long>(tzplatform_getgid(id(43)))); }, "0"},
        {"getgid, no such group", [] { return std::to_string(tzplatform_getgid(id(44)) == gid_t(-1)); }, "1"},
        {"get_user: the process's own", [] { return std::to_string(tzplatform_get_user() == ::getuid()); }, "1"},
        {"set_user, no such user", [] { return std::to_string(tzplatform_set_user(uid_t(4000000000u))); }, "-1"},
        {"set_user", [] { return std::to_string(tzplatform_set_user(uid_t(65534))); }, "0"},
        {"get_user after set_user", [] { return std::to_string(static_cast<long>(tzplatform_get_user())); }, "65534"},
        {"reset_user", [] { return tzplatform_reset_user(), std::to_string(tzplatform_get_user() == ::getuid()); },
         "1"},
        {"set_user((uid_t)-1) resets",
         [] {
             tzplatform_set_user(65534);
             return std::to_string(tzplatform_set_user(uid_t(-1)) == 0 && tzplatform_get_user() == ::getuid());
         },
         "1"},
        {"equal text: the same pointer",
         [] { return std::to_string(tzplatform_mkpath(id(40), "memory") == tzplatform_mkstr(id(40), "/memory")); },
         "1"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.expected, row.call()) << row.row;

    // Interned strings stay valid after the device changes and after a reset; ASan reports a read
    // of released memory here if the library gave them up.
    const char* first = tzplatform_getenv(id(40));
    device.setConf("tzplatform.40", "/second/root/that/is/longer/than/any/small/string/buffer");
    tzplatform_reset();
    EXPECT_STREQ("/second/root/that/is/longer/than/any/small/string/buffer", tzplatform_getenv(id(40)));
    EXPECT_STREQ("/var/run", first);
}

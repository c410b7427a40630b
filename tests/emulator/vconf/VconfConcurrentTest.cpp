#include "orvo/testing/TestDevice.h"

#include <gtest/gtest.h>
#include <vconf.h>

#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace {

TEST(VconfConcurrentTest, EachThreadSeesWhyItsOwnLastCallFailed)
{
    Orvo::Testing::TestDevice device;
    ASSERT_EQ(0, vconf_set_str("db/t/text", "x"));
    int wrongPrefixError = 0;
    int wrongTypeError = 0;
    std::thread wrongPrefix([&] {
        int value = 0;
        vconf_get_int("nowhere/key", &value);
        wrongPrefixError = vconf_get_ext_errno();
    });
    std::thread wrongType([&] {
        int value = 0;
        vconf_get_int("db/t/text", &value);
        wrongTypeError = vconf_get_ext_errno();
    });
    wrongPrefix.join();
    wrongType.join();
    EXPECT_EQ(VCONF_ERROR_WRONG_PREFIX, wrongPrefixError);
    EXPECT_EQ(VCONF_ERROR_WRONG_TYPE, wrongTypeError);
    EXPECT_EQ(VCONF_OK, vconf_get_ext_errno());
}

TEST(VconfConcurrentTest, ThreadsWritingAndReadingOneKeySeeWholeValues)
{
    Orvo::Testing::TestDevice device;
    const int threads = 4;
    std::vector<std::thread> workers;
    std::vector<int> badReads(threads, 0);
    for (int t = 0; t < threads; ++t) {
        workers.emplace_back([t, &badReads] {
            const std::string mine(1000, static_cast<char>('a' + t));
            for (int n = 0; n < 40; ++n) {
                if (vconf_set_str("memory/t/shared", mine.c_str()) != 0)
                    ++badReads[t];
                char* seen = vconf_get_str("memory/t/shared");
                const std::string text = seen != nullptr ? seen : "";
                std::free(seen);
                if (text.size() != 1000 || text.find_first_not_of(text[0]) != std::string::npos)
                    ++badReads[t];
            }
        });
    }
    for (std::thread& worker : workers)
        worker.join();
    EXPECT_EQ(std::vector<int>(threads, 0), badReads);
}

} // namespace

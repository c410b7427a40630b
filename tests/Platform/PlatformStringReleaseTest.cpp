// Every text that the platform allocates for a read is freed by the reader, counted in this
// executable's allocator (AllocationShim.c), so that the dev build sees a missed free too.
#include "AllocationShim.h"
#include "orvo/testing/TestDevice.h"
#include "Platform/Product/IProductInfo.h"
#include "Platform/SystemAPI/SystemInfoSystemAPI/ISystemInfo.h"
#include "Platform/SystemAPI/VconfSystemAPI/IVConfTizen.h"

#include <gtest/gtest.h>

#include <functional>

namespace Orvo::Testing {
namespace {

using P = Platform::IProductInfo;

TEST(PlatformStringReleaseTest, EveryReaderFreesThePlatformsText) {
    TestDevice device;
    device.setConf("system-info.128", "string T-XYZ9-1302.5 with a text beyond the short-string buffer");
    device.setConf("system-info.8", "string 2024-01-02 03:04:05 and more text");
    device.addSetting("db/test/text", Emulator::SettingType::String, "");
    const Platform::VConf<std::string> setting("db/test/text");
    setting.set("a stored text beyond the short-string buffer");
    P::initializeProduct();
    const std::pair<const char*, std::function<void()>> readers[] = {
        {"getSystemInfoString", [] { Platform::ISystemInfo::getSystemInfoString(8); }},
        {"VConf get", [&setting] { setting.get(); }},
        {"VConf getOrDefault", [&setting] { setting.getOrDefault(""); }},
        {"getMainSoftwareVersionDate", [] { P::getMainSoftwareVersionDate(); }},
        {"getVersionString", [] { P::getVersionString(); }}};
    if (orvoLiveBlocks == nullptr) GTEST_SKIP() << "the sanitizer runtime owns the allocator and finds leaks itself";
    for (const auto& [name, read] : readers)
        EXPECT_EQ(blocksLeftBehindBy(read), 0) << name;
}

} // namespace
} // namespace Orvo::Testing

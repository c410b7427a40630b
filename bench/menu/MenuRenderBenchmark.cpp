// What one visit of the software-update branch costs: the host asks for six titles and six
// descriptions. The plug-in's figure is compared with the bare platform calls it cannot avoid
// (catalogue lookups, system-information and settings reads, the copies handed to the host).

#include "ProviderLibrary.h"

#include "orvo/device/Device.h"

#include <benchmark/benchmark.h>
#include <libintl.h>
#include <system_info.h>
#include <unistd.h>
#include <vconf.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace {

using Orvo::Testing::BranchItem;
using Orvo::Testing::kBranchItems;

constexpr const char* kTextDomain = "Tizen_Orvo";

void renderThroughPlugin(benchmark::State& state) {
    const Orvo::Testing::ProviderLibrary plugin;
    const MenuItemDataProvider& record = *plugin.record;
    for (auto _ : state) {
        for (const BranchItem& item : kBranchItems) {
            char* title = nullptr;
            char* description = nullptr;
            record.getTitle(item.id, &title);
            record.getDescription(item.id, &description);
            benchmark::DoNotOptimize(title);
            benchmark::DoNotOptimize(description);
            record.freeString(title);
            record.freeString(description);
        }
    }
}
BENCHMARK(renderThroughPlugin);

void renderBarePlatformCalls(benchmark::State& state) {
    const Orvo::Testing::ProviderLibrary plugin; // binds the text domain as the host's visit does
    for (auto _ : state) {
        for (const BranchItem& item : kBranchItems) {
            char* title = strdup(dgettext(kTextDomain, item.titleId));
            char* version = nullptr;
            system_info_get_value_string(static_cast<system_info_key_e>(128), &version);
            char* newest = vconf_get_str("memory/menu/support/softwareupdate/newest_version");
            benchmark::DoNotOptimize(dgettext(kTextDomain, "COM_MIX_CURRENT_VER"));
            benchmark::DoNotOptimize(dgettext(kTextDomain, "COM_MIX_NEW_VER"));
            char* description = strdup(dgettext(kTextDomain, item.helpId));
            benchmark::DoNotOptimize(title);
            benchmark::DoNotOptimize(description);
            std::free(version);
            std::free(newest);
            std::free(title);
            std::free(description);
        }
    }
}
BENCHMARK(renderBarePlatformCalls);

// Puts the process on a fresh "tv" device, inside the sandbox when it can be entered, so that
// the catalogue lookups really read the device's German catalogue. Returns what the run used.
std::string enterDevice(const std::string& deviceDir) {
    namespace Emulator = Orvo::Emulator;
    Emulator::createDevice(deviceDir, Emulator::emulatorDataDirectory(), "tv");
    setenv("ORVO_DEVICE_DIR", deviceDir.c_str(), 1);
    setenv("LANGUAGE", "de", 1); // honoured by gettext in C.UTF-8, not in "C"
    std::setlocale(LC_ALL, "C.UTF-8");
    try {
        Emulator::enterSandbox(deviceDir);
        return "tv device in the sandbox, catalogue de";
    } catch (const std::runtime_error& error) {
        return std::string("tv device WITHOUT sandbox (") + error.what() + "): catalogue not read, ids only";
    }
}

} // namespace

int main(int argc, char** argv) {
    char pattern[] = "/tmp/bench_menu.XXXXXX";
    if (mkdtemp(pattern) == nullptr) {
        std::perror("mkdtemp");
        return 1;
    }
    const std::string deviceDir = std::string(pattern) + "/device";
    int status = 0;
    try {
        const std::string setting = enterDevice(deviceDir);
        benchmark::Initialize(&argc, argv);
        benchmark::AddCustomContext("device", setting);
        benchmark::RunSpecifiedBenchmarks();
        benchmark::Shutdown();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_menu: %s\n", error.what());
        status = 1;
    }
    std::error_code ignored;
    std::filesystem::remove_all(pattern, ignored);
    return status;
}

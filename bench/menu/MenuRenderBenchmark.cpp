// What one visit of the software-update branch costs: the host asks for six titles and six
// descriptions. The plug-in's figure is compared with the bare platform calls it cannot avoid
// (catalogue lookups, system-information and settings reads, the copies handed to the host).

#include "Apps/Translation/TextDomain.h"
#include "BenchmarkDevice.h"
#include "ProviderLibrary.h"

#include <benchmark/benchmark.h>
#include <libintl.h>
#include <system_info.h>
#include <vconf.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using Orvo::Apps::kTextDomain;
using Orvo::Testing::BranchItem;
using Orvo::Testing::kBranchItems;

void renderThroughPlugin(benchmark::State& state) {
    const Orvo::Testing::ProviderLibrary plugin;
    const MenuItemDataProvider& record = *plugin.record;
    for (auto _ : state) {
        for (const BranchItem& item : kBranchItems) {
            char* title = nullptr;
            char* description = nullptr;
            const bool answered = record.getTitle(item.id, &title) == 0 && title != nullptr &&
                                  record.getDescription(item.id, &description) == 0 && description != nullptr;
            benchmark::DoNotOptimize(title);
            benchmark::DoNotOptimize(description);
            record.freeString(title);
            record.freeString(description);
            if (!answered) {
                state.SkipWithError(("the plug-in gave no title or description for " + std::string(item.id)).c_str());
                return;
            }
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
            const int versionError = system_info_get_value_string(static_cast<system_info_key_e>(128), &version);
            char* newest = vconf_get_str("memory/menu/support/softwareupdate/newest_version");
            const bool read = versionError == SYSTEM_INFO_ERROR_NONE && version != nullptr && newest != nullptr;
            benchmark::DoNotOptimize(dgettext(kTextDomain, "COM_MIX_CURRENT_VER"));
            benchmark::DoNotOptimize(dgettext(kTextDomain, "COM_MIX_NEW_VER"));
            char* description = strdup(dgettext(kTextDomain, item.helpId));
            benchmark::DoNotOptimize(title);
            benchmark::DoNotOptimize(description);
            std::free(version);
            std::free(newest);
            std::free(title);
            std::free(description);
            if (!read) {
                state.SkipWithError("the software version or the newest version could not be read");
                return;
            }
        }
    }
}
BENCHMARK(renderBarePlatformCalls);

} // namespace

int main(int argc, char** argv) { return Orvo::Benchmarks::runOnFreshDevice(argc, argv, "bench_menu", "de"); }

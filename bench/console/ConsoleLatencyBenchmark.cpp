// From a key press to the re-rendered menu: the page's request (POST /api/key over a kept-alive
// connection) until the menu's JSON has arrived, against the same key handled in process. Two
// keys: Down moves the focus (the menu is rendered from what was read), Info forwards XF86Info
// and reads the whole branch again through the plug-in. Each run reports the median and the
// 99th percentile of its requests in microseconds.

#include "BenchmarkDevice.h"
#include "ConsoleServer.h"
#include "Language.h"
#include "MenuSession.h"

#include <benchmark/benchmark.h>
#include <httplib.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

namespace {

using namespace Orvo::Tools;
using Clock = std::chrono::steady_clock;

constexpr int kRequests = 2000;

struct Plugin {
    Plugin() { MenuHost::selectLanguage("en"); }
    const MenuHost::PluginLibrary library{ORVO_MENU_PLUGIN};
    const MenuHost::Provider provider{library};
};

Plugin& plugin() {
    static Plugin instance;
    return instance;
}

void reportPercentiles(benchmark::State& state, std::vector<double>& micros) {
    std::sort(micros.begin(), micros.end());
    state.counters["median_us"] = micros[micros.size() / 2];
    state.counters["p99_us"] = micros[micros.size() * 99 / 100];
    state.counters["requests"] = static_cast<double>(micros.size());
}

template <typename Press>
void measure(benchmark::State& state, Press press) {
    std::vector<double> micros;
    micros.reserve(kRequests);
    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        press();
        micros.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    reportPercentiles(state, micros);
}

void keyOverHttp(benchmark::State& state, const char* key) {
    Console::ConsoleServer server(
        plugin().provider,
        Console::ConsoleConfig{"127.0.0.1", 0, Orvo::Benchmarks::benchmarkDevice(), ORVO_CONSOLE_ASSETS, ""});
    std::thread serving([&server] { server.run(); });
    httplib::Client client("127.0.0.1", server.port());
    client.set_keep_alive(true);
    client.set_tcp_nodelay(true); // as a browser sends its requests
    client.set_default_headers({{"X-Console-Token", server.token()}});
    while (!client.Get("/api/menu"))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    const std::string body = std::string("{\"key\":\"") + key + "\"}";
    measure(state, [&] {
        const httplib::Result result = client.Post("/api/key", body, "application/json");
        if (!result || result->status != 200) state.SkipWithError("the console refused a key");
        benchmark::DoNotOptimize(result->body.data());
    });
    server.stop();
    serving.join();
}

void keyInProcess(benchmark::State& state, const char* key) {
    Console::MenuSession session(plugin().provider);
    measure(state, [&] {
        const std::string menu = session.press(key).dump();
        benchmark::DoNotOptimize(menu.data());
    });
}

BENCHMARK_CAPTURE(keyOverHttp, down, "Down")->Iterations(kRequests)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(keyInProcess, down, "Down")->Iterations(kRequests)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(keyOverHttp, info, "Info")->Iterations(kRequests)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(keyInProcess, info, "Info")->Iterations(kRequests)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) { return Orvo::Benchmarks::runOnFreshDevice(argc, argv, "bench_console", "en"); }

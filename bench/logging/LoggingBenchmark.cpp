// An ordinary log statement against the least any log line costs: formatting the message and
// one dlog write of the same line. Both write to the same fresh device.
#include "BenchmarkDevice.h"
#include "Common/Logging/Logging.h"
#include "orvo/device/LogStore.h"

#include <benchmark/benchmark.h>
#include <dlog.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

std::uint64_t mainBufferSize() {
    std::uint64_t size = 0;
    return Orvo::Emulator::logBufferSize(Orvo::Benchmarks::benchmarkDevice(), LOG_ID_MAIN, size) ? size : 0;
}

void BM_OrdinaryLogStatement(benchmark::State& state) {
    constexpr const char* kModel = "QE55Q80T";
    const std::uint64_t before = mainBufferSize();
    int code = 0;
    for (auto _ : state) {
        ORVO_LOG(INF, "Model string: %s, code %d.", kModel, ++code);
    }
    // The statement reports nothing; what reached the buffer shows that every line was written.
    const std::uint64_t written = mainBufferSize() - before;
    if (written < static_cast<std::uint64_t>(state.iterations()) * std::strlen(kModel))
        state.SkipWithError("the log lines did not reach the main buffer");
}
BENCHMARK(BM_OrdinaryLogStatement);

__attribute__((format(printf, 3, 4))) int format(char* buffer, std::size_t size, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int length = std::vsnprintf(buffer, size, format, args);
    va_end(args);
    return length;
}

void BM_BareFormatAndDlogWrite(benchmark::State& state) {
    int code = 0;
    unsigned sequence = 0;
    for (auto _ : state) {
        char message[1024];
        format(message, sizeof message, "%s:%d>Model string: %s, code %d.", "LoggingBenchmark.cpp", __LINE__,
               "QE55Q80T", ++code);
        if (__dlog_print(LOG_ID_MAIN, DLOG_INFO, "orvotv.Orvo", "[%s][%s][%u][INF] %s", "", "4242 bench_logging",
                         ++sequence, message) < 0) {
            state.SkipWithError("__dlog_print failed");
            break;
        }
    }
}
BENCHMARK(BM_BareFormatAndDlogWrite);

} // namespace

int main(int argc, char** argv) { return Orvo::Benchmarks::runOnFreshDevice(argc, argv, "bench_logging", "en"); }

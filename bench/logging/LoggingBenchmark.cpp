// An ordinary log statement against the least any log line costs: formatting the message and
// one dlog write of the same line. Both write to the same temporary device.
#include "Common/Logging/Logging.h"
#include "orvo/testing/TemporaryDirectory.h"

#include <benchmark/benchmark.h>
#include <dlog.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace {

void BM_OrdinaryLogStatement(benchmark::State& state) {
    int code = 0;
    for (auto _ : state) {
        ORVO_LOG(INF, "Model string: %s, code %d.", "QE55Q80T", ++code);
    }
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
        __dlog_print(LOG_ID_MAIN, DLOG_INFO, "orvotv.Orvo", "[%s][%s][%u][INF] %s", "", "4242 bench_logging",
                     ++sequence, message);
    }
}
BENCHMARK(BM_BareFormatAndDlogWrite);

} // namespace

int main(int argc, char** argv) {
    Orvo::Testing::TemporaryDirectory device;
    setenv("ORVO_DEVICE_DIR", device.path().c_str(), 1);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

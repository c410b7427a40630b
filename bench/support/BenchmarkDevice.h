#pragma once
// The main of a benchmark that needs the emulated television: a fresh device of a shipped profile
// in a temporary directory, entered as the sandbox before any thread starts (the plug-in reads
// the device's absolute paths), the registered benchmarks run, and the device removed again.

#include <string>

namespace Orvo {
namespace Benchmarks {

// Runs every registered benchmark on a fresh "tv" device whose catalogue language is `language`;
// returns the exit status. `program` names the benchmark in error messages.
int runOnFreshDevice(int argc, char** argv, const char* program, const char* language);

// Runs the registered benchmarks (after benchmark::Initialize) and reports them on the console;
// returns 1, naming `program`, when any of them reported an error (State::SkipWithError), so that
// a benchmark whose work failed fails its run instead of printing a figure.
int runRegisteredBenchmarks(const char* program);

// The device of the running benchmarks.
const std::string& benchmarkDevice();

} // namespace Benchmarks
} // namespace Orvo

// The device console under load: 200 clients, each sending a fixed number of requests on fresh
// connections, while 8 slow clients hold connections open by sending a request's header one byte
// per second (and connect again whenever the console drops them). The clients either send
// back to back, all starting at once (pace 0: a burst, whose latency is the queue of 200
// requests), or one request every pace milliseconds, their starts spread over the first
// interval (as people pressing keys quickly would). Reported: how many of
// the good requests were answered, refused with an error status, reset (or never connected), or
// left unanswered past the client's deadline, and the median and 99th percentile latency of the
// answered ones, from connect to the whole answer. Traffic goes to 127.0.0.1 only.

#include "BenchmarkDevice.h"
#include "ConsoleServer.h"
#include "Language.h"

#include <benchmark/benchmark.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace Orvo::Tools;
using Clock = std::chrono::steady_clock;

constexpr int kClients = 200;
constexpr int kRequestsPerClient = 5;
constexpr int kSlowClients = 8;
constexpr auto kClientDeadline = std::chrono::seconds(3);

enum class Outcome { Answered, Refused, Reset, TimedOut };

int connectTo(int port) {
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (fd >= 0 && ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) return fd;
    if (fd >= 0) ::close(fd);
    return -1;
}

// One request on a fresh connection; the console closes it after the answer.
Outcome request(int port, const std::string& text) {
    const Clock::time_point deadline = Clock::now() + kClientDeadline;
    const int fd = connectTo(port);
    if (fd < 0) return Outcome::Reset;
    Outcome outcome = Outcome::Reset;
    std::string answer;
    if (::send(fd, text.data(), text.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(text.size())) {
        for (;;) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
            pollfd readable{fd, POLLIN, 0};
            if (left <= 0 || ::poll(&readable, 1, static_cast<int>(left)) == 0) {
                outcome = Outcome::TimedOut;
                break;
            }
            char buffer[16384];
            const ssize_t got = ::recv(fd, buffer, sizeof buffer, 0);
            if (got > 0) {
                answer.append(buffer, static_cast<std::size_t>(got));
                continue;
            }
            if (got == 0 && answer.compare(0, 9, "HTTP/1.1 ") == 0)
                outcome = answer.compare(9, 3, "200") == 0 ? Outcome::Answered : Outcome::Refused;
            break; // a reset, or closed without an answer
        }
    }
    ::close(fd);
    return outcome;
}

// Holds a connection by sending a request's header one byte per second until `stop`.
void slowClient(int port, const std::atomic<bool>& stop) {
    const std::string header = "GET /api/menu HTTP/1.1\r\nHost: 127.0.0.1\r\nX-Slow: " + std::string(64, 'x');
    while (!stop) {
        const int fd = connectTo(port);
        for (std::size_t sent = 0; fd >= 0 && !stop; sent = (sent + 1) % header.size()) {
            if (::send(fd, &header[sent], 1, MSG_NOSIGNAL) != 1) break;
            for (int tick = 0; tick < 10 && !stop; ++tick)
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        if (fd >= 0) ::close(fd);
    }
}

void loadWithSlowClients(benchmark::State& state) {
    MenuHost::selectLanguage("en");
    const MenuHost::PluginLibrary library{ORVO_MENU_PLUGIN};
    const MenuHost::Provider provider{library};
    Console::ConsoleServer server(
        provider, Console::ConsoleConfig{"127.0.0.1", 0, Orvo::Benchmarks::benchmarkDevice(), ORVO_CONSOLE_ASSETS, ""});
    std::thread serving([&server] { server.run(); });
    const int port = server.port();
    const std::string text = "GET /api/menu HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port) +
                             "\r\nX-Console-Token: " + server.token() + "\r\nConnection: close\r\n\r\n";
    while (request(port, text) != Outcome::Answered)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));

    std::atomic<bool> stopSlow{false};
    std::vector<std::thread> slow;
    for (int i = 0; i < kSlowClients; ++i)
        slow.emplace_back(slowClient, port, std::cref(stopSlow));
    std::this_thread::sleep_for(std::chrono::milliseconds(300)); // the slow ones are in first

    std::mutex mutex;
    std::vector<double> millis;
    int counts[4] = {};
    for (auto _ : state) {
        std::atomic<bool> go{false};
        std::vector<std::thread> clients;
        const std::chrono::milliseconds pace(state.range(0));
        const Clock::time_point begin = Clock::now() + std::chrono::milliseconds(100);
        for (int c = 0; c < kClients; ++c) {
            clients.emplace_back([&, c] {
                while (!go)
                    std::this_thread::yield();
                for (int r = 0; r < kRequestsPerClient; ++r) {
                    std::this_thread::sleep_until(begin + pace * r + pace * c / kClients);
                    const Clock::time_point start = Clock::now();
                    const Outcome outcome = request(port, text);
                    const double took = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
                    const std::lock_guard<std::mutex> lock(mutex);
                    ++counts[static_cast<int>(outcome)];
                    if (outcome == Outcome::Answered) millis.push_back(took);
                }
            });
        }
        go = true;
        for (std::thread& client : clients)
            client.join();
    }
    stopSlow = true;
    for (std::thread& client : slow)
        client.join();
    server.stop();
    serving.join();

    std::sort(millis.begin(), millis.end());
    state.counters["answered"] = counts[static_cast<int>(Outcome::Answered)];
    state.counters["refused"] = counts[static_cast<int>(Outcome::Refused)];
    state.counters["reset"] = counts[static_cast<int>(Outcome::Reset)];
    state.counters["timed_out"] = counts[static_cast<int>(Outcome::TimedOut)];
    state.counters["p50_ms"] = millis.empty() ? 0 : millis[millis.size() / 2];
    state.counters["p99_ms"] = millis.empty() ? 0 : millis[millis.size() * 99 / 100];
}

BENCHMARK(loadWithSlowClients)->Arg(0)->Arg(100)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv) { return Orvo::Benchmarks::runOnFreshDevice(argc, argv, "bench_console_load", "en"); }

#include "ConsoleServer.h"

#include "ConsoleError.h"
#include "DevicePane.h"
#include "HttpFront.h"
#include "LogFeed.h"
#include "MenuSession.h"
#include "PluginLibrary.h"

#include <httplib.h>
#include <nlohmann/json.hpp>

#include <pthread.h>
#include <signal.h>

#include <csignal>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace Orvo {
namespace Tools {
namespace Console {

using nlohmann::json;

namespace {

constexpr const char* kTokenHeader = "X-Console-Token";
constexpr std::size_t kMaxNameLength = 64;

struct Asset {
    const char* path;
    const char* file;
    const char* type;
};
const Asset kAssets[] = {{"/", "index.html", "text/html; charset=utf-8"},
                         {"/console.css", "console.css", "text/css; charset=utf-8"},
                         {"/console.js", "console.js", "text/javascript; charset=utf-8"}};

std::string randomToken() {
    std::random_device random;
    static const char digits[] = "0123456789abcdef";
    std::string token;
    for (int i = 0; i < 32; ++i)
        token += digits[random() % 16];
    return token;
}

std::string readAsset(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    if (!(content << file.rdbuf())) throw std::runtime_error("cannot read the console's page " + path);
    return content.str();
}

// Equal in a time that does not depend on where the texts differ.
bool sameSecret(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    unsigned char difference = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        difference |= static_cast<unsigned char>(a[i] ^ b[i]);
    return difference == 0;
}

void sendJson(httplib::Response& response, const json& body, int status = 200) {
    response.status = status;
    response.set_content(body.dump(-1, ' ', false, json::error_handler_t::replace) + "\n", "application/json");
}

void sendError(httplib::Response& response, int status, const std::string& reason) {
    std::string line = reason.substr(0, reason.find('\n'));
    sendJson(response, {{"error", line}}, status);
}

json bodyOf(const httplib::Request& request) {
    const std::string type = request.get_header_value("Content-Type");
    if (type.compare(0, 16, "application/json") != 0) throw RequestError(415, "the body must be application/json");
    return json::parse(request.body);
}

std::map<std::string, std::string> queryOf(const httplib::Request& request) {
    std::map<std::string, std::string> query;
    for (const auto& parameter : request.params) {
        if (!query.emplace(parameter.first, parameter.second).second)
            throw badRequest("parameter " + quoted(parameter.first) + " given twice");
    }
    return query;
}

} // namespace

std::string defaultAssetsDirectory() { return MenuHost::executableDirectory() + "/../share/orvo-menu/console"; }

struct ConsoleServer::State {
    State(const MenuHost::Provider& provider, const ConsoleConfig& config)
        : config(config),
          token(config.token.empty() ? randomToken() : config.token),
          session(provider),
          device(config.deviceDir, [this](const std::string& language) { session.selectLanguage(language); }) {}

    // The console is named by the address the request came in on (so that a request from the
    // network cannot pass for a local one), or as localhost when that address is a loopback one.
    static bool hostAllowed(const httplib::Request& request, const std::string& host) {
        const std::string suffix = ":" + std::to_string(request.local_port);
        const bool v6 = request.local_addr.find(':') != std::string::npos;
        const std::string address = v6 ? "[" + request.local_addr + "]" : request.local_addr;
        return host == address + suffix || (host == "localhost" + suffix && isLoopback(request.local_addr));
    }

    // Empty when the request may go on, otherwise why it is refused. The page and its scripts
    // hold nothing secret; everything under /api/ needs the token, which the page sends in a
    // header and which therefore never travels to another server as a cookie would.
    std::string refusal(const httplib::Request& request) const {
        const std::string host = request.get_header_value("Host");
        if (!hostAllowed(request, host)) return "Host " + quoted(host) + " is not this console";
        if (request.has_header("Origin")) {
            const std::string origin = request.get_header_value("Origin");
            if (origin.compare(0, 7, "http://") != 0 || !hostAllowed(request, origin.substr(7)))
                return "Origin " + quoted(origin) + " is not this console";
        }
        if (request.path.compare(0, 5, "/api/") == 0 && !sameSecret(request.get_header_value(kTokenHeader), token))
            return "missing or wrong console token (use the URL the console printed)";
        return "";
    }

    // Runs a handler, answering a refused or failed request with its status and a one-line reason.
    template <typename Handler>
    httplib::Server::Handler guarded(Handler handler) {
        return [handler](const httplib::Request& request, httplib::Response& response) {
            try {
                handler(request, response);
            } catch (const RequestError& error) {
                sendError(response, error.status(), error.what());
            } catch (const json::exception& error) {
                sendError(response, 400, std::string("bad JSON: ") + error.what());
            } catch (const std::exception& error) {
                sendError(response, 500, error.what());
            }
        };
    }

    void addRoutes();

    ConsoleConfig config;
    std::string token;
    int port = 0;
    std::map<std::string, std::string> assets; // path -> content
    MenuSession session;
    DevicePane device;
    Routes server;
    std::unique_ptr<HttpFront> front;
};

void ConsoleServer::State::addRoutes() {
    for (const Asset& asset : kAssets) {
        server.Get(asset.path, guarded([this, asset](const httplib::Request&, httplib::Response& response) {
                       response.set_content(assets.at(asset.path), asset.type);
                   }));
    }
    server.Get("/api/menu", guarded([this](const httplib::Request&, httplib::Response& response) {
                   sendJson(response, session.menu());
               }));
    server.Post("/api/key", guarded([this](const httplib::Request& request, httplib::Response& response) {
                    const json body = bodyOf(request);
                    checkMembers(body, {"key"}, {"key"});
                    if (!body["key"].is_string() || body["key"].get_ref<const std::string&>().size() > kMaxNameLength)
                        throw badRequest("\"key\" must be the name of a key");
                    sendJson(response, session.press(body["key"].get<std::string>()));
                }));
    server.Get("/api/device", guarded([this](const httplib::Request&, httplib::Response& response) {
                   json facts = device.read();
                   facts["language"] = session.language();
                   facts["languages"] = session.languages();
                   sendJson(response, facts);
               }));
    server.Post("/api/device", guarded([this](const httplib::Request& request, httplib::Response& response) {
                    device.apply(bodyOf(request));
                    sendJson(response, {{"menu", session.refresh()}});
                }));
    server.Get("/api/log", guarded([this](const httplib::Request& request, httplib::Response& response) {
                   sendJson(response, readLog(config.deviceDir, queryOf(request)));
               }));
    server.Get("/api/localisation", guarded([this](const httplib::Request&, httplib::Response& response) {
                   sendJson(response, session.localisation());
               }));
}

ConsoleServer::ConsoleServer(const MenuHost::Provider& provider, const ConsoleConfig& config)
    : state_(new State(provider, config)) {
    State& state = *state_;
    const std::string dir = config.assetsDir.empty() ? defaultAssetsDirectory() : config.assetsDir;
    for (const Asset& asset : kAssets)
        state.assets[asset.path] = readAsset(dir + "/" + asset.file);
    if (!config.allowRemote && !isLoopback(config.host))
        throw std::runtime_error(
            "the console listens on this machine only (127.0.0.1), not on " + config.host +
            "; to reach it from another machine, tunnel it there: start it with --port 8080 and run "
            "ssh -L 8080:127.0.0.1:8080 THIS-HOST on the other one, then open the printed URL there");
    state.server.set_payload_max_length(config.limits.maxBodyLength);
    state.server.set_keep_alive_timeout(
        std::chrono::duration_cast<std::chrono::seconds>(config.limits.idleTimeout).count());
    state.server.set_default_headers({{"Cache-Control", "no-store"},
                                      {"X-Content-Type-Options", "nosniff"},
                                      {"Referrer-Policy", "no-referrer"},
                                      {"Content-Security-Policy", "default-src 'self'; frame-ancestors 'none'"}});
    state.server.set_pre_routing_handler([&state](const httplib::Request& request, httplib::Response& response) {
        const std::string reason = state.refusal(request);
        if (reason.empty()) return httplib::Server::HandlerResponse::Unhandled;
        sendError(response, 403, reason);
        return httplib::Server::HandlerResponse::Handled;
    });
    state.server.set_error_handler([](const httplib::Request& request, httplib::Response& response) {
        if (!response.body.empty()) return;
        sendError(response, response.status,
                  response.status == 404 ? "no such page: " + request.path : "request refused");
    });
    state.addRoutes();
    state.front.reset(new HttpFront(state.server, config.host, config.port, config.limits));
    state.port = state.front->port();
}

ConsoleServer::~ConsoleServer() = default;

int ConsoleServer::port() const { return state_->port; }
const std::string& ConsoleServer::token() const { return state_->token; }

std::string ConsoleServer::url() const {
    const std::string& host = state_->config.host;
    const std::string name = host.find(':') != std::string::npos ? "[" + host + "]" : host;
    return "http://" + name + ":" + std::to_string(state_->port) + "/#token=" + state_->token;
}

void ConsoleServer::run() { state_->front->run(); }
void ConsoleServer::stop() { state_->front->stop(); }

int serveUntilInterrupted(const MenuHost::Provider& provider, const ConsoleConfig& config, std::ostream& out) {
    // The server's threads inherit the mask; one thread takes the signals and stops the server.
    // A shell starts background jobs with SIGINT ignored, and an ignored signal never reaches
    // sigwait: the default disposition is restored first (the signals are blocked meanwhile).
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    ConsoleServer server(provider, config);
    out << server.url() << std::endl;
    if (!isLoopback(config.host))
        std::cerr << "orvo-menu: warning: the console listens on " << config.host
                  << ", open to other machines: its token is all that protects the device, and it travels "
                     "unencrypted; an SSH tunnel to 127.0.0.1 is the safe way"
                  << std::endl;
    std::thread waiter([&server, &signals] {
        int signal = 0;
        sigwait(&signals, &signal);
        server.stop();
    });
    server.run();
    pthread_kill(waiter.native_handle(), SIGTERM); // wakes the waiter when the server ended by itself
    waiter.join();
    return 0;
}

} // namespace Console
} // namespace Tools
} // namespace Orvo

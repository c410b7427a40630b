#include "ConsoleServer.h"

#include "ConsoleError.h"
#include "DevicePane.h"
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

constexpr const char* kTokenCookie = "orvo_console_token";
constexpr const char* kTokenHeader = "X-Console-Token";
constexpr std::size_t kMaxBodyLength = 64 * 1024;
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

std::string cookieValue(const std::string& header, const std::string& name) {
    std::istringstream cookies(header);
    for (std::string cookie; std::getline(cookies, cookie, ';');) {
        const std::size_t start = cookie.find_first_not_of(' ');
        if (start != std::string::npos && cookie.compare(start, name.size() + 1, name + "=") == 0)
            return cookie.substr(start + name.size() + 1);
    }
    return "";
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
          device(config.deviceDir) {}

    bool hostAllowed(const std::string& host) const {
        const std::string suffix = ":" + std::to_string(port);
        for (const std::string& name : {config.host, std::string("127.0.0.1"), std::string("localhost")}) {
            if (host == name + suffix) return true;
        }
        return false;
    }

    // Empty when the request may go on, otherwise why it is refused.
    std::string refusal(const httplib::Request& request) const {
        const std::string host = request.get_header_value("Host");
        if (!hostAllowed(host)) return "Host " + quoted(host) + " is not this console";
        if (request.has_header("Origin")) {
            const std::string origin = request.get_header_value("Origin");
            if (origin.compare(0, 7, "http://") != 0 || !hostAllowed(origin.substr(7)))
                return "Origin " + quoted(origin) + " is not this console";
        }
        const std::string presented = request.has_param("token") ? request.get_param_value("token")
                                      : request.has_header(kTokenHeader)
                                          ? request.get_header_value(kTokenHeader)
                                          : cookieValue(request.get_header_value("Cookie"), kTokenCookie);
        if (!sameSecret(presented, token)) return "missing or wrong console token (use the URL the console printed)";
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
    httplib::Server server;
};

void ConsoleServer::State::addRoutes() {
    for (const Asset& asset : kAssets) {
        server.Get(asset.path, guarded([this, asset](const httplib::Request& request, httplib::Response& response) {
                       if (request.has_param("token"))
                           response.set_header("Set-Cookie", std::string(kTokenCookie) + "=" + token +
                                                                 "; Path=/; HttpOnly; SameSite=Strict");
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
                    const json change = bodyOf(request);
                    if (change.is_object() && change.value("kind", json()) == "language") {
                        checkMembers(change, {"kind", "value"}, {"kind", "value"});
                        if (!change["value"].is_string() ||
                            change["value"].get_ref<const std::string&>().size() > kMaxNameLength)
                            throw badRequest("\"value\" must be a language name");
                        session.selectLanguage(change["value"].get<std::string>());
                    } else {
                        device.apply(change);
                    }
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
    state.server.set_payload_max_length(kMaxBodyLength);
    state.server.set_tcp_nodelay(true);     // a key's answer is one small write: no waiting for more
    state.server.set_keep_alive_timeout(1); // Ctrl-C waits for idle browser connections this long
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
    if (config.port == 0) {
        state.port = state.server.bind_to_any_port(config.host);
    } else if (state.server.bind_to_port(config.host, config.port)) {
        state.port = config.port;
    }
    if (state.port <= 0)
        throw std::runtime_error("cannot listen on " + config.host + ":" + std::to_string(config.port));
}

ConsoleServer::~ConsoleServer() = default;

int ConsoleServer::port() const { return state_->port; }
const std::string& ConsoleServer::token() const { return state_->token; }

std::string ConsoleServer::url() const {
    return "http://" + state_->config.host + ":" + std::to_string(state_->port) + "/?token=" + state_->token;
}

void ConsoleServer::run() { state_->server.listen_after_bind(); }
void ConsoleServer::stop() { state_->server.stop(); }

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

#include "HttpFront.h"

#include "JsonString.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <map>
#include <mutex>
#include <stdexcept>
#include <utility>
#include <vector>

namespace Orvo {
namespace Tools {
namespace Console {

namespace {

using Clock = std::chrono::steady_clock;

// After a refusal the rest of the request is read and dropped for a moment, so that the client
// sees the answer instead of a reset; never more than this.
constexpr std::size_t kMaxDrained = 1024 * 1024;
constexpr std::chrono::milliseconds kDrainTime{1000};
constexpr std::size_t kMaxChunkLine = 1024;

struct AddressInfo {
    addrinfo* list = nullptr;
    ~AddressInfo() { freeaddrinfo(list); }
};

// The first address of `host`, for listening.
void resolve(const std::string& host, int port, AddressInfo& info) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    const int result = getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &info.list);
    if (result != 0) throw std::runtime_error("cannot listen on " + host + ": " + gai_strerror(result));
}

bool loopbackAddress(const sockaddr* address) {
    if (address->sa_family == AF_INET)
        return (ntohl(reinterpret_cast<const sockaddr_in*>(address)->sin_addr.s_addr) >> 24) == 127;
    if (address->sa_family != AF_INET6) return false;
    const in6_addr& v6 = reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr;
    return IN6_IS_ADDR_LOOPBACK(&v6) || (IN6_IS_ADDR_V4MAPPED(&v6) && v6.s6_addr[12] == 127);
}

void addressText(int fd, bool peer, std::string& ip, int& port) {
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    char text[INET6_ADDRSTRLEN + 1] = "";
    char service[8] = "";
    const int got = peer ? getpeername(fd, reinterpret_cast<sockaddr*>(&address), &length)
                         : getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
    if (got == 0)
        getnameinfo(reinterpret_cast<sockaddr*>(&address), length, text, sizeof text, service, sizeof service,
                    NI_NUMERICHOST | NI_NUMERICSERV);
    ip = text;
    port = std::atoi(service);
}

const char* statusText(int status) {
    static const std::map<int, const char*> texts = {
        {400, "Bad Request"},       {408, "Request Timeout"},
        {413, "Payload Too Large"}, {431, "Request Header Fields Too Large"},
        {501, "Not Implemented"},   {503, "Service Unavailable"}};
    return texts.at(status);
}

// What the front answers itself: a one-line reason, and the connection ends.
std::string refusalText(int status, const std::string& reason) {
    const std::string body = "{\"error\":" + jsonString(reason) + "}\n";
    return "HTTP/1.1 " + std::to_string(status) + " " + statusText(status) +
           "\r\nContent-Type: application/json\r\nCache-Control: no-store\r\nConnection: close\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// Takes one line ending in LF (CR LF) from the front of `in`; false when there is none yet.
bool takeLine(std::string& in, std::string& line) {
    const std::size_t end = in.find('\n');
    if (end == std::string::npos) return false;
    line.assign(in, 0, end > 0 && in[end - 1] == '\r' ? end - 1 : end);
    in.erase(0, end + 1);
    return true;
}

// A refused request: its status and reason.
struct Refusal {
    int status;
    std::string reason;
};

// A chunked body decoded as it arrives, so that only the decoded bytes are kept and the limit
// applies to each chunk's announced size before its data is read.
class ChunkedBody {
public:
    // True when the body is complete; throws Refusal.
    bool feed(std::string& in, std::string& body, std::size_t maxLength) {
        for (std::string line;;) {
            if (state_ == State::Data) {
                const std::size_t take = std::min(left_, in.size());
                body.append(in, 0, take);
                in.erase(0, take);
                left_ -= take;
                if (left_ > 0) return false;
                state_ = State::DataEnd;
            }
            if (!takeLine(in, line)) {
                if (in.size() > kMaxChunkLine) throw Refusal{400, "a chunk's size line is too long"};
                return false;
            }
            if (state_ == State::DataEnd) {
                if (!line.empty()) throw Refusal{400, "a chunk does not end where its size says"};
                state_ = State::Size;
            } else if (state_ == State::Trailer) {
                if (line.empty()) return true;
                if ((trailerLength_ += line.size()) > kMaxChunkLine) throw Refusal{400, "the trailer is too long"};
            } else {
                const std::string size = trimmed(line.substr(0, line.find(';')));
                if (size.empty() || size.size() > 8 ||
                    size.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
                    throw Refusal{400, "a chunk's size is not a hexadecimal number"};
                left_ = std::stoul(size, nullptr, 16);
                if (body.size() + left_ > maxLength)
                    throw Refusal{413, "the body is longer than " + std::to_string(maxLength) + " bytes"};
                state_ = left_ == 0 ? State::Trailer : State::Data;
            }
        }
    }

private:
    enum class State { Size, Data, DataEnd, Trailer } state_ = State::Size;
    std::size_t left_ = 0;
    std::size_t trailerLength_ = 0;
};

struct Connection {
    enum class Phase { Head, Body, Busy, Draining };
    explicit Connection(int fd) : fd(fd) {}
    ~Connection() { ::close(fd); }

    int fd;
    Phase phase = Phase::Head;
    std::string in;         // received and not yet taken
    bool started = false;   // a byte of the current request has arrived
    bool keptAlive = false; // a request was answered already
    Clock::time_point headDeadline, requestDeadline, idleDeadline;
    std::string request; // the request as the library reads it: line, headers, Content-Length
    std::size_t contentLength = 0;
    bool chunked = false;
    ChunkedBody chunks;
    std::string body;
    std::size_t drained = 0;
};

// When the connection's current wait ends.
Clock::time_point deadlineOf(const Connection& connection) {
    if (connection.phase != Connection::Phase::Head) return connection.requestDeadline;
    if (!connection.started) return connection.keptAlive ? connection.idleDeadline : connection.headDeadline;
    return std::min(connection.headDeadline, connection.requestDeadline);
}

// The whole request from memory, the answer straight to the socket within the deadline.
class RequestStream : public httplib::Stream {
public:
    RequestStream(int fd, const std::string& request, Clock::time_point writeDeadline)
        : fd_(fd), request_(request), deadline_(writeDeadline) {}

    bool failed() const { return failed_; }

    bool is_readable() const override { return taken_ < request_.size(); }
    bool is_writable() const override { return !failed_; }
    ssize_t read(char* ptr, size_t size) override {
        const std::size_t count = std::min(size, request_.size() - taken_);
        std::memcpy(ptr, request_.data() + taken_, count);
        taken_ += count;
        return static_cast<ssize_t>(count);
    }
    ssize_t write(const char* ptr, size_t size) override {
        for (std::size_t sent = 0; sent < size && !failed_;) {
            const ssize_t count = ::send(fd_, ptr + sent, size - sent, MSG_NOSIGNAL);
            if (count > 0) {
                sent += static_cast<std::size_t>(count);
                continue;
            }
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline_ - Clock::now()).count();
            pollfd writable{fd_, POLLOUT, 0};
            failed_ = (count < 0 && errno != EAGAIN && errno != EINTR) || left <= 0 ||
                      ::poll(&writable, 1, static_cast<int>(left)) <= 0;
        }
        return failed_ ? -1 : static_cast<ssize_t>(size);
    }
    void get_remote_ip_and_port(std::string& ip, int& port) const override { addressText(fd_, true, ip, port); }
    void get_local_ip_and_port(std::string& ip, int& port) const override { addressText(fd_, false, ip, port); }
    socket_t socket() const override { return fd_; }

private:
    int fd_;
    const std::string& request_;
    std::size_t taken_ = 0;
    Clock::time_point deadline_;
    bool failed_ = false;
};

} // namespace

bool isLoopback(const std::string& host) {
    AddressInfo info;
    resolve(host, 0, info);
    for (const addrinfo* entry = info.list; entry; entry = entry->ai_next)
        if (!loopbackAddress(entry->ai_addr)) return false;
    return true;
}

struct HttpFront::Impl {
    Impl(Routes& routes, const FrontLimits& limits) : routes(routes), limits(limits) {}
    ~Impl() {
        for (int fd : {listener, wake[0], wake[1]})
            if (fd >= 0) ::close(fd);
    }

    void serve();
    void accept();
    void receive(Connection& connection);
    void advance(Connection& connection);
    void takeHead(Connection& connection, const std::string& head);
    void dispatch(Connection& connection);
    void refuse(Connection& connection, const Refusal& refusal);
    void checkDeadlines(Clock::time_point now);
    void takeReturned();
    void startRequest(Connection& connection);

    Routes& routes;
    const FrontLimits limits;
    int listener = -1;
    int port = 0;
    int wake[2] = {-1, -1}; // stop() and the workers wake the front through this pipe
    std::atomic<bool> stopping{false};
    std::map<int, std::unique_ptr<Connection>> connections;
    std::mutex returnedMutex;
    std::vector<std::pair<Connection*, bool>> returned; // from the workers: keep alive?
    std::unique_ptr<httplib::ThreadPool> workers;
};

HttpFront::HttpFront(Routes& routes, const std::string& host, int port, const FrontLimits& limits)
    : impl_(new Impl(routes, limits)) {
    AddressInfo info;
    resolve(host, port, info);
    const std::string where = host + ":" + std::to_string(port);
    const addrinfo& address = *info.list;
    impl_->listener = ::socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const int on = 1;
    if (impl_->listener < 0 || setsockopt(impl_->listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
        bind(impl_->listener, address.ai_addr, address.ai_addrlen) != 0 ||
        ::listen(impl_->listener, limits.backlog) != 0 || pipe2(impl_->wake, O_CLOEXEC | O_NONBLOCK) != 0)
        throw std::runtime_error("cannot listen on " + where + ": " + std::strerror(errno));
    std::string ip;
    addressText(impl_->listener, false, ip, impl_->port);
}

HttpFront::~HttpFront() = default;

int HttpFront::port() const { return impl_->port; }

void HttpFront::run() { impl_->serve(); }

void HttpFront::stop() {
    impl_->stopping = true;
    const char byte = 0;
    (void)!::write(impl_->wake[1], &byte, 1);
}

void HttpFront::Impl::serve() {
    workers.reset(new httplib::ThreadPool(limits.workers));
    std::vector<pollfd> polled;
    while (!stopping) {
        polled.assign({{wake[0], POLLIN, 0}, {listener, POLLIN, 0}});
        Clock::time_point next = Clock::now() + std::chrono::seconds(1);
        for (const auto& entry : connections) {
            if (entry.second->phase == Connection::Phase::Busy) continue;
            polled.push_back({entry.first, POLLIN, 0});
            next = std::min(next, deadlineOf(*entry.second));
        }
        const auto wait = std::chrono::duration_cast<std::chrono::milliseconds>(next - Clock::now()).count();
        if (::poll(polled.data(), polled.size(), static_cast<int>(std::max<long long>(wait, 0) + 1)) < 0 &&
            errno != EINTR)
            break;
        if (polled[0].revents) takeReturned();
        if (polled[1].revents) accept();
        for (std::size_t i = 2; i < polled.size(); ++i) {
            const auto found = connections.find(polled[i].fd);
            if (polled[i].revents && found != connections.end()) receive(*found->second);
        }
        checkDeadlines(Clock::now());
    }
    workers->shutdown(); // lets every worker finish its answer
    connections.clear();
    ::close(listener);
    listener = -1;
}

void HttpFront::Impl::accept() {
    for (;;) {
        const int fd = accept4(listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (fd < 0) return; // EAGAIN: all taken; anything else is the client's loss
        const int on = 1;
        setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on); // an answer is one small write
        std::unique_ptr<Connection> connection(new Connection(fd));
        if (connections.size() >= limits.maxConnections) {
            const std::string text =
                refusalText(503, "the console has " + std::to_string(limits.maxConnections) +
                                     " connections open, its most; try again when some have closed");
            (void)!::send(fd, text.data(), text.size(), MSG_NOSIGNAL);
            // What the client sent already is read, so that closing does not reset the answer away.
            char request[16384];
            (void)!::recv(fd, request, sizeof request, 0);
            continue;
        }
        startRequest(*connection);
        Connection& added = *connection;
        connections[fd] = std::move(connection);
        receive(added); // a client's request has usually arrived with its connection
    }
}

void HttpFront::Impl::startRequest(Connection& connection) {
    const Clock::time_point now = Clock::now();
    connection.phase = Connection::Phase::Head;
    connection.headDeadline = now + limits.headDeadline;
    connection.requestDeadline = now + limits.requestDeadline;
    connection.request.clear();
    connection.body.clear();
    connection.chunks = ChunkedBody();
}

void HttpFront::Impl::receive(Connection& connection) {
    char buffer[16384];
    const ssize_t count = ::recv(connection.fd, buffer, sizeof buffer, 0);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (count <= 0) {
        connections.erase(connection.fd);
        return;
    }
    if (connection.phase == Connection::Phase::Draining) {
        if ((connection.drained += static_cast<std::size_t>(count)) > kMaxDrained) connections.erase(connection.fd);
        return;
    }
    if (!connection.started) {
        connection.started = true;
        if (connection.keptAlive) startRequest(connection); // the deadlines run from its first byte
    }
    connection.in.append(buffer, static_cast<std::size_t>(count));
    advance(connection);
}

void HttpFront::Impl::advance(Connection& connection) {
    try {
        if (connection.phase == Connection::Phase::Head) {
            // Blank lines before a request are allowed and skipped.
            connection.in.erase(0, std::min(connection.in.find_first_not_of("\r\n"), connection.in.size()));
            const std::size_t crlf = connection.in.find("\n\r\n"), lf = connection.in.find("\n\n");
            const std::size_t end =
                std::min(crlf == std::string::npos ? crlf : crlf + 3, lf == std::string::npos ? lf : lf + 2);
            if (std::min(end, connection.in.size()) > limits.maxHeadLength)
                throw Refusal{431, "the request line and headers are longer than " +
                                       std::to_string(limits.maxHeadLength) + " bytes"};
            if (end == std::string::npos) return;
            const std::string head = connection.in.substr(0, end);
            connection.in.erase(0, end);
            takeHead(connection, head);
        }
        if (connection.phase != Connection::Phase::Body) return;
        if (connection.chunked ? connection.chunks.feed(connection.in, connection.body, limits.maxBodyLength)
                               : connection.in.size() >= connection.contentLength) {
            if (!connection.chunked) {
                connection.body.assign(connection.in, 0, connection.contentLength);
                connection.in.erase(0, connection.contentLength);
            }
            connection.request +=
                "Content-Length: " + std::to_string(connection.body.size()) + "\r\n\r\n" + connection.body;
            dispatch(connection);
        }
    } catch (const Refusal& refusal) {
        refuse(connection, refusal);
    }
}

// Checks the framing headers, keeps the others for the library and decides how the body comes.
void HttpFront::Impl::takeHead(Connection& connection, const std::string& head) {
    std::string rest = head;
    std::string line;
    takeLine(rest, connection.request);
    connection.request += "\r\n";
    int hosts = 0, origins = 0;
    std::string length, encoding, expect;
    bool lengthGiven = false, encodingGiven = false;
    while (takeLine(rest, line) && !line.empty()) {
        const std::size_t colon = line.find(':');
        const std::string name = lowered(trimmed(line.substr(0, colon)));
        const std::string value = colon == std::string::npos ? "" : trimmed(line.substr(colon + 1));
        if (name == "content-length") {
            if (lengthGiven && value != length) throw Refusal{400, "two different Content-Length headers"};
            length = value;
            lengthGiven = true;
        } else if (name == "transfer-encoding") {
            encoding += (encodingGiven ? "," : "") + lowered(value);
            encodingGiven = true;
        } else if (name == "expect") {
            expect = lowered(value);
        } else {
            hosts += name == "host";
            origins += name == "origin";
            connection.request += line + "\r\n";
        }
    }
    if (hosts > 1) throw Refusal{400, "more than one Host header"};
    if (origins > 1) throw Refusal{400, "more than one Origin header"};
    if (encodingGiven && lengthGiven) throw Refusal{400, "both Content-Length and Transfer-Encoding"};
    if (encodingGiven && encoding != "chunked")
        throw Refusal{501, "transfer encoding \"" + encoding + "\" is not supported (only chunked)"};
    if (lengthGiven &&
        (length.empty() || length.size() > 18 || length.find_first_not_of("0123456789") != std::string::npos))
        throw Refusal{400, "Content-Length is not a number"};
    connection.chunked = encodingGiven;
    connection.contentLength = lengthGiven ? std::stoull(length) : 0;
    if (connection.contentLength > limits.maxBodyLength)
        throw Refusal{413, "the body is longer than " + std::to_string(limits.maxBodyLength) + " bytes"};
    if (!encodingGiven && !lengthGiven) {
        connection.request += "\r\n";
        return dispatch(connection);
    }
    connection.phase = Connection::Phase::Body;
    if (expect == "100-continue") {
        static const char kContinue[] = "HTTP/1.1 100 Continue\r\n\r\n";
        (void)!::send(connection.fd, kContinue, sizeof kContinue - 1, MSG_NOSIGNAL);
    }
}

void HttpFront::Impl::dispatch(Connection& connection) {
    connection.phase = Connection::Phase::Busy;
    Connection* const busy = &connection;
    const Clock::time_point deadline = Clock::now() + limits.writeDeadline;
    workers->enqueue([this, busy, deadline] {
        RequestStream stream(busy->fd, busy->request, deadline);
        bool closed = false;
        const bool answered = routes.process_request(stream, stopping, closed, nullptr);
        {
            const std::lock_guard<std::mutex> lock(returnedMutex);
            returned.emplace_back(busy, answered && !closed && !stream.failed());
        }
        const char byte = 0;
        (void)!::write(wake[1], &byte, 1);
    });
}

void HttpFront::Impl::takeReturned() {
    char bytes[256];
    while (::read(wake[0], bytes, sizeof bytes) > 0) {
    }
    std::vector<std::pair<Connection*, bool>> taken;
    {
        const std::lock_guard<std::mutex> lock(returnedMutex);
        taken.swap(returned);
    }
    for (const auto& entry : taken) {
        Connection& connection = *entry.first;
        if (!entry.second) {
            connections.erase(connection.fd);
            continue;
        }
        startRequest(connection);
        connection.keptAlive = true;
        connection.started = !connection.in.empty(); // a pipelined request is under way already
        connection.idleDeadline = Clock::now() + limits.idleTimeout;
        if (connection.started) advance(connection);
    }
}

void HttpFront::Impl::refuse(Connection& connection, const Refusal& refusal) {
    const std::string text = refusalText(refusal.status, refusal.reason);
    (void)!::send(connection.fd, text.data(), text.size(), MSG_NOSIGNAL);
    shutdown(connection.fd, SHUT_WR);
    connection.phase = Connection::Phase::Draining;
    connection.in.clear();
    connection.body.clear();
    connection.requestDeadline = Clock::now() + kDrainTime;
    connection.headDeadline = connection.requestDeadline;
    connection.started = true;
}

void HttpFront::Impl::checkDeadlines(Clock::time_point now) {
    std::vector<int> expired;
    for (const auto& entry : connections) {
        Connection& connection = *entry.second;
        if (connection.phase == Connection::Phase::Busy || now < deadlineOf(connection)) continue;
        if (!connection.started || connection.phase == Connection::Phase::Draining)
            expired.push_back(entry.first); // nothing of a request came, or the refusal is out
        else if (connection.phase == Connection::Phase::Head && now >= connection.headDeadline)
            refuse(connection, {408, "the request line and headers did not arrive within " +
                                         std::to_string(limits.headDeadline.count()) + " ms"});
        else
            refuse(connection, {408, "the request did not arrive whole within " +
                                         std::to_string(limits.requestDeadline.count()) + " ms"});
    }
    for (int fd : expired)
        connections.erase(fd);
}

} // namespace Console
} // namespace Tools
} // namespace Orvo

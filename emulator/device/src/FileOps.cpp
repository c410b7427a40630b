#include "FileOps.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Orvo {
namespace Emulator {

namespace sys {

std::atomic<FaultInjector*> faultInjector{nullptr};

int injectedFault(FileCall call, std::size_t& length) {
    FaultInjector* const injector = faultInjector.load(std::memory_order_acquire);
    return injector == nullptr ? 0 : injector->beforeCall(call, length);
}

} // namespace sys

void setFaultInjector(FaultInjector* injector) { sys::faultInjector.store(injector, std::memory_order_release); }

namespace {

const char kTemporaryPrefix[] = ".tmp-";

// Closes a descriptor without disturbing the errno of the failure being reported.
class Descriptor {
public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0) {
            const int saved = errno;
            ::close(fd_);
            errno = saved;
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return fd_; }
    // Closes now and reports a failed close (a delayed write error).
    bool close() {
        const int fd = fd_;
        fd_ = -1;
        return ::close(fd) == 0;
    }

private:
    int fd_;
};

std::string directoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool writeAll(int fd, const std::string& content) {
    std::size_t done = 0;
    while (done < content.size()) {
        const ssize_t written = sys::write(fd, content.data() + done, content.size() - done);
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        done += static_cast<std::size_t>(written);
    }
    return true;
}

bool syncDirectory(const std::string& directory) {
    Descriptor fd(sys::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return fd.get() >= 0 && sys::fsync(fd.get()) == 0;
}

// Unique among the processes and threads of this machine that write at the same time.
std::string temporaryNameFor(const std::string& path) {
    static std::atomic<unsigned long> counter{0};
    return directoryOf(path) + "/" + kTemporaryPrefix + std::to_string(::getpid()) + "-" +
           std::to_string(::syscall(SYS_gettid)) + "-" + std::to_string(counter++);
}

// A writer killed between creating and renaming its temporary file leaves it behind.
// False with errno set when the directory cannot be read.
bool removeTemporaryFilesOfDeadWriters(const std::string& directory) {
    const std::size_t prefixLength = sizeof kTemporaryPrefix - 1;
    std::vector<std::string> names;
    try {
        names = listDirectory(directory);
    } catch (const std::system_error& error) {
        errno = error.code().value();
        return false;
    }
    for (const std::string& name : names) {
        if (!isTemporaryFileName(name)) continue;
        const long pid = std::strtol(name.c_str() + prefixLength, nullptr, 10);
        if (pid > 0 && ::kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH)
            sys::unlink((directory + "/" + name).c_str());
    }
    return true;
}

} // namespace

std::string describeFileError(int error) {
    if (error == kNotRegularFile) return "not a regular file";
    if (error == EFBIG) return "larger than the limit";
    if (error == ELOOP) return "a symbolic link (never followed)";
    return std::strerror(error);
}

int openRegularFile(const char* path, int flags, mode_t mode) {
    // O_NONBLOCK: opening a FIFO without a writer would wait for one.
    const int fd = sys::open(path, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, mode);
    if (fd < 0) {
        if (errno == ENXIO) errno = kNotRegularFile; // a socket, or a FIFO opened to write
        return -1;
    }
    // O_NONBLOCK is left set: a regular file's reads and writes never wait for it.
    struct stat status;
    const int error = ::fstat(fd, &status) != 0 ? errno : S_ISREG(status.st_mode) ? 0 : kNotRegularFile;
    if (error != 0) {
        ::close(fd);
        errno = error;
        return -1;
    }
    return fd;
}

bool staysBeneath(const char* base, const char* path) {
    const std::size_t baseLength = std::strlen(base);
    if (std::strncmp(path, base, baseLength) != 0 || path[baseLength] != '/') return true;
    char prefix[PATH_MAX];
    for (const char* slash = std::strchr(path + baseLength + 1, '/'); slash != nullptr;
         slash = std::strchr(slash + 1, '/')) {
        const std::size_t length = static_cast<std::size_t>(slash - path);
        if (length >= sizeof prefix) break;
        std::memcpy(prefix, path, length);
        prefix[length] = '\0';
        struct stat status;
        if (::lstat(prefix, &status) == 0 && S_ISLNK(status.st_mode)) {
            errno = ELOOP;
            return false;
        }
    }
    return true;
}

bool makeDirectoriesBeneath(const std::string& base, const std::string& path) {
    for (std::size_t slash = path.find('/', base.size() + 1);; slash = path.find('/', slash + 1)) {
        const std::string directory = path.substr(0, slash);
        if (::mkdir(directory.c_str(), 0755) != 0 && errno != EEXIST) return false;
        if (slash == std::string::npos) return true;
    }
}

bool readFile(const std::string& path, std::string& out, std::size_t maxBytes) {
    Descriptor fd(openRegularFile(path.c_str(), O_RDONLY));
    if (fd.get() < 0) return false;
    std::string content;
    char buffer[8192];
    for (;;) {
        const ssize_t got = ::read(fd.get(), buffer, sizeof buffer);
        if (got < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        if (got == 0) break;
        content.append(buffer, static_cast<std::size_t>(got));
        if (content.size() > maxBytes) {
            errno = EFBIG;
            return false;
        }
    }
    out.swap(content);
    return true;
}

bool readFileFrom(const std::string& path, std::uint64_t& offset, std::string& out) {
    Descriptor fd(openRegularFile(path.c_str(), O_RDONLY));
    struct stat status;
    if (fd.get() < 0 || ::fstat(fd.get(), &status) != 0) return false;
    if (static_cast<std::uint64_t>(status.st_size) < offset) offset = 0;
    out.clear();
    char buffer[65536];
    for (off_t position = static_cast<off_t>(offset);;) {
        const ssize_t got = ::pread(fd.get(), buffer, sizeof buffer, position);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return false;
        if (got == 0) return true;
        out.append(buffer, static_cast<std::size_t>(got));
        position += got;
    }
}

namespace {

// Puts temporary in path's place: a plain rename, or with mustExist an exchange that fails with
// ENOENT when path is missing (the old file then sits at temporary). A file system without
// exchanges gets a test followed by the rename.
bool moveIntoPlace(const std::string& temporary, const std::string& path, bool mustExist) {
    if (!mustExist) return sys::rename(temporary.c_str(), path.c_str()) == 0;
    if (sys::exchange(temporary.c_str(), path.c_str()) == 0) {
        ::unlink(temporary.c_str());
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) return false;
    struct stat status;
    return ::lstat(path.c_str(), &status) == 0 && sys::rename(temporary.c_str(), path.c_str()) == 0;
}

} // namespace

bool replaceFileAtomically(const std::string& path, const std::string& content, bool mustExist) {
    const std::string directory = directoryOf(path);
    const std::string temporary = temporaryNameFor(path);
    {
        Descriptor fd(sys::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
        if (fd.get() < 0) return false;
        // The data must be on the disk before the name points at it: else a crash could leave an
        // empty or partial file under the key's name.
        if (!writeAll(fd.get(), content) || sys::fsync(fd.get()) != 0 || !fd.close()) {
            const int saved = errno;
            ::unlink(temporary.c_str());
            errno = saved;
            return false;
        }
    }
    if (!moveIntoPlace(temporary, path, mustExist)) {
        const int saved = errno;
        ::unlink(temporary.c_str());
        errno = saved;
        return false;
    }
    const bool cleaned = removeTemporaryFilesOfDeadWriters(directory);
    return syncDirectory(directory) && cleaned;
}

bool removeFileDurably(const std::string& path) {
    return sys::unlink(path.c_str()) == 0 && syncDirectory(directoryOf(path));
}

std::vector<std::string> listDirectory(const std::string& path) {
    std::vector<std::string> names;
    const int fd = sys::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR* directory = fd < 0 ? nullptr : ::fdopendir(fd);
    if (directory == nullptr) {
        const int error = errno;
        if (fd >= 0) ::close(fd);
        if (error == ENOENT) return names;
        throw std::system_error(error, std::generic_category(), "cannot open directory " + path);
    }
    // readdir returns null both at the end and on an error; only errno tells them apart.
    errno = 0;
    while (const dirent* entry = ::readdir(directory)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(name);
        errno = 0;
    }
    const int readError = errno;
    ::closedir(directory);
    if (readError != 0) throw std::system_error(readError, std::generic_category(), "cannot read directory " + path);
    std::sort(names.begin(), names.end());
    return names;
}

bool isTemporaryFileName(const std::string& name) {
    return name.compare(0, sizeof kTemporaryPrefix - 1, kTemporaryPrefix) == 0;
}

} // namespace Emulator
} // namespace Orvo

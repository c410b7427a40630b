#include "orvo/device/DeviceEdits.h"

#include "FileOps.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>

namespace Orvo {
namespace Emulator {
namespace {

const std::size_t kMaxConfSize = 1024 * 1024;

[[noreturn]] void fail(const std::string& what, int error) {
    throw std::runtime_error(what + ": " + describeFileError(error));
}

// Holds an exclusive flock on the device directory: device.conf itself is replaced by every
// write, so it cannot carry the lock.
class DirectoryLock {
public:
    explicit DirectoryLock(const std::string& dir) : fd_(::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (fd_ < 0) fail("cannot open " + dir, errno);
        while (::flock(fd_, LOCK_EX) != 0) {
            if (errno != EINTR) {
                const int error = errno;
                ::close(fd_);
                fail("cannot lock " + dir, error);
            }
        }
    }
    ~DirectoryLock() { ::close(fd_); }
    DirectoryLock(const DirectoryLock&) = delete;
    DirectoryLock& operator=(const DirectoryLock&) = delete;

private:
    int fd_;
};

// The entry's name on a line, or "" for a comment, a blank or a line without "=".
std::string entryName(const std::string& line) {
    const std::size_t first = line.find_first_not_of(" \t");
    const std::size_t equals = line.find('=');
    if (first == std::string::npos || line[first] == '#' || equals == std::string::npos || equals < first) return "";
    const std::size_t last = line.find_last_not_of(" \t", equals == 0 ? 0 : equals - 1);
    return last == std::string::npos || last < first ? "" : line.substr(first, last - first + 1);
}

std::string rootfsPath(const std::string& deviceDir, const std::string& devicePath) {
    const bool endsInParent = devicePath.size() >= 3 && devicePath.compare(devicePath.size() - 3, 3, "/..") == 0;
    if (devicePath.empty() || devicePath[0] != '/' || devicePath.find("/../") != std::string::npos || endsInParent) {
        throw std::runtime_error("not an absolute device path: " + devicePath);
    }
    return deviceDir + "/rootfs" + devicePath;
}

} // namespace

void setDeviceConfEntry(const std::string& deviceDir, const std::string& name, const std::string& value) {
    if (name.empty() || name.find_first_of("=#\n \t") != std::string::npos || value.find('\n') != std::string::npos)
        throw std::runtime_error("not a device.conf entry: " + name);
    const DirectoryLock lock(deviceDir);
    const std::string path = deviceDir + "/device.conf";
    std::string text;
    if (!readFile(path, text, kMaxConfSize) && errno != ENOENT) fail("cannot read " + path, errno);
    const std::string line = name + " = " + value;
    std::string updated;
    bool replaced = false;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        const std::string current = text.substr(start, end - start);
        start = end + 1;
        if (entryName(current) == name) {
            if (replaced) continue; // a later duplicate would override the new value
            updated += line;
            replaced = true;
        } else {
            updated += current;
        }
        updated += '\n';
    }
    if (!replaced) updated += line + '\n';
    if (!replaceFileAtomically(path, updated)) fail("cannot write " + path, errno);
}

void replaceDeviceConf(const std::string& deviceDir, const std::string& text) {
    const DirectoryLock lock(deviceDir);
    const std::string path = deviceDir + "/device.conf";
    if (!replaceFileAtomically(path, text)) fail("cannot write " + path, errno);
}

void writeRootfsFile(const std::string& deviceDir, const std::string& devicePath, const std::string& content) {
    const std::string base = deviceDir + "/rootfs";
    const std::string path = rootfsPath(deviceDir, devicePath);
    const std::string directory = path.substr(0, path.rfind('/'));
    // No link in the way is followed: it could lead out of the device.
    if (!staysBeneath(base.c_str(), path.c_str()) || (directory != base && !makeDirectoriesBeneath(base, directory)) ||
        !replaceFileAtomically(path, content))
        fail("cannot write " + devicePath, errno);
}

void removeRootfsFile(const std::string& deviceDir, const std::string& devicePath) {
    const std::string path = rootfsPath(deviceDir, devicePath);
    if (!staysBeneath((deviceDir + "/rootfs").c_str(), path.c_str())) fail("cannot remove " + devicePath, errno);
    if (!removeFileDurably(path) && errno != ENOENT) fail("cannot remove " + devicePath, errno);
}

} // namespace Emulator
} // namespace Orvo

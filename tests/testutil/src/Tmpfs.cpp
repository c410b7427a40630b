#include "orvo/testing/Tmpfs.h"

#include <cerrno>
#include <cstring>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace Orvo::Testing {

Tmpfs::Tmpfs(const std::string& size) {
    if (::geteuid() != 0) {
        m_unavailable = "mounting a tmpfs needs root";
    } else if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
        m_unavailable = std::string("no mount namespace of this process: ") + std::strerror(errno);
    } else if (::mount("orvo-test", path().c_str(), "tmpfs", 0, ("size=" + size).c_str()) != 0) {
        m_unavailable = std::string("mount -t tmpfs: ") + std::strerror(errno);
    }
}

Tmpfs::~Tmpfs() {
    if (m_unavailable.empty()) ::umount2(path().c_str(), MNT_DETACH);
}

bool Tmpfs::remountReadOnly() const {
    return ::mount(nullptr, path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}

} // namespace Orvo::Testing

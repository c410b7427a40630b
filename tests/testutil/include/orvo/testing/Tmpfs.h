#pragma once
// A small file system of one test's own: a tmpfs mounted on a fresh temporary directory, in a
// mount namespace of this process so that no mount outlives it. Mounting needs root; elsewhere
// the directory stays a plain one and unavailable() says why.

#include "orvo/testing/TemporaryDirectory.h"

#include <string>

namespace Orvo::Testing {

class Tmpfs {
public:
    explicit Tmpfs(const std::string& size); // as mount's size option: "4m"
    ~Tmpfs();
    Tmpfs(const Tmpfs&) = delete;
    Tmpfs& operator=(const Tmpfs&) = delete;

    const std::string& path() const { return m_directory.path(); }
    // Why no tmpfs is mounted, or "" when it is.
    const std::string& unavailable() const { return m_unavailable; }
    // Turns the mounted tmpfs read-only; false with errno set.
    bool remountReadOnly() const;

private:
    TemporaryDirectory m_directory;
    std::string m_unavailable;
};

} // namespace Orvo::Testing

#pragma once
// A fresh directory for one test, removed with everything in it when the object goes away.

#include <string>

namespace Orvo::Testing {

class TemporaryDirectory {
public:
    // Created with mkdtemp under $TMPDIR (or /tmp); throws std::runtime_error on failure.
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

} // namespace Orvo::Testing

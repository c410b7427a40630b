#include "orvo/testing/TemporaryDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace Orvo::Testing {

TemporaryDirectory::TemporaryDirectory() {
    const char* base = std::getenv("TMPDIR");
    std::string pattern = std::string(base != nullptr && *base != '\0' ? base : "/tmp") + "/orvo-test-XXXXXX";
    if (::mkdtemp(&pattern[0]) == nullptr) throw std::runtime_error("mkdtemp " + pattern + ": " + std::strerror(errno));
    m_path = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

} // namespace Orvo::Testing

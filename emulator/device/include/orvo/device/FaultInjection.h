#pragma once
// The seam under the device's file calls, through which tests make them fail as a full, broken
// or read-only disk would. Nothing installs an injector in a tool or library: every call then
// costs one load and one predictable branch.

#include <cstddef>

namespace Orvo {
namespace Emulator {

enum class FileCall { Open, Write, Fsync, Rename, Ftruncate, Unlink };

class FaultInjector {
public:
    virtual ~FaultInjector() = default;
    // Asked before each call of the device's file layer (an open of a file or a directory, a
    // write, ...). Returns 0 to let the call happen, or the errno with which it fails at once.
    // For a write, lowering length writes only that many bytes: a short write.
    virtual int beforeCall(FileCall call, std::size_t& length) = 0;
};

// Installs injector for every thread of the process; nullptr removes it. The caller keeps it alive
// until it is removed, and installs it while no device call is running.
void setFaultInjector(FaultInjector* injector);

} // namespace Emulator
} // namespace Orvo

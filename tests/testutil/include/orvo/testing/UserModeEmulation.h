#pragma once
// Whether the tests run under qemu-user (the armhf build on a development machine) rather than on
// a kernel of their own CPU. A few things differ there and nowhere else: qemu prints its own line
// when a program dies of a signal, and posix_spawn cannot report a failed exec to the parent.

namespace Orvo::Testing {

bool runsUnderUserModeEmulation();

} // namespace Orvo::Testing

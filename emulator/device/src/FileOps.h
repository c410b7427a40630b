#pragma once
// File primitives of the device directory: whole-file reads and crash-safe replacement.

#include "orvo/device/FaultInjection.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

namespace Orvo {
namespace Emulator {

// The device's file calls that may fail for want of space or a working disk all go through these
// wrappers of the system calls, so that tests can fail each of them (FaultInjection.h).
namespace sys {

extern std::atomic<FaultInjector*> faultInjector;

// Asks the injector; 0 or the errno of an injected failure.
int injectedFault(FileCall call, std::size_t& length);

// Without an injector, one load and one branch.
inline int faultOf(FileCall call, std::size_t& length) {
    return faultInjector.load(std::memory_order_relaxed) == nullptr ? 0 : injectedFault(call, length);
}

inline int faultOf(FileCall call) {
    std::size_t length = 0;
    return faultOf(call, length);
}

inline int fail(int error) {
    errno = error;
    return -1;
}

inline int open(const char* path, int flags, mode_t mode = 0) {
    const int error = faultOf(FileCall::Open);
    return error != 0 ? fail(error) : ::open(path, flags, mode);
}

inline ssize_t write(int fd, const void* data, std::size_t length) {
    const int error = faultOf(FileCall::Write, length);
    return error != 0 ? fail(error) : ::write(fd, data, length);
}

inline int fsync(int fd) {
    const int error = faultOf(FileCall::Fsync);
    return error != 0 ? fail(error) : ::fsync(fd);
}

inline int rename(const char* from, const char* to) {
    const int error = faultOf(FileCall::Rename);
    return error != 0 ? fail(error) : ::rename(from, to);
}

// Swaps two names atomically: a rename that fails when the target is missing.
inline int exchange(const char* from, const char* to) {
    const int error = faultOf(FileCall::Rename);
    return error != 0 ? fail(error) : ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_EXCHANGE);
}

inline int ftruncate(int fd, off_t length) {
    const int error = faultOf(FileCall::Ftruncate);
    return error != 0 ? fail(error) : ::ftruncate(fd, length);
}

inline int unlink(const char* path) {
    const int error = faultOf(FileCall::Unlink);
    return error != 0 ? fail(error) : ::unlink(path);
}

} // namespace sys

// The errno of a path that is no regular file (a FIFO, socket, device node or directory).
constexpr int kNotRegularFile = EMEDIUMTYPE;

// What a failed read or open of the file primitives means, for messages: strerror, except for
// kNotRegularFile, EFBIG (over the size limit) and ELOOP (a link, not followed).
std::string describeFileError(int error);

// Opens a regular file without following a link in its last component and without waiting on a
// FIFO (O_NONBLOCK, which a regular file ignores). -1 with errno set (kNotRegularFile for
// any other kind of file, ELOOP for a link).
int openRegularFile(const char* path, int flags, mode_t mode = 0);

// False with errno ELOOP when a directory between base and the last component of path (path
// begins with base + "/") is a symbolic link: such a path may lead out of base. Allocates nothing.
bool staysBeneath(const char* base, const char* path);

// Creates the directories of path below base (path begins with base + "/"), never base itself.
// Returns false with errno set.
bool makeDirectoriesBeneath(const std::string& base, const std::string& path);

// Reads a whole regular file of at most maxBytes. Returns false with errno set when the file
// cannot be read, is no regular file, or is larger (EFBIG): never a part of it.
bool readFile(const std::string& path, std::string& out, std::size_t maxBytes);

// Reads a regular file from offset to its end. A file now shorter than offset was truncated or
// replaced: offset is reset to 0 and the whole file is read. Returns false when it cannot be read.
bool readFileFrom(const std::string& path, std::uint64_t& offset, std::string& out);

// Replaces path by a file holding content, all or nothing: a temporary file in the same
// directory (named after the process and thread), write, fsync, rename, fsync of the directory.
// Temporary files of writers that died are removed on the way. With mustExist only an existing
// file is replaced, in the same atomic step (ENOENT when there is none). Returns false with errno set.
bool replaceFileAtomically(const std::string& path, const std::string& content, bool mustExist = false);

// Removes path and syncs its directory. Returns false with errno set.
bool removeFileDurably(const std::string& path);

// The names of a directory's entries, without "." and "..", sorted; empty when it is missing.
// Throws std::system_error when the directory cannot be opened or read.
std::vector<std::string> listDirectory(const std::string& path);

// A temporary file of replaceFileAtomically (never a setting or log file).
bool isTemporaryFileName(const std::string& name);

} // namespace Emulator
} // namespace Orvo

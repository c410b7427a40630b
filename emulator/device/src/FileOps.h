#pragma once
// File primitives of the device directory: whole-file reads and crash-safe replacement.

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <sys/types.h>

namespace Orvo {
namespace Emulator {

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

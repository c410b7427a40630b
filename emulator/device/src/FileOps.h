#pragma once
// File primitives of the device directory: whole-file reads and crash-safe replacement.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Orvo {
namespace Emulator {

// Creates path and its missing parents; another process creating them at the same time is fine.
bool makeDirectories(const std::string& path);
// The same without allocating: path is cut at each '/' in turn while its parents are made, and
// left as it was.
bool makeDirectories(char* path);

// Reads at most maxBytes of a file. Returns false with errno set when the file cannot be read.
bool readFile(const std::string& path, std::string& out, std::size_t maxBytes);

// Reads a file from offset to its end. A file now shorter than offset was truncated or replaced:
// offset is reset to 0 and the whole file is read. Returns false when it cannot be opened.
bool readFileFrom(const std::string& path, std::uint64_t& offset, std::string& out);

// Replaces path by a file holding content, all or nothing: a temporary file in the same
// directory (named after the process and thread), write, fsync, rename, fsync of the directory.
// Temporary files of writers that died are removed on the way. Returns false with errno set.
bool replaceFileAtomically(const std::string& path, const std::string& content);

// Removes path and syncs its directory. Returns false with errno set.
bool removeFileDurably(const std::string& path);

// The names of a directory's entries, without "." and "..", sorted; empty when it is missing.
std::vector<std::string> listDirectory(const std::string& path);

// A temporary file of replaceFileAtomically (never a setting or log file).
bool isTemporaryFileName(const std::string& name);

} // namespace Emulator
} // namespace Orvo

// Whole-file reads and writes for files that must never be seen half written: a write goes to a
// temporary file in the same folder, which then takes the file's name in one rename, so a reader
// (or a crash) finds either the old content or the new one.
//
// Paths are taken as the platform writes them: '\' separates folders like '/'.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qvox {

// The path with every '\' turned into '/'.
std::string NativePath(std::string_view path);

// Why ReadWholeFile gave no content.
enum class ReadWholeFileResult { Ok, Missing, NotAFile, TooLarge, Unreadable };

// The whole content of a regular file into out, when it holds at most maxBytes. A folder, a
// device or a pipe is NotAFile; out is emptied on every failure.
ReadWholeFileResult ReadWholeFile(std::string_view path, std::size_t maxBytes, std::string& out);

// Replaces the file at path by bytes: written to a temporary file beside it, flushed to disk,
// then renamed over the path. False, with the old file untouched and no temporary file left,
// when any step fails (missing folder, no permission, disk full, path is a folder).
bool WriteWholeFile(std::string_view path, std::string_view bytes);

}  // namespace qvox

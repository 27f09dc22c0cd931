#pragma once

#include <filesystem>
#include <string>

// Writing a user's file the way a careful editor does: the new contents land in the real
// file (a symbolic link is followed, not replaced), the file keeps its permissions, and a
// file marked read-only is not overwritten.
namespace dpm {

// Replaces the contents of the file at `path` with `contents`.
//
// Where the file's folder takes a new file, the contents are written beside the file and
// renamed over it, so that a crash or a kill mid-write leaves the old file whole. Where it
// does not (a folder the user may not write), or where the file has further hard links
// that a rename would cut off, the file is rewritten in place.
//
// Throws FileFault naming `path` (never a temporary name) when the file is read-only, the
// folder does not exist, or the write fails; the file is then as it was, but for a write in
// place that failed midway.
void WriteFileKeepingIt(const std::filesystem::path& path, const std::string& contents);

// The file a path leads to: symbolic links followed, one after another, also when the last
// of them points to a file that does not exist yet.
std::filesystem::path FollowLinks(const std::filesystem::path& path);

}  // namespace dpm

#include "platform/file_writing.h"

#include <cstdio>
#include <memory>
#include <random>

#include "platform/faults.h"

namespace dpm {
namespace {

namespace fs = std::filesystem;

// More links than this in a row is a loop.
constexpr int kMaxLinkHops = 40;
constexpr int kTemporaryNameTries = 8;

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File OpenFile(const fs::path& path, const char* mode) { return File(std::fopen(path.c_str(), mode), &std::fclose); }

[[noreturn]] void CannotWrite(const fs::path& path, const std::string& why) {
  throw FileFault("Cannot write the file \"" + path.string() + "\": " + why);
}

// Writes and closes; false when any byte did not reach the file.
bool WriteAndClose(File file, const std::string& contents) {
  const bool written = std::fwrite(contents.data(), 1, contents.size(), file.get()) == contents.size();
  return written && std::fclose(file.release()) == 0;
}

bool MarkedReadOnly(const fs::path& path) {
  std::error_code error;
  const fs::perms perms = fs::status(path, error).permissions();
  if (error) return false;
  constexpr fs::perms kAnyWrite = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  return (perms & kAnyWrite) == fs::perms::none;
}

// A new file beside `target` that nobody else has, opened for writing; none when the folder
// takes no new file.
struct Temporary {
  fs::path path;
  File file{nullptr, &std::fclose};
};

Temporary CreateTemporaryBeside(const fs::path& target) {
  std::random_device seed;
  std::mt19937 random(seed());
  for (int attempt = 0; attempt < kTemporaryNameTries; ++attempt) {
    fs::path candidate =
        target.parent_path() / ("." + target.filename().string() + ".saving-" + std::to_string(random() % 1000000));
    File file = OpenFile(candidate, "wbx");  // "x": never takes over an existing file
    if (file) return {std::move(candidate), std::move(file)};
    std::error_code error;
    if (!fs::exists(fs::symlink_status(candidate, error))) break;  // refused for another reason
  }
  return {};
}

void WriteInPlace(const fs::path& target, const std::string& contents) {
  File file = OpenFile(target, "wb");
  if (!file) CannotWrite(target, "it cannot be opened for writing");
  if (!WriteAndClose(std::move(file), contents)) CannotWrite(target, "the disk refused the data");
}

// Renames the written temporary over the target, with the target's permissions.
void ReplaceBy(Temporary temporary, const fs::path& target, const std::string& contents, bool targetExists) {
  std::error_code error;
  const bool written = WriteAndClose(std::move(temporary.file), contents);
  if (written && targetExists) {
    fs::permissions(temporary.path, fs::status(target).permissions(), fs::perm_options::replace, error);
  }
  if (written && !error) fs::rename(temporary.path, target, error);
  if (!written || error) {
    std::error_code ignored;
    fs::remove(temporary.path, ignored);
    CannotWrite(target, written ? error.message() : "the disk refused the data");
  }
}

}  // namespace

fs::path FollowLinks(const fs::path& path) {
  fs::path current = path;
  for (int hop = 0; hop < kMaxLinkHops; ++hop) {
    std::error_code error;
    if (!fs::is_symlink(fs::symlink_status(current, error))) return current;
    const fs::path next = fs::read_symlink(current, error);
    if (error) return current;
    current = next.is_absolute() ? next : current.parent_path() / next;
  }
  CannotWrite(path, "too many symbolic links in a row");
}

void WriteFileKeepingIt(const fs::path& path, const std::string& contents) {
  const fs::path target = FollowLinks(path);
  std::error_code error;
  const fs::file_status status = fs::status(target, error);
  const bool exists = fs::exists(status);
  if (exists && !fs::is_regular_file(status)) CannotWrite(path, "it is not a plain file");
  if (exists && MarkedReadOnly(target)) CannotWrite(path, "it is read-only");
  // A file the user may not write is not replaced behind its back either.
  if (exists && !OpenFile(target, "r+b")) CannotWrite(path, "permission denied");

  const bool sharedByHardLinks = exists && fs::hard_link_count(target, error) > 1;
  Temporary temporary = sharedByHardLinks ? Temporary{} : CreateTemporaryBeside(target);
  if (!temporary.file) return WriteInPlace(target, contents);
  ReplaceBy(std::move(temporary), target, contents, exists);
}

}  // namespace dpm

#include "platform/file_writing.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/faults.h"
#include "temp_folder.h"

namespace dpm {
namespace {

namespace fs = std::filesystem;
using testing::FileText;

class FileWritingTest : public ::testing::Test {
 protected:
  fs::path File(const std::string& name, const std::string& contents, fs::perms mode = fs::perms(0644)) {
    std::ofstream(dir / name, std::ios::binary) << contents;
    fs::permissions(dir / name, mode);
    return dir / name;
  }
  static fs::perms Mode(const fs::path& path) { return fs::status(path).permissions() & fs::perms::all; }
  std::vector<std::string> Entries() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(dir)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

  testing::TempFolder temp;
  const fs::path& dir = temp.Path();
};

TEST_F(FileWritingTest, ContentsLandInTheRealFileWithItsMode) {
  const fs::path plain = File("plain.DPM", "old", fs::perms(0640));
  WriteFileKeepingIt(plain, "new");
  EXPECT_EQ(FileText(plain), "new");
  EXPECT_EQ(Mode(plain), fs::perms(0640)) << "the owner's mode is kept";

  // A link, relative, to a link in a subfolder: both stay links, the file gets the text.
  fs::create_directory(dir / "sub");
  const fs::path real = File("sub/real.DPM", "old");
  fs::create_symlink("real.DPM", dir / "sub" / "inner");
  fs::create_symlink("sub/inner", dir / "outer.DPM");
  WriteFileKeepingIt(dir / "outer.DPM", "through links");
  EXPECT_TRUE(fs::is_symlink(dir / "outer.DPM"));
  EXPECT_TRUE(fs::is_symlink(dir / "sub" / "inner"));
  EXPECT_EQ(FileText(real), "through links");

  // A link to a file not there yet creates the file, not a plain file in the link's place.
  fs::create_symlink("sub/later.DPM", dir / "dangling.DPM");
  WriteFileKeepingIt(dir / "dangling.DPM", "created");
  EXPECT_TRUE(fs::is_symlink(dir / "dangling.DPM"));
  EXPECT_EQ(FileText(dir / "sub" / "later.DPM"), "created");

  // A file with a second name is written in place, so both names see the new text.
  const fs::path first = File("first.DPM", "old");
  fs::create_hard_link(first, dir / "second.DPM");
  WriteFileKeepingIt(first, "shared");
  EXPECT_EQ(FileText(dir / "second.DPM"), "shared");

  EXPECT_EQ(Entries(),
            (std::vector<std::string>{"dangling.DPM", "first.DPM", "outer.DPM", "plain.DPM", "second.DPM", "sub"}))
      << "nothing is left beside the files";
}

TEST_F(FileWritingTest, RefusalsNameTheFileAndChangeNothing) {
  struct Case {
    const char* what;
    fs::path path;
    const char* why;
  };
  const fs::path readOnly = File("ro.DPM", "kept", fs::perms(0444));
  fs::create_symlink("ro.DPM", dir / "link-to-ro.DPM");
  fs::create_directory(dir / "folder.DPM");
  fs::create_symlink("loop-b", dir / "loop-a");
  fs::create_symlink("loop-a", dir / "loop-b");
  const Case cases[] = {
      {"read-only", readOnly, "it is read-only"},
      {"a link to a read-only file", dir / "link-to-ro.DPM", "it is read-only"},
      {"a folder", dir / "folder.DPM", "it is not a plain file"},
      {"a missing folder", dir / "missing" / "x.DPM", "it cannot be opened for writing"},
      {"a loop of links", dir / "loop-a", "too many symbolic links"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    try {
      WriteFileKeepingIt(c.path, "new");
      ADD_FAILURE() << "written";
    } catch (const FileFault& fault) {
      const std::string message = fault.what();
      EXPECT_NE(message.find("\"" + c.path.string() + "\""), std::string::npos) << message;
      EXPECT_NE(message.find(c.why), std::string::npos) << message;
    }
  }
  EXPECT_EQ(FileText(readOnly), "kept");
  EXPECT_EQ(Mode(readOnly), fs::perms(0444));
  EXPECT_EQ(Entries(), (std::vector<std::string>{"folder.DPM", "link-to-ro.DPM", "loop-a", "loop-b", "ro.DPM"}));
}

// Folder permissions bind only an ordinary user: as root, the check runs in a child that
// takes the identity of the unprivileged user "nobody" first.
void BecomeOrdinaryUser() {
  if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) std::_Exit(3);
}

TEST_F(FileWritingTest, FolderThatTakesNoNewFileIsWrittenInPlace) {
  const fs::path file = File("w.DPM", "old", fs::perms(0666));
  fs::permissions(dir, fs::perms(0555));
  EXPECT_EXIT(
      {
        BecomeOrdinaryUser();
        WriteFileKeepingIt(file, "new");
        std::_Exit(FileText(file) == "new" ? 0 : 4);
      },
      ::testing::ExitedWithCode(0), "");
  const fs::path locked = File("locked-folder-ro.DPM", "old", fs::perms(0444));
  EXPECT_EXIT(
      {
        BecomeOrdinaryUser();
        try {
          WriteFileKeepingIt(locked, "new");
        } catch (const FileFault& fault) {
          // The message names the file, never a temporary one beside it.
          const std::string message = fault.what();
          std::_Exit(message.find(".saving") == std::string::npos &&
                             message.find("locked-folder-ro") != std::string::npos
                         ? 0
                         : 5);
        }
        std::_Exit(6);
      },
      ::testing::ExitedWithCode(0), "");
  fs::permissions(dir, fs::perms(0755));
  EXPECT_EQ(FileText(locked), "old");
}

}  // namespace
}  // namespace dpm

#include "setup/setup_file_menu.h"

#include <gtest/gtest.h>

#include "platform/faults.h"
#include "setup/default_image.h"
#include "temp_folder.h"
#include "transfer_fixture.h"

namespace dpm {
namespace {

namespace fs = std::filesystem;

// A user who answers the file dialogs as scripted and closes the program once the script
// is used up. The open dialog moves the working directory, as some do.
class User : public fake::ScriptedDialogs {
 public:
  void Choose(std::optional<fs::path> path) {
    ChooseFile(path ? std::optional<std::string>(path->string()) : std::nullopt);
    ++scripted_;
  }
  std::optional<std::string> OpenFileName(const std::string& title, const std::string& filter) override {
    if (scripted_-- <= 0) Forms().End();
    fs::current_path(fs::temp_directory_path());
    return ScriptedDialogs::OpenFileName(title, filter);
  }

 private:
  int scripted_ = 0;
};

class SetupFileMenuTest : public testing::TransferTest {
 protected:
  SetupFileMenuTest() { Platform().dialogs = &user; }
  ~SetupFileMenuTest() override { fs::current_path(start); }
  fs::path File(const std::string& name, const std::string& contents) const {
    std::ofstream(dir / name, std::ios::binary) << contents;
    return dir / name;
  }
  std::string Contents(const std::string& name) const { return testing::FileText(dir / name); }

  fs::path start = fs::current_path();
  testing::TempFolder temp;
  const fs::path& dir = temp.Path();
  User user;
  std::string setupFileName;
};

TEST_F(SetupFileMenuTest, DefaultSetupOpensViewAndPut) {
  menu.lblGPText.SetVisible(false);
  DefaultSetup(menu.screen);
  EXPECT_EQ(g.SetupImage, DefaultSetupImage(4));
  EXPECT_EQ(Status(), "Default Setup data loaded into the 3-Page Form.");
  EXPECT_EQ(menu.lblGPText.ForeColor(), ColWhite);
  EXPECT_TRUE(menu.mnuView.Enabled() && menu.mnuPut.Enabled());
  EXPECT_FALSE(menu.mnuCmds.Enabled());
  EXPECT_EQ(g.ImageLoaded, 0) << "a default setup does not count as loaded";
}

TEST_F(SetupFileMenuTest, OpenAsksAgainUntilAFileCanBeRead) {
  user.Choose(std::nullopt);
  user.Choose(File("empty.DPM", ""));
  user.Choose(File("one line.DPM", "0123\r\n"));
  const fs::path good = File("good.DPM", DefaultSetupImage(7) + "\r\n0\r\n");
  user.Choose(good);
  OpenSetup(menu.screen, setupFileName);
  ASSERT_EQ(user.fileQuestions.size(), 4u);
  EXPECT_EQ(user.fileQuestions[3].title, "Open Setup File");
  EXPECT_EQ(user.fileQuestions[3].filter, "Setup files (*.DPM)|*.DPM");
  EXPECT_EQ(setupFileName, good.string());
  EXPECT_EQ(std::tie(g.SetupImage, g.FirmwareRev, g.MeterKind, g.ImageLoaded),
            std::make_tuple(DefaultSetupImage(7), 7, std::string("0"), 1));
  EXPECT_TRUE(menu.mnuView.Enabled() && menu.mnuPut.Enabled());
  EXPECT_FALSE(menu.mnuCmds.Enabled()) << "only a Get opens the commands";
  EXPECT_EQ(fs::current_path(), start) << "the working directory is put back";
}

TEST_F(SetupFileMenuTest, OpenEndsWithTheProgram) {
  user.Choose(File("bad.DPM", "no second line"));
  g.SetupImage = "before";
  OpenSetup(menu.screen, setupFileName);
  EXPECT_EQ(user.fileQuestions.size(), 2u);
  EXPECT_EQ(g.SetupImage, "before");
  EXPECT_FALSE(menu.mnuView.Enabled());
}

TEST_F(SetupFileMenuTest, SaveNeedsANameAndAgreement) {
  g.SetupImage = "ABCD";
  SaveSetup("");
  EXPECT_EQ(user.beeps, 1);
  ASSERT_EQ(user.messages.size(), 1u);
  EXPECT_EQ(std::tie(user.messages[0].icon, user.messages[0].title, user.messages[0].text),
            std::make_tuple(MessageIcon::Exclamation, std::string("Continue"),
                            std::string("No file name active, use Save Setup As")));

  user.Answer(MessageAnswer::Cancel);
  SaveSetup((dir / "new.DPM").string());
  EXPECT_FALSE(fs::exists(dir / "new.DPM"));
  SaveSetup((dir / "new.DPM").string());
  EXPECT_EQ(std::tie(user.messages.back().title, user.messages.back().text),
            std::make_tuple(std::string(), std::string("Current data will be replaced.")))
      << "asked, without a title, even for a new file";
  EXPECT_EQ(Contents("new.DPM"), "ABCD\r\n0\r\n");
  EXPECT_THROW(SaveSetup((dir / "missing" / "x.DPM").string()), FileFault);
}

// A read-only file is a failed write: fatal for Save, which keeps the setup in the
// recovery file on its way out; quiet for Save As. The file stays as it was either way.
TEST_F(SetupFileMenuTest, ReadOnlyFileIsAFailedWrite) {
  const fs::path locked = File("locked.DPM", "old\r\n1\r\n");
  fs::permissions(locked, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  g.SetupImage = "ABCD";
  try {
    SaveSetup(locked.string());
    FAIL() << "Save must not overwrite a read-only file";
  } catch (const FileFault& fault) {
    EXPECT_NE(std::string(fault.what()).find("locked.DPM\": it is read-only"), std::string::npos) << fault.what();
  }
  user.Choose(locked);
  EXPECT_NO_THROW(SaveSetupAs(setupFileName));
  EXPECT_EQ(Contents("locked.DPM"), "old\r\n1\r\n");
  EXPECT_EQ(fs::status(locked).permissions() & fs::perms::all, fs::perms(0444));
}

TEST_F(SetupFileMenuTest, SaveAs) {
  g.SetupImage.clear();
  SaveSetupAs(setupFileName);
  EXPECT_EQ(user.messages.at(0).text, "No Setup data loaded");
  EXPECT_TRUE(user.fileQuestions.empty());

  g.SetupImage = "ABCD";
  setupFileName = "earlier.DPM";
  user.Choose(std::nullopt);
  SaveSetupAs(setupFileName);
  EXPECT_EQ(setupFileName, "earlier.DPM") << "Cancel keeps the name";

  fs::create_directories(dir / "folder.DPM" / "inside");
  user.Choose(dir / "folder.DPM");
  SaveSetupAs(setupFileName);
  EXPECT_EQ(setupFileName, (dir / "folder.DPM").string()) << "a failed write ends quietly with the new name";

  user.Choose(dir / "saved.DPM");
  SaveSetupAs(setupFileName);
  EXPECT_EQ(Contents("saved.DPM"), "ABCD\r\n0\r\n");
  EXPECT_EQ(user.fileQuestions.back().title, "Save Setup File As");
}

}  // namespace
}  // namespace dpm

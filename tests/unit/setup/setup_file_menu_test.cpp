#include "setup/setup_file_menu.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "platform/faults.h"
#include "setup/default_image.h"
#include "transfer_fixture.h"

namespace dpm {
namespace {

namespace fs = std::filesystem;

const std::string kFilter = "Setup files (*.DPM)|*.DPM";

// A user who answers the file dialogs as scripted, and closes the program once the script
// is used up; the open dialog may move the working directory, as some do.
class User : public fake::ScriptedDialogs {
 public:
  void Choose(std::optional<fs::path> path) {
    ChooseFile(path ? std::optional<std::string>(path->string()) : std::nullopt);
    ++scripted_;
  }
  std::optional<std::string> OpenFileName(const std::string& title, const std::string& filter) override {
    if (scripted_-- <= 0) Forms().End();
    if (moveTo) fs::current_path(*moveTo);
    return ScriptedDialogs::OpenFileName(title, filter);
  }
  std::optional<fs::path> moveTo;

 private:
  int scripted_ = 0;
};

class SetupFileMenuTest : public testing::TransferTest {
 protected:
  SetupFileMenuTest() : start(fs::current_path()) {
    Platform().dialogs = &user;
    dir = fs::temp_directory_path() / ("dpm_file_menu_" + std::to_string(std::random_device{}()));
    fs::create_directories(dir);
  }
  ~SetupFileMenuTest() override {
    fs::current_path(start);
    fs::remove_all(dir);
  }
  fs::path File(const std::string& name, const std::string& contents) {
    std::ofstream(dir / name, std::ios::binary) << contents;
    return dir / name;
  }
  static std::string Contents(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
  }

  fs::path start;
  fs::path dir;
  User user;
  std::string setupFileName;
};

TEST_F(SetupFileMenuTest, DefaultSetupOpensViewAndPut) {
  g.ImageLoaded = 0;
  menu.lblGPText.SetVisible(false);
  DefaultSetup(menu.screen);
  EXPECT_EQ(g.SetupImage, DefaultSetupImage(4));
  EXPECT_EQ(g.MeterKind, "1");
  EXPECT_EQ(Status(), "Default Setup data loaded into the 3-Page Form.");
  EXPECT_EQ(menu.lblGPText.ForeColor(), ColWhite);
  EXPECT_TRUE(menu.mnuView.Enabled());
  EXPECT_TRUE(menu.mnuPut.Enabled());
  EXPECT_FALSE(menu.mnuCmds.Enabled());
  EXPECT_EQ(g.ImageLoaded, 0) << "a default setup does not count as loaded";
}

TEST_F(SetupFileMenuTest, OpenAsksAgainUntilAFileCanBeRead) {
  const fs::path good = File("good.DPM", DefaultSetupImage(7) + "\r\n0\r\n");
  user.Choose(std::nullopt);                      // Cancel
  user.Choose(File("empty.DPM", ""));             // nothing in it
  user.Choose(File("one line.DPM", "0123\r\n"));  // no second line
  user.Choose(good);
  user.moveTo = dir;
  OpenSetup(menu.screen, setupFileName);
  ASSERT_EQ(user.fileQuestions.size(), 4u);
  for (const auto& q : user.fileQuestions) {
    EXPECT_FALSE(q.save);
    EXPECT_EQ(q.title, "Open Setup File");
    EXPECT_EQ(q.filter, kFilter);
  }
  EXPECT_EQ(setupFileName, good.string());
  EXPECT_EQ(g.SetupImage, DefaultSetupImage(7));
  EXPECT_EQ(g.FirmwareRev, 7);
  EXPECT_EQ(g.MeterKind, "0");
  EXPECT_EQ(g.ImageLoaded, 1);
  EXPECT_TRUE(menu.mnuView.Enabled());
  EXPECT_TRUE(menu.mnuPut.Enabled());
  EXPECT_FALSE(menu.mnuCmds.Enabled()) << "only a Get opens the commands";
  EXPECT_EQ(fs::current_path(), start) << "the working directory is put back";
  EXPECT_TRUE(user.messages.empty());
}

TEST_F(SetupFileMenuTest, OpenEndsWithTheProgram) {
  user.Choose(File("bad.DPM", "no second line"));
  g.SetupImage = "before";
  OpenSetup(menu.screen, setupFileName);
  EXPECT_EQ(user.fileQuestions.size(), 2u);
  EXPECT_EQ(g.SetupImage, "before");
  EXPECT_EQ(g.ImageLoaded, 0);
  EXPECT_FALSE(menu.mnuView.Enabled());
}

TEST_F(SetupFileMenuTest, SaveNeedsANameAndAgreement) {
  g.SetupImage = DefaultSetupImage(4);
  g.MeterKind = "1";
  SaveSetup("");
  EXPECT_EQ(user.beeps, 1);
  ASSERT_EQ(user.messages.size(), 1u);
  EXPECT_EQ(user.messages[0].icon, MessageIcon::Exclamation);
  EXPECT_EQ(user.messages[0].title, "Continue");
  EXPECT_EQ(user.messages[0].text, "No file name active, use Save Setup As");

  const fs::path path = dir / "new.DPM";
  user.Answer(MessageAnswer::Cancel);
  SaveSetup(path.string());
  EXPECT_FALSE(fs::exists(path));
  user.Answer(MessageAnswer::Ok);
  SaveSetup(path.string());
  ASSERT_EQ(user.messages.size(), 3u);
  for (std::size_t i : {1u, 2u}) {
    EXPECT_EQ(user.messages[i].text, "Current data will be replaced.") << "asked even for a new file";
    EXPECT_EQ(user.messages[i].buttons, MessageButtons::OkCancel);
  }
  EXPECT_EQ(Contents(path), DefaultSetupImage(4) + "\r\n1\r\n");
  EXPECT_THROW(SaveSetup((dir / "missing" / "x.DPM").string()), FileFault);
}

TEST_F(SetupFileMenuTest, SaveAs) {
  g.SetupImage.clear();
  SaveSetupAs(setupFileName);
  ASSERT_EQ(user.messages.size(), 1u);
  EXPECT_EQ(user.messages[0].text, "No Setup data loaded");
  EXPECT_EQ(user.beeps, 1);
  EXPECT_TRUE(user.fileQuestions.empty());

  g.SetupImage = std::string(128, '0');  // never loaded, but saved all the same
  setupFileName = "earlier.DPM";
  user.Choose(std::nullopt);
  SaveSetupAs(setupFileName);
  EXPECT_EQ(setupFileName, "earlier.DPM");

  fs::create_directories(dir / "folder.DPM" / "inside");
  user.Choose(dir / "folder.DPM");
  SaveSetupAs(setupFileName);
  EXPECT_EQ(setupFileName, (dir / "folder.DPM").string()) << "a failed write still takes the name";
  EXPECT_TRUE(fs::is_directory(dir / "folder.DPM"));

  user.Choose(dir / "saved.DPM");
  SaveSetupAs(setupFileName);
  EXPECT_EQ(Contents(dir / "saved.DPM"), std::string(128, '0') + "\r\n0\r\n");
  EXPECT_EQ(user.fileQuestions.back().title, "Save Setup File As");
  EXPECT_TRUE(user.fileQuestions.back().save);
}

// Without a meter: the default setup, saved, opened again and saved under its name.
TEST_F(SetupFileMenuTest, DefaultSetupSavedAndOpenedAgain) {
  g.DefaultFirmwareRev = 4;
  DefaultSetup(menu.screen);
  user.Choose(dir / "default.DPM");
  SaveSetupAs(setupFileName);
  g.SetupImage = "something else";
  user.Choose(dir / "default.DPM");
  OpenSetup(menu.screen, setupFileName);
  EXPECT_EQ(g.SetupImage, DefaultSetupImage(4));
  user.Answer(MessageAnswer::Ok);
  SaveSetup(setupFileName);
  EXPECT_EQ(Contents(dir / "default.DPM"), DefaultSetupImage(4) + "\r\n1\r\n");
}

}  // namespace
}  // namespace dpm

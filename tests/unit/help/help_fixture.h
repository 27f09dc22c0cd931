#pragma once

#include <functional>
#include <string>
#include <vector>

#include "help/app_help.h"
#include "help/help_files.h"
#include "pages/pages_fixture.h"

namespace dpm::testing {

// The lines of a help item as the window prints them.
inline std::vector<std::string> ItemLines(const std::string& item) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end = item.find('$'); end != std::string::npos; end = item.find('$', start)) {
    lines.push_back(item.substr(start, end - start));
    start = end + 1;
  }
  lines.push_back(item.substr(start));
  return lines;
}

// The program's help files, as the build makes them, beside the program; the pages on the
// default setup.
class HelpTest : public PagesTest {
 protected:
  ~HelpTest() override { SetHelpFolder({}); }

  // What the help window showed while it was up, modal.
  struct Seen {
    bool up = false;
    bool modal = false;
    std::string caption;
    std::vector<std::string> lines;
    std::vector<DrawOp> ops;
  };

  // Runs `action`, which is expected to bring the help window up modally; the user reads
  // it and presses OK. What the window showed is returned.
  Seen WhileHelpIsUp(const std::function<void()>& action) {
    Seen seen;
    time.Post([&seen] {
      AppHelp* help = Forms().FindLoaded<AppHelp>();
      if (help == nullptr || !help->Visible()) return;
      seen = {true, help->Modal(), help->Caption(), help->picText.PrintedLines(), help->picText.Ops()};
      help->cmdOK.UserClick();
    });
    action();
    return seen;
  }

  // The lines of the item of `context` in the program's help files.
  static std::vector<std::string> LinesOfItem(int context) {
    const HelpItem item = ReadHelpItem(context);
    EXPECT_TRUE(item.Read()) << item.fault;
    return ItemLines(item.text);
  }
};

}  // namespace dpm::testing

#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/dialogs.h"

namespace dpm::fake {

// Dialogs answered by a script: each question takes the next answer the test has queued,
// and everything shown is recorded. A message box with no answer queued takes its first
// button (OK, Abort, Yes, Retry); a file dialog with none is cancelled.
class ScriptedDialogs : public Dialogs {
 public:
  struct Message {
    MessageIcon icon;
    std::string title;
    std::string text;
    MessageButtons buttons;
  };
  struct FileQuestion {
    bool save;
    std::string title;
    std::string filter;
  };

  MessageAnswer MessageBox(MessageIcon icon, const std::string& title, const std::string& text,
                           MessageButtons buttons) override;
  std::optional<std::string> OpenFileName(const std::string& title, const std::string& filter) override;
  std::optional<std::string> SaveFileName(const std::string& title, const std::string& filter) override;
  void Beep() override { ++beeps; }
  void SetHourglass(bool on) override;
  void PrintForm(const Form& form) override;
  std::optional<PictureRef> FindPicture(const std::string& fileName) override;
  std::optional<PictureRef> FindPicture(int number) override;

  // The script.
  void Answer(MessageAnswer answer) { answers_.push_back(answer); }
  // The path the next file dialog returns; nothing for Cancel.
  void ChooseFile(std::optional<std::string> path) { files_.push_back(std::move(path)); }
  // Pictures that exist, by file name (as asked for) or by number.
  void AddPicture(const std::string& fileName, int widthTwips = 480, int heightTwips = 480);
  void AddPicture(int number, int widthTwips = 480, int heightTwips = 480);

  // Runs while a message box is up, before it is answered.
  std::function<void(const Message&)> onMessage;

  // The record.
  std::vector<Message> messages;
  std::vector<FileQuestion> fileQuestions;
  std::vector<std::string> printedForms;
  std::vector<std::string> pictureRequests;
  int beeps = 0;
  bool hourglass = false;
  std::vector<bool> pointerChanges;

 private:
  std::optional<std::string> NextFile(bool save, const std::string& title, const std::string& filter);

  std::deque<MessageAnswer> answers_;
  std::deque<std::optional<std::string>> files_;
  std::map<std::string, PictureRef> pictureFiles_;
  std::map<int, PictureRef> pictureNumbers_;
};

}  // namespace dpm::fake

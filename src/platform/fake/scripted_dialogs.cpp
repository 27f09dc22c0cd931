#include "platform/fake/scripted_dialogs.h"

#include "platform/forms/form.h"

namespace dpm::fake {
namespace {

MessageAnswer FirstButton(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::AbortRetryIgnore:
      return MessageAnswer::Abort;
    case MessageButtons::YesNoCancel:
    case MessageButtons::YesNo:
      return MessageAnswer::Yes;
    case MessageButtons::RetryCancel:
      return MessageAnswer::Retry;
    default:
      return MessageAnswer::Ok;
  }
}

}  // namespace

MessageAnswer ScriptedDialogs::MessageBox(MessageIcon icon, const std::string& title, const std::string& text,
                                          MessageButtons buttons) {
  messages.push_back({icon, title, text, buttons});
  if (onMessage) onMessage(messages.back());
  if (answers_.empty()) return FirstButton(buttons);
  const MessageAnswer answer = answers_.front();
  answers_.pop_front();
  return answer;
}

std::optional<std::string> ScriptedDialogs::NextFile(bool save, const std::string& title, const std::string& filter) {
  fileQuestions.push_back({save, title, filter});
  if (files_.empty()) return std::nullopt;
  std::optional<std::string> path = files_.front();
  files_.pop_front();
  return path;
}

std::optional<std::string> ScriptedDialogs::OpenFileName(const std::string& title, const std::string& filter) {
  return NextFile(false, title, filter);
}

std::optional<std::string> ScriptedDialogs::SaveFileName(const std::string& title, const std::string& filter) {
  return NextFile(true, title, filter);
}

void ScriptedDialogs::SetHourglass(bool on) {
  hourglass = on;
  pointerChanges.push_back(on);
}

void ScriptedDialogs::PrintForm(const Form& form) { printedForms.push_back(form.Name()); }

void ScriptedDialogs::AddPicture(const std::string& fileName, int widthTwips, int heightTwips) {
  pictureFiles_[fileName] = PictureRef{fileName, 0, widthTwips, heightTwips};
}

void ScriptedDialogs::AddPicture(int number, int widthTwips, int heightTwips) {
  pictureNumbers_[number] = PictureRef{{}, number, widthTwips, heightTwips};
}

std::optional<PictureRef> ScriptedDialogs::FindPicture(const std::string& fileName) {
  pictureRequests.push_back(fileName);
  auto it = pictureFiles_.find(fileName);
  if (it == pictureFiles_.end()) return std::nullopt;
  return it->second;
}

std::optional<PictureRef> ScriptedDialogs::FindPicture(int number) {
  pictureRequests.push_back("#" + std::to_string(number));
  auto it = pictureNumbers_.find(number);
  if (it == pictureNumbers_.end()) return std::nullopt;
  return it->second;
}

}  // namespace dpm::fake

#pragma once

#include <optional>
#include <string>

namespace dpm {

enum class MessageIcon { None, Critical, Question, Exclamation, Information };
enum class MessageButtons { Ok, OkCancel, AbortRetryIgnore, YesNoCancel, YesNo, RetryCancel };
enum class MessageAnswer { Ok, Cancel, Abort, Retry, Ignore, Yes, No };

// The questions the program puts to the user and the small signs it gives, behind one
// interface so that tests can answer them.
class Dialogs {
 public:
  virtual ~Dialogs() = default;

  virtual MessageAnswer MessageBox(MessageIcon icon, const std::string& title, const std::string& text,
                                   MessageButtons buttons = MessageButtons::Ok) = 0;

  // `filter` as "Setup files (*.DPM)|*.DPM". The chosen path, or nothing on Cancel.
  virtual std::optional<std::string> OpenFileName(const std::string& title, const std::string& filter) = 0;
  virtual std::optional<std::string> SaveFileName(const std::string& title, const std::string& filter) = 0;

  virtual void Beep() = 0;
  // The hourglass pointer during transfers; false brings the default pointer back.
  virtual void SetHourglass(bool on) = 0;
};

}  // namespace dpm

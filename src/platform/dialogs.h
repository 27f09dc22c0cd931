#pragma once

#include <optional>
#include <string>

namespace dpm {

class Form;

// A picture found by LoadPicture: a file of the program's folder, or one of the program's
// own pictures by number. An empty reference stands for no picture.
struct PictureRef {
  std::string fileName;
  int number = 0;
  int widthTwips = 0;
  int heightTwips = 0;

  bool Empty() const { return fileName.empty() && number == 0; }
  bool operator==(const PictureRef&) const = default;
};

enum class MessageIcon { None, Critical, Question, Exclamation, Information };
enum class MessageButtons { Ok, OkCancel, AbortRetryIgnore, YesNoCancel, YesNo, RetryCancel };
enum class MessageAnswer { Ok, Cancel, Abort, Retry, Ignore, Yes, No };

// The questions the program puts to the user, the small signs it gives, printing and
// pictures, behind one interface so that tests can answer them.
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

  // Prints the form as it stands: on the printer, or into a PDF file in the program's
  // folder when the machine has no printer.
  virtual void PrintForm(const Form& form) = 0;

  // Finds a picture file in the program's folder, or a picture of the program's own by
  // number; nothing when there is no such picture.
  virtual std::optional<PictureRef> FindPicture(const std::string& fileName) = 0;
  virtual std::optional<PictureRef> FindPicture(int number) = 0;
};

}  // namespace dpm

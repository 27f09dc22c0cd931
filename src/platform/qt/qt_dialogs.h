#pragma once

#include <QString>

#include "platform/dialogs.h"

namespace dpm::qt {

// The program's dialogs as Qt shows them: message boxes and file dialogs are modal
// dialogs over the active window; printing goes to the default printer, or, on a machine
// without one, into a PDF file in the program's folder.
class QtDialogs : public Dialogs {
 public:
  ~QtDialogs() override;

  MessageAnswer MessageBox(MessageIcon icon, const std::string& title, const std::string& text,
                           MessageButtons buttons) override;
  std::optional<std::string> OpenFileName(const std::string& title, const std::string& filter) override;
  std::optional<std::string> SaveFileName(const std::string& title, const std::string& filter) override;
  void Beep() override;
  void SetHourglass(bool on) override;
  void PrintForm(const Form& form) override;
  std::optional<PictureRef> FindPicture(const std::string& fileName) override;
  std::optional<PictureRef> FindPicture(int number) override;

  // Where the last print went: the printer's name or the PDF file.
  const std::string& LastPrintTarget() const { return lastPrintTarget_; }

 private:
  std::optional<std::string> AskFileName(bool save, const std::string& title, const std::string& filter);

  bool hourglass_ = false;
  std::string lastPrintTarget_;
};

// "Setup files (*.DPM)|*.DPM|All files|*.*" as Qt writes a filter list, each pattern in
// both cases: "Setup files (*.DPM *.dpm);;All files (*.* )".
QString FileFilterOf(const std::string& filter);

}  // namespace dpm::qt

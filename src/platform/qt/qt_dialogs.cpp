#include "platform/qt/qt_dialogs.h"

#include <algorithm>

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QStringList>

#include "platform/faults.h"
#include "platform/forms/form.h"
#include "platform/qt/form_binder.h"
#include "platform/qt/qt_pictures.h"

namespace dpm::qt {
namespace {

QMessageBox::Icon IconOf(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::Critical:
      return QMessageBox::Critical;
    case MessageIcon::Question:
      return QMessageBox::Question;
    case MessageIcon::Exclamation:
      return QMessageBox::Warning;
    case MessageIcon::Information:
      return QMessageBox::Information;
    default:
      return QMessageBox::NoIcon;
  }
}

QMessageBox::StandardButtons ButtonsOf(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::OkCancel:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case MessageButtons::AbortRetryIgnore:
      return QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore;
    case MessageButtons::YesNoCancel:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case MessageButtons::YesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case MessageButtons::RetryCancel:
      return QMessageBox::Retry | QMessageBox::Cancel;
    default:
      return QMessageBox::Ok;
  }
}

// The program breaks the lines of its messages with a carriage return, alone or before a
// line feed; Qt breaks them at line feeds.
QString PlainMessageText(const std::string& text) {
  QString plain = QString::fromStdString(text);
  plain.replace("\r\n", "\n");
  plain.replace('\r', '\n');
  return plain;
}

MessageAnswer AnswerOf(int button, MessageButtons buttons) {
  switch (button) {
    case QMessageBox::Ok:
      return MessageAnswer::Ok;
    case QMessageBox::Cancel:
      return MessageAnswer::Cancel;
    case QMessageBox::Abort:
      return MessageAnswer::Abort;
    case QMessageBox::Retry:
      return MessageAnswer::Retry;
    case QMessageBox::Ignore:
      return MessageAnswer::Ignore;
    case QMessageBox::Yes:
      return MessageAnswer::Yes;
    case QMessageBox::No:
      return MessageAnswer::No;
    default:
      // Closed without a button: what Escape would have answered.
      if (buttons == MessageButtons::YesNo) return MessageAnswer::No;
      if (buttons == MessageButtons::AbortRetryIgnore) return MessageAnswer::Abort;
      return buttons == MessageButtons::Ok ? MessageAnswer::Ok : MessageAnswer::Cancel;
  }
}

// Patterns in both cases, as setup files come from machines that do not tell them apart.
QStringList PatternsOf(const QString& patterns) {
  QStringList all;
  for (const QString& pattern : patterns.split(';', Qt::SkipEmptyParts)) {
    for (const QString& variant : {pattern.trimmed(), pattern.trimmed().toLower(), pattern.trimmed().toUpper()}) {
      if (!all.contains(variant)) all << variant;
    }
  }
  return all;
}

}  // namespace

QString FileFilterOf(const std::string& filter) {
  const QStringList parts = QString::fromStdString(filter).split('|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QString description = parts[i].trimmed();
    // A description that names its patterns already: Qt adds them itself.
    if (description.endsWith(')') && description.contains('(')) {
      description = description.left(description.lastIndexOf('(')).trimmed();
    }
    filters << description + " (" + PatternsOf(parts[i + 1]).join(' ') + ")";
  }
  return filters.join(";;");
}

QtDialogs::~QtDialogs() {
  if (hourglass_) QApplication::restoreOverrideCursor();
}

MessageAnswer QtDialogs::MessageBox(MessageIcon icon, const std::string& title, const std::string& text,
                                    MessageButtons buttons) {
  QMessageBox box(IconOf(icon), QString::fromStdString(title), PlainMessageText(text), ButtonsOf(buttons),
                  QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  box.setWindowModality(Qt::ApplicationModal);
  return AnswerOf(box.exec(), buttons);
}

std::optional<std::string> QtDialogs::AskFileName(bool save, const std::string& title, const std::string& filter) {
  QFileDialog dialog(QApplication::activeWindow(), QString::fromStdString(title), QDir::currentPath(),
                     FileFilterOf(filter));
  dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setWindowModality(Qt::ApplicationModal);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return dialog.selectedFiles().constFirst().toStdString();
}

std::optional<std::string> QtDialogs::OpenFileName(const std::string& title, const std::string& filter) {
  return AskFileName(false, title, filter);
}

std::optional<std::string> QtDialogs::SaveFileName(const std::string& title, const std::string& filter) {
  return AskFileName(true, title, filter);
}

void QtDialogs::Beep() { QApplication::beep(); }

void QtDialogs::SetHourglass(bool on) {
  if (on == hourglass_) return;
  hourglass_ = on;
  if (on) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

void QtDialogs::PrintForm(const Form& form) {
  QWidget* window = WindowOf(form);
  if (window == nullptr) return;
  const QPixmap image = window->grab();

  QPrinter printer(QPrinter::HighResolution);
  const QPrinterInfo target = QPrinterInfo::defaultPrinter().isNull() && !QPrinterInfo::availablePrinters().isEmpty()
                                  ? QPrinterInfo::availablePrinters().constFirst()
                                  : QPrinterInfo::defaultPrinter();
  if (target.isNull()) {
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    const QString file = QDir::current().filePath(QString::fromStdString(form.Name()) + "-" + stamp + ".pdf");
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(file);
    lastPrintTarget_ = file.toStdString();
  } else {
    printer.setPrinterName(target.printerName());
    lastPrintTarget_ = target.printerName().toStdString();
  }

  QPainter painter;
  if (!painter.begin(&printer)) throw FileFault("Cannot print " + form.Name() + " on " + lastPrintTarget_);
  // The form at its size on the screen, made smaller only when the page is too small.
  const QRect page = painter.viewport();
  const double trueSize = printer.resolution() / 96.0;
  const double fit =
      std::min(static_cast<double>(page.width()) / image.width(), static_cast<double>(page.height()) / image.height());
  const double scale = std::min(trueSize, fit);
  painter.drawPixmap(QRectF(0, 0, image.width() * scale, image.height() * scale), image, image.rect());
  painter.end();
}

std::optional<PictureRef> QtDialogs::FindPicture(const std::string& fileName) { return FindPictureFile(fileName); }

std::optional<PictureRef> QtDialogs::FindPicture(int number) { return FindPictureNumber(number); }

}  // namespace dpm::qt

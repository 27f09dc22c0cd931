#include <unistd.h>

#include <filesystem>
#include <functional>

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTableWidget>
#include <QTimer>

#include "forms_gui_fixture.h"
#include "platform/faults.h"
#include "platform/forms/control_array.h"
#include "platform/forms/controls.h"
#include "platform/forms/grid.h"
#include "platform/forms/picture.h"

namespace dpm::testing {
namespace {

class BinderForm : public Form {
 public:
  static constexpr const char* kName = "frmBinderTest";
  BinderForm() : Form(kName, "BINDER  TEST") {
    for (const char* rate : {"Fast", "Medium", "Slow"}) cboRate.AddItem(rate);
    for (Control* c : Controls()) {
      c->on.Click = [this, c] { log.push_back("click " + c->ObjectName()); };
      c->on.Change = [this, c] { log.push_back("change " + c->ObjectName()); };
      c->on.GotFocus = [this, c] { log.push_back("got " + c->ObjectName()); };
      c->on.LostFocus = [this, c] { log.push_back("lost " + c->ObjectName()); };
    }
    cmdClose.on.Click = [this] { Hide(); };
  }

  std::vector<std::string> log;
  Frame fraBox{*this, "fraBox", "Box"};
  ComboBox cboRate{*this, "cboRate", &fraBox};
  CheckBox chkTare{*this, "chkTare", "Tare", &fraBox};
  OptionButton optA{*this, "optA", "A", &fraBox};
  OptionButton optB{*this, "optB", "B", &fraBox};
  TextBox txtValue{*this, "txtValue"};
  ControlArray<TextBox> txtDigit{*this, "txtDigit", 0, 1};
  CommandButton cmdGo{*this, "cmdGo", "Go"};
  CommandButton cmdClose{*this, "cmdClose", "Close"};
  Label lblNote{*this, "lblNote", "note"};
  PictureBox picDraw{*this, "picDraw"};
  Grid grdCells{*this, "grdCells"};
  ProgressBar barDone{*this, "barDone"};
};

class WrongKindForm : public Form {
 public:
  static constexpr const char* kName = "frmWrongKind";
  WrongKindForm() : Form(kName, "WRONG") {}
  CommandButton cmdGo{*this, "cmdGo", "Go"};
};

using BinderTest = GuiFormsTest;

struct ModelCase {
  const char* what;
  std::function<void(BinderForm&)> change;
  std::function<bool(QWidget*)> shown;
  std::vector<std::string> events = {};  // raised by the change
};

TEST_F(BinderTest, ChangesOfTheControlsReachTheirWidgetsAndRaiseOnlyTheirOwnEvents) {
  const std::vector<ModelCase> cases = {
      {"caption", [](BinderForm& f) { f.cmdGo.SetCaption("&Start"); },
       [](QWidget* w) { return w->findChild<QPushButton*>("cmdGo")->text() == "&Start"; }},
      {"frame title", [](BinderForm& f) { f.fraBox.SetCaption("Rates"); },
       [](QWidget* w) { return w->findChild<QGroupBox*>("fraBox")->title() == "Rates"; }},
      {"disabled frame", [](BinderForm& f) { f.fraBox.SetEnabled(false); },
       [](QWidget* w) { return !w->findChild<QComboBox*>("cboRate")->isEnabled(); }},
      {"hidden button", [](BinderForm& f) { f.cmdGo.SetVisible(false); },
       [](QWidget* w) { return w->findChild<QPushButton*>("cmdGo")->isHidden(); }},
      {"list index",
       [](BinderForm& f) { f.cboRate.SetListIndex(2); },
       [](QWidget* w) { return w->findChild<QComboBox*>("cboRate")->currentIndex() == 2; },
       {"click cboRate"}},
      {"list index beyond the list",
       [](BinderForm& f) { f.cboRate.SetListIndex(1), f.cboRate.SetListIndex(5); },
       [](QWidget* w) { return w->findChild<QComboBox*>("cboRate")->currentIndex() == -1; },
       {"click cboRate"}},
      {"refilled list", [](BinderForm& f) { f.cboRate.Clear(), f.cboRate.AddItem("Only"); },
       [](QWidget* w) { return w->findChild<QComboBox*>("cboRate")->itemText(0) == "Only"; }},
      {"check box",
       [](BinderForm& f) { f.chkTare.SetValue(kChecked); },
       [](QWidget* w) { return w->findChild<QCheckBox*>("chkTare")->isChecked(); },
       {"click chkTare"}},
      {"option",
       [](BinderForm& f) { f.optA.SetValue(true), f.optB.SetValue(true); },
       [](QWidget* w) {
         return !w->findChild<QRadioButton*>("optA")->isChecked() && w->findChild<QRadioButton*>("optB")->isChecked();
       },
       {"click optA", "click optB"}},
      {"option turned off",
       [](BinderForm& f) { f.optA.SetValue(true), f.optA.SetValue(false); },
       [](QWidget* w) { return !w->findChild<QRadioButton*>("optA")->isChecked(); },
       {"click optA"}},
      {"text",
       [](BinderForm& f) { f.txtDigit[1].SetText("7."); },
       [](QWidget* w) { return w->findChild<QLineEdit*>("txtDigit_1")->text() == "7."; },
       {"change txtDigit_1"}},
      {"background", [](BinderForm& f) { f.txtValue.SetBackColor(ColPaleGreen); },
       [](QWidget* w) {
         return w->findChild<QLineEdit*>("txtValue")->palette().color(QPalette::Base) == QColor(0xC0, 0xFF, 0xC0);
       }},
      {"label", [](BinderForm& f) { f.lblNote.SetCaption("Sent."); },
       [](QWidget* w) { return w->findChild<QLabel*>("lblNote")->text() == "Sent."; }},
      {"progress", [](BinderForm& f) { f.barDone.SetRange(0, 5), f.barDone.SetValue(4); },
       [](QWidget* w) { return w->findChild<QProgressBar*>("barDone")->value() == 4; }},
      {"grid row", [](BinderForm& f) { f.grdCells.AddItem("a\tb"); },
       [](QWidget* w) { return w->findChild<QTableWidget*>("grdCells")->item(2, 1)->text() == "b"; }},
      {"position", [](BinderForm& f) { f.cmdGo.Move(1500, 300); },
       [](QWidget* w) { return w->findChild<QPushButton*>("cmdGo")->pos() == QPoint(100, 20); }},
      {"drawing", [](BinderForm& f) { f.picDraw.SetBackColor(ColWhite), f.picDraw.Line(0, 0, 1500, 1500, ColRed); },
       [](QWidget* w) {
         const QImage image = w->findChild<QLabel*>("picDraw")->grab().toImage();
         return image.pixelColor(50, 50) == Qt::red && image.pixelColor(80, 20) == Qt::white;
       }},
  };
  for (const ModelCase& c : cases) {
    SCOPED_TRACE(c.what);
    BinderForm& form = Forms().Use<BinderForm>();
    form.Show();
    form.log.clear();
    c.change(form);
    EXPECT_TRUE(c.shown(qt::WindowOf(form)));
    EXPECT_EQ(form.log, c.events);
    form.Unload();
  }
}

// A picture that keeps what was drawn hands it to the window's image as it is drawn; from
// then on the image alone holds it, through a new size and into a saved file, until Cls.
TEST_F(BinderTest, AKeptDrawingLivesInTheWindowsImage) {
  BinderForm& form = Forms().Use<BinderForm>();
  form.Show();
  PictureBox& pic = form.picDraw;
  QWidget* window = qt::WindowOf(form);
  auto* label = window->findChild<QLabel*>("picDraw");
  ASSERT_NE(label, nullptr);
  // What the screen shows, not what a fresh rendering of the label would, once it has caught
  // up with the drawing.
  const auto shows = [&](int x, int y, const std::string& color) {
    return QTest::qWaitFor(
        [&] {
          const QImage screen = window->screen()->grabWindow(window->winId()).toImage();
          return screen.pixelColor(label->mapTo(window, QPoint(x, y))).name().toStdString() == color;
        },
        1000);
  };
  pic.SetBackColor(ColWhite);
  pic.SetAutoRedraw(true);
  pic.Line(0, 0, 1500, 1500, ColRed);  // 15 twips a pixel: to (100, 100)
  EXPECT_TRUE(pic.Ops().empty());
  EXPECT_EQ(pic.DrawnCount(), 1u);
  EXPECT_TRUE(shows(50, 50, "#ff0000"));

  pic.Move(pic.Left(), pic.Top(), pic.Width() + 1500, pic.Height());
  ASSERT_EQ(label->size(), QSize(300, 100));
  EXPECT_TRUE(shows(50, 50, "#ff0000"));
  EXPECT_TRUE(shows(200, 50, "#ffffff"));  // the grid covers the label from 210 on
  pic.Line(3000, 0, 3000, 1500, ColRed);
  EXPECT_TRUE(shows(200, 50, "#ff0000"));

  const std::filesystem::path file =
      std::filesystem::temp_directory_path() / ("dpm-kept-" + std::to_string(getpid()) + ".png");
  pic.SaveImage(file.string());
  const QImage saved(QString::fromStdString(file.string()));
  std::filesystem::remove(file);
  ASSERT_EQ(saved.size(), QSize(300, 100));
  EXPECT_EQ(saved.pixelColor(50, 50).name().toStdString(), "#ff0000");
  EXPECT_EQ(saved.pixelColor(200, 50).name().toStdString(), "#ff0000");
  EXPECT_EQ(saved.pixelColor(80, 20).name().toStdString(), "#ffffff");

  pic.Cls();
  EXPECT_TRUE(shows(50, 50, "#ffffff"));
  pic.SetAutoRedraw(false);
  pic.Line(0, 0, 1500, 1500, ColRed);
  EXPECT_EQ(pic.Ops().size(), 1u) << "a drawing that is not kept stays with the picture";
  form.Unload();
}

TEST_F(BinderTest, ClicksAndTypingReachTheHandlers) {
  BinderForm& form = Forms().Use<BinderForm>();
  QWidget* window = ShowActive(form);
  form.log.clear();

  QTest::mouseClick(Find<QPushButton>(window, "cmdGo"), Qt::LeftButton);
  // Check boxes and options take a click on their mark.
  QTest::mouseClick(Find<QCheckBox>(window, "chkTare"), Qt::LeftButton, {}, QPoint(8, 12));
  QTest::mouseClick(Find<QRadioButton>(window, "optB"), Qt::LeftButton, {}, QPoint(8, 12));
  QTest::mouseClick(Find<QLabel>(window, "lblNote"), Qt::LeftButton);
  EXPECT_EQ(form.chkTare.Value(), kChecked);
  EXPECT_TRUE(form.optB.Value());
  EXPECT_EQ(form.log,
            (std::vector<std::string>{"lost cboRate", "got cmdGo", "click cmdGo", "lost cmdGo", "got chkTare",
                                      "click chkTare", "lost chkTare", "got optB", "click optB", "click lblNote"}));

  form.log.clear();
  auto* combo = Find<QComboBox>(window, "cboRate");
  combo->setFocus(Qt::TabFocusReason);
  QTest::keyClick(combo, Qt::Key_Down);
  EXPECT_EQ(form.cboRate.ListIndex(), 0);
  auto* edit = Find<QLineEdit>(window, "txtValue");
  QTest::mouseClick(edit, Qt::LeftButton);
  QTest::keyClicks(edit, "42");
  EXPECT_EQ(form.txtValue.Text(), "42");
  EXPECT_EQ(form.log,
            (std::vector<std::string>{"lost optB", "got cboRate", "click cboRate", "lost cboRate", "got txtValue",
                                      "click txtValue", "change txtValue", "change txtValue"}));
}

TEST_F(BinderTest, AGridCellClickMovesTheCurrentCellThenClicks) {
  BinderForm& form = Forms().Use<BinderForm>();
  form.grdCells.SetRows(3);
  form.grdCells.SetCols(3);
  QWidget* window = ShowActive(form);
  auto* table = Find<QTableWidget>(window, "grdCells");
  std::vector<std::string> log;
  form.grdCells.on.SelChange = [&] { log.push_back("sel " + std::to_string(form.grdCells.Row())); };
  form.grdCells.on.Click = [&] { log.push_back("click"); };
  const QRect cell = table->visualItemRect(table->item(2, 1));
  QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell.center());
  EXPECT_EQ(log, (std::vector<std::string>{"sel 2", "click"}));
  EXPECT_EQ(form.grdCells.Col(), 1);
}

TEST_F(BinderTest, KeysGoToTheFormFirstAndASwallowedKeyNeverReachesTheBox) {
  BinderForm& form = Forms().Use<BinderForm>();
  std::vector<std::string> keys;
  form.on.KeyDown = [&](int& code, int) { keys.push_back("form " + std::to_string(code)); };
  form.txtValue.on.KeyDown = [&](int& code, int) { keys.push_back("box " + std::to_string(code)); };
  form.txtValue.on.KeyPress = [&](int& ascii) {
    keys.push_back("press " + std::to_string(ascii));
    if (ascii == '.') ascii = 0;
  };
  QWidget* window = ShowActive(form);
  form.txtValue.SetFocus();
  auto* edit = Find<QLineEdit>(window, "txtValue");
  ASSERT_TRUE(edit->hasFocus());

  QTest::keyClick(edit, Qt::Key_F1);
  QTest::keyClicks(edit, "1.5");
  EXPECT_EQ(edit->text(), "15");
  EXPECT_EQ(form.txtValue.Text(), "15");
  EXPECT_EQ(keys, (std::vector<std::string>{"form 112", "box 112", "form 49", "box 49", "press 49", "form 190",
                                            "box 190", "press 46", "form 53", "box 53", "press 53"}));
}

TEST_F(BinderTest, FocusGivenByCodeMovesTheWidgetsFocus) {
  BinderForm& form = Forms().Use<BinderForm>();
  QWidget* window = ShowActive(form);
  form.txtDigit[1].SetFocus();
  EXPECT_TRUE(Find<QLineEdit>(window, "txtDigit_1")->hasFocus());
  form.log.clear();
  QTest::keyClick(Find<QLineEdit>(window, "txtDigit_1"), Qt::Key_Tab);
  EXPECT_EQ(form.log, (std::vector<std::string>{"lost txtDigit_1", "got cmdGo"}));
}

TEST_F(BinderTest, AModalFormWaitsForItsOwnButton) {
  BinderForm& form = Forms().Use<BinderForm>();
  QTimer::singleShot(0, [&] {
    QWidget* window = qt::WindowOf(form);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->windowModality(), Qt::ApplicationModal);
    QTest::mouseClick(window->findChild<QPushButton*>("cmdClose"), Qt::LeftButton);
  });
  form.ShowModal();
  EXPECT_FALSE(form.Visible());
  EXPECT_FALSE(qt::WindowOf(form)->isVisible());
}

TEST_F(BinderTest, MessageBoxesAndFileDialogsAreRealModalDialogs) {
  struct Case {
    MessageButtons buttons;
    QMessageBox::StandardButton pressed;
    MessageAnswer expected;
  };
  for (const Case& c : {Case{MessageButtons::YesNo, QMessageBox::No, MessageAnswer::No},
                        Case{MessageButtons::OkCancel, QMessageBox::Ok, MessageAnswer::Ok},
                        Case{MessageButtons::AbortRetryIgnore, QMessageBox::Retry, MessageAnswer::Retry}}) {
    QTimer::singleShot(0, [&] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      EXPECT_EQ(box->text(), "You cannot write DC meter data\nto a LC meter.");
      box->button(c.pressed)->click();
    });
    EXPECT_EQ(
        dialogs.MessageBox(MessageIcon::Question, " DPM", "You cannot write DC meter data\rto a LC meter.", c.buttons),
        c.expected);
  }

  QTimer::singleShot(0, [] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->windowTitle(), "Open Setup");
    dialog->reject();
  });
  EXPECT_EQ(dialogs.OpenFileName("Open Setup", "Setup files (*.DPM)|*.DPM"), std::nullopt);
  EXPECT_EQ(qt::FileFilterOf("Setup files (*.DPM)|*.DPM|All|*.*"), "Setup files (*.DPM *.dpm);;All (*.*)");
}

TEST_F(BinderTest, ClosingTheWindowUnloadsTheForm) {
  BinderForm& form = Forms().Use<BinderForm>();
  QWidget* window = ShowActive(form);
  window->close();
  EXPECT_FALSE(Forms().IsLoaded(BinderForm::kName));
}

TEST_F(BinderTest, ALayoutThatLacksAControlOrShowsItWronglyIsAFault) {
  try {
    Forms().Use<WrongKindForm>();
    FAIL() << "no fault";
  } catch (const RuntimeFault& fault) {
    EXPECT_STREQ(fault.what(), "frmWrongKind: the command button cmdGo cannot be shown by a QLabel");
  }
}

TEST_F(BinderTest, AFaultInAHandlerStopsTheProgramWithItsCause) {
  GTEST_FLAG_SET(death_test_style, "fast");
  BinderForm& form = Forms().Use<BinderForm>();
  form.cmdGo.on.Click = [] { throw FileFault("File not found: \"Blank.BMP\""); };
  QWidget* window = ShowActive(form);
  EXPECT_EXIT(QTest::mouseClick(Find<QPushButton>(window, "cmdGo"), Qt::LeftButton), ::testing::ExitedWithCode(1),
              "Blank\\.BMP");
}

}  // namespace
}  // namespace dpm::testing

// The program's own words, written out here once as the meter's documentation gives them:
// every list text of the setup image, the captions of the main menu and the lines of its
// help page; the lockout captions where page 3 shows them. The code keeps these texts in
// its own tables; a typo there shows here.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "forms/forms_fixture.h"
#include "setup/image_map.h"
#include "setup/main_menu.h"

namespace dpm {
namespace {

using Texts = std::vector<std::string>;

Texts FieldTexts(std::string_view name) {
  const ImageField& field = FindField(name);
  return Texts(field.texts.begin(), field.texts.end());
}

TEST(Words, ListTextsOfTheSetupFields) {
  const std::pair<const char*, Texts> fields[] = {
      {"CustomCurve", {"Disabled", "Enabled"}},
      {"Duplex", {"Full Duplex", "Half Duplex"}},
      {"RtsType", {"Non-Latching", "Latching"}},
      {"Rate", {"Disabled", "Rate X 0.1", "Rate X 1", "Rate X 10", "Rate X 100", "Rate X 1000", "Rate X 10,000"}},
      {"AnalogValue", {"Unfiltered", "Filtered"}},
      {"AnalogCircuit", {"Current Output", "Voltage Output"}},
      {"DecimalPoint", {"ddddd .", "dddd . d", "ddd . dd", "dd . ddd", "d . dddd", " . ddddd"}},
      {"OutputMode", {"Continuous", "Command"}},
      {"OutputRate",
       {"Line Rate", "Read Rate", "Read Rate/2", "Read Rate/4", "Read Rate/8", "Read Rate/16", "Read Rate/32",
        "Read Rate/64", "Read Rate/128", "Read Rate/256"}},
      {"BaudRate", {"  300", "  600", " 1200", " 2400", " 4800", " 9600", "19200"}},
      {"OutputValue", {"Unfiltered", "Filtered"}},
      {"CommOptionBits", {"None", "RS232 Board", "RS485 Board", "Parallel BCD"}},
      {"AnalogOptionBit", {"None", "Analog Out Bd"}},
      {"RelayOptionBit", {"None", "Relay Board"}},
      {"LockoutJumper", {"  Lockout  jumper IS NOT installed", "  Lockout  jumper IS installed"}},
      {"TimeConstant",
       {"Automatic", "Batch", " 75 mSec", "150 mSec", "300 mSec", "600 mSec", " 1.2 Sec", " 2.4 Sec", " 4.8 Sec",
        " 9.6 Sec", "No Filter"}},
      {"Threshold", {"Low Adaptive", "High Adaptive"}},
      {"DisplayValue", {"Batch 16 Avg", "Filtered"}},
      {"PeakValue", {"Unfiltered", "Filtered"}},
      {"AlarmValue", {"Unfiltered", "Filtered"}},
      {"LeadingZeros", {"Blank Zeros", "Display Zeros"}},
      {"TranChars", {"Normal", "Start/StopChars"}},
      {"LineFreq", {"60 Hz", "50 Hz"}},
      {"Resolution", {"4. 5 Digits", "Remote Slave", "4. 5 Dig Cnt/10", "3. 5 Digits"}},
      {"ReadingsToAlarm", {"  1", "  2", "  4", "  8", " 16", " 32", " 64", "128"}},
      {"Dev1Type", {"Band", "Hysteresis"}},
      {"Dev2Type", {"Band", "Hysteresis"}},
      {"DevStatus", {"Devn Enabled", "Devn Disabled"}},
      {"AlarmState1", {"Hi Active", "Lo Active", "Disabled"}},
      {"AlarmState2", {"Hi Active", "Lo Active", "Disabled"}},
      {"Alarm1Type", {"Non-latching", "Latching"}},
      {"Alarm2Type", {"Non-latching", "Latching"}},
      {"Relay1State", {"Energized", "De-energized"}},
      {"Relay2State", {"Energized", "De-energized"}},
      {"Address", {" 0 (0)",  " 1 (1)",  " 2 (2)",  " 3 (3)",  " 4 (4)",  " 5 (5)",  " 6 (6)",  " 7 (7)",
                   " 8 (8)",  " 9 (9)",  "10 (A)",  "11 (b)",  "12 (C)",  "13 (d)",  "14 (E)",  "15 (F)",
                   "16 (0.)", "17 (1.)", "18 (2.)", "19 (3.)", "20 (4.)", "21 (5.)", "22 (6.)", "23 (7.)",
                   "24 (8.)", "25 (9.)", "26 (A.)", "27 (b.)", "28 (C.)", "29 (d.)", "30 (E.)", "31 (F.)"}},
      {"ExternalInputs",
       {"Meter Reset                                      Meter Hold",
        "Function Reset                                  Peak Display",
        "Meter Hold                                         Peak Display",
        "Meter Hold                                         Tare",
        "Peak Display                                     Tare",
        "Tare                                                     Meter Reset",
        "DP2  (Neither = DP1)                       DP3 (Both = DP4)",
        "DP3  (Neither = DP2)                       DP4 (Both = DP5)"}},
  };
  for (const auto& [name, texts] : fields) EXPECT_EQ(FieldTexts(name), texts) << name;

  const auto resolution = ResolutionTexts(0);
  EXPECT_EQ(Texts(resolution.begin(), resolution.end()), (Texts{"0.1 Deg", "Remote Slave", "0.01 Deg", " 1 Deg"}));
  EXPECT_EQ(Texts(ConditionerNames.begin(), ConditionerNames.end()),
            (Texts{"Temperature", "DC", "True RMS", "Load Cell"}));
}

TEST(Words, ModesAndRanges) {
  const Texts volts = {"  0.2V", "  2.0V", " 20.0V", "200.0V", "660.0V"};
  const Texts amps = {"  2.0mA", " 20.0mA", "200.0mA", "  5.0A "};
  const Texts millivolts = {"  20.0mV", "  50.0mV", " 100.0mV", " 250.0mV", " 500.0mV"};
  const Texts thermocouples = {"J deg F", "J deg C", "K deg F", "K deg C", "N deg F", "N deg C", "E deg F",
                               "E deg C", "t deg F", "t deg C", "S deg F", "S deg C", "r deg F", "r deg C"};
  const Texts rtds = {"4d deg F", "4d deg C", "4A deg F", "4A deg C", "3d deg F", "3d deg C", "3A deg F",
                      "3A deg C", "2d deg F", "2d deg C", "2A deg F", "2A deg C", "Short"};
  const std::pair<const char*, Texts> modes[] = {
      {"Thermocouple", thermocouples},
      {"RTD", rtds},
      {"DC V", volts},
      {"DC A", amps},
      {"RMS V", volts},
      {"RMS A", amps},
      {"Ratio", Texts(volts.begin(), volts.begin() + 3)},
      {"Strain", millivolts},
      {"DC mV", millivolts},
  };
  for (int16_t mode = 0; mode < 9; ++mode) {
    SCOPED_TRACE(modes[mode].first);
    EXPECT_EQ(std::string(InputModes[static_cast<std::size_t>(mode)].text), modes[mode].first);
    EXPECT_EQ(RangeTexts(mode), modes[mode].second);
  }
  EXPECT_EQ(ModeTexts(0), (Texts{"Thermocouple", "RTD"}));
  EXPECT_EQ(ModeTexts(1), (Texts{"DC V", "DC A", "Ratio"}));
  EXPECT_EQ(ModeTexts(2), (Texts{"RMS V", "RMS A"}));
  EXPECT_EQ(ModeTexts(3), (Texts{"Strain", "DC mV"}));
}

class MainMenuWords : public testing::FormsTest {};

TEST_F(MainMenuWords, CaptionsAndTheHelpPage) {
  MainMenu& menu = frmMMenu();
  EXPECT_EQ(menu.Caption(), "DPM MAIN  MENU");
  const std::pair<const MenuItem*, const char*> items[] = {
      {&menu.mnuFile, "&File"},
      {&menu.mnuDefaultSet, "&Default  Setup"},
      {&menu.mnuOpen, "&Open Setup"},
      {&menu.mnuSave, "&Save Setup"},
      {&menu.mnuSaveAs, "Save Setup &As"},
      {&menu.mnuExit, "E&xit"},
      {&menu.mnuDPM, "DP&M"},
      {&menu.mnuGet, "&Get Setup"},
      {&menu.mnuPut, "&Put Setup"},
      {&menu.mnuView, "&View"},
      {&menu.mnuSetup, "&Setup"},
      {&menu.mnuMenu, "Men&u"},
      {&menu.mnuCmds, "Co&mmands"},
      {&menu.mnuCmdsGo, "Comman&ds"},
      {&menu.mnuMRdgs, "&Readings"},
      {&menu.mnuList, "&List"},
      {&menu.mnuPlot, "&Plot"},
      {&menu.mnuGraph, "&Graph"},
      {&menu.mnuJmps, "&Jumpers"},
      {&menu.mnuDC, "&DC"},
      {&menu.mnuDCM, "DC Rev &M"},
      {&menu.mnuTemperature, "&Temperature"},
      {&menu.mnuRMS, "True &RMS"},
      {&menu.mnuLoadCell, "&Load Cell"},
      {&menu.mnuPS, "Po&wer Supply"},
      {&menu.mnuRS232F, "RS232/485  Rev &F"},
      {&menu.mnuRS232G, "RS232  Rev &G"},
      {&menu.mnuRS485G, "RS485  Re&v G"},
      {&menu.mnuCalib, "&Calibration"},
      {&menu.mnuMHelp, "&Help"},
  };
  for (const auto& [item, caption] : items) EXPECT_EQ(item->Caption(), caption) << item->Name();
  EXPECT_EQ(menu.lblGPText.Caption(), "Getting data from the DPM.");
  EXPECT_EQ(menu.cmdMenuHelp.Caption(), "Menu Help");

  menu.cmdMenuHelp.UserClick();
  EXPECT_EQ(menu.picInitText.PrintedLines(),
            (Texts{
                "    If the Main Menu is reached without establishing communications, then click on 'File'",
                "    to load Setup data to the program from either",
                "         1. A Default Setup file furnished with the program, or",
                "         2. A previously saved Setup file.",
                "    Once a Setup file is loaded, the View menu item becomes active to allow viewing the",
                "    Setup data.  Since communications has not been established, the 'DPM', 'Commands'",
                "    and 'Readings' Menu items are not active.",
                "",
                "    If the Main Menu is reached after establishing communications, then in addition to the",
                "    above two methods, a common choice for loading Setup data to the program is to",
                "         3. Click on the 'DPM' menu item and select 'Get Setup' to load the Setup data",
                "             currently in the DPM.",
                "    If Setup data is loaded to the program by method 3, the 'Commands' menu item becomes active.",
                "    'DPM' and 'Readings' Menu items become active immediately because communications is",
                "    established.",
                "",
                "    Click a Menu heading on and off, then press the F1 key for specific information.",
                "    If the Menu heading is Calibration, a form appears. Click End and then the F1 key.  ",
                "    When ready to exit program, click on File and select Exit.",
            }));
}

}  // namespace
}  // namespace dpm

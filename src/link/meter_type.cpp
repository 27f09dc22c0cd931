#include "link/meter_type.h"

#include "link/globals.h"
#include "platform/forms/form_manager.h"

namespace dpm {
namespace {

// The meter types, as g.AppClass holds them.
constexpr int16_t kPanelMeter = 1;
constexpr int16_t kWeightMeter = 2;
constexpr int16_t kCounter = 3;

}  // namespace

MeterType::MeterType() : Form(kName, kCaption) {
  cmdDPM.on.Click = [this] { cmdDPM_Click(); };
  cmdWtMeter.on.Click = [this] { cmdWtMeter_Click(); };
  cmdCounter.on.Click = [this] { cmdCounter_Click(); };
  cmdQuit.on.Click = [this] { cmdQuit_Click(); };
}

void MeterType::Choose(int16_t appClass) {
  g.AppClass = appClass;
  Unload();
}

void MeterType::cmdDPM_Click() { Choose(kPanelMeter); }
void MeterType::cmdWtMeter_Click() { Choose(kWeightMeter); }
void MeterType::cmdCounter_Click() { Choose(kCounter); }
void MeterType::cmdQuit_Click() { Forms().End(); }

MeterType& frmApp() { return Forms().Use<MeterType>(); }

}  // namespace dpm

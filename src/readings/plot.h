#pragma once

#include <cstdint>
#include <string>

#include "readings/plot_chart.h"

// Reading against time, in one sweep across a fixed total time. Mid-scale sits on the
// middle line and a small division is one tick; a reading off the grid runs along its edge.
namespace dpm {

// The picture's coordinates: y up, the grid from 0 to 1000 across and -200 to 200 up.
inline constexpr double kPlotLeft = -150, kPlotTop = 215, kPlotRight = 1020, kPlotBottom = -250;

// Across: the time since the run started as a share of the total, 0 to 1000.
int16_t PlotX(float seconds, float total);
// Up: the reading in small divisions of 10 from mid-scale at 0.
int16_t PlotY(float value, float mid, float small);

class Plot : public ChartScreen {
 public:
  static constexpr const char* kName = "frmPlot";

  Plot();

  TextBox& txtHorzTime = CountBox();
  Label& lblHorzTime = CountLabel();

  // The run's clock, in seconds since midnight: time paused does not count.
  float ElapsedTime = 0;
  float RunStart = 0;
  int16_t TimeExpired = 0;
  int16_t FirstPoint = 1;
  int16_t LastX = 0;
  int16_t LastY = 0;

  void cmdPause_Click() override;
  void cmdContinue_Click() override;
  void PlotLoop();

 protected:
  void StartLoop() override { PlotLoop(); }
  void OnNumber(float value) override;

 private:
  void DrawFrame();
  void DrawLabels();

  float mid_ = 0;
  float small_ = 1;
  float total_ = 1;
};

Plot& frmPlot();

}  // namespace dpm

#pragma once

#include <array>
#include <cstdint>

#include "readings/plot_chart.h"

// A histogram of the readings: 31 bins of one small division each round mid-scale, whose
// count axis doubles whenever a bar would pass the top. Readings beyond the bins blink an
// arrow at that side.
namespace dpm {

inline constexpr double kGraphLeft = -150, kGraphTop = 1030, kGraphRight = 1000, kGraphBottom = -80;
inline constexpr int kGraphBins = 31;

// The bin of a reading: mid-scale falls in bin 15. Outside 0 to 30 it is off the graph.
int16_t GraphBin(float value, float mid, float div);

class Graph : public ChartScreen {
 public:
  static constexpr const char* kName = "frmGRAPH";

  Graph();

  TextBox& txtVertScale = CountBox();
  Label& lblVertScale = CountLabel();

  // The count at the top of the bars.
  float GraphScale = 0;
  float GraphMid = 0;
  float GraphDiv = 1;
  std::array<float, kGraphBins> Counts{};
  // The blink of the arrows: 1 while shown.
  int16_t LeftMark = 0;
  int16_t RightMark = 0;

  void cmdPause_Click() override;
  void cmdContinue_Click() override;
  void GraphLoop();
  void GraphAxes();
  void GraphCountAxis();

 protected:
  void StartLoop() override { GraphLoop(); }
  void OnNumber(float value) override;

 private:
  void AddToBin(int bin);
  void Blink(int16_t& mark, double x);
};

Graph& frmGRAPH();

}  // namespace dpm

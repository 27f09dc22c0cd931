#pragma once

#include <deque>
#include <string>

#include "readings/list_readings.h"

namespace dpm::cli {

// The readings as the list's CSV: a heading line, then time received, record and number.
// A record whose number is too large to read (line noise such as "4D999", an exponent past
// any float) keeps its time and text and has no number, instead of losing the capture.
std::string CaptureCsv(const std::deque<ListedReading>& readings);

}  // namespace dpm::cli

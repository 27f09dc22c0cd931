#pragma once

#include <filesystem>

namespace dpm {

// The name of the file that keeps the setup in hand when the program stops on a fault.
inline constexpr const char* kRecoveryFileName = "Recovery.DPM";

// Whether there is a setup worth keeping: not before start-up has made the image, and not
// while it is still the untouched image of start-up. Writing one then would only replace a
// recovery file an earlier stop may have left.
bool SetupInHand();

// Writes g.SetupImage and g.MeterKind to "Recovery.DPM" in `programFolder`, laid out as a
// setup file (two lines ended by CR LF, so it opens like any other setup), and returns its
// path. The file is written beside the target first and then renamed over it, so an older
// recovery file is never left half overwritten. Raises FileFault when it can't be written.
std::filesystem::path WriteRecoveryFile(const std::filesystem::path& programFolder);

}  // namespace dpm

// Start-up on any "Settings.SSS": the file is read, its first field taken, repaired and
// read by position, and the port opened when it says so. A fault that ends the program
// (an empty file, a baud character outside the table, a number too large) is a designed
// outcome; anything else escaping, or a sanitizer report, is a finding.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz_folder.h"
#include "link/globals.h"
#include "link/startup.h"
#include "platform/fake/fake_serial_line.h"
#include "platform/fake/virtual_time.h"
#include "platform/faults.h"
#include "platform/services.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const std::filesystem::path folder = dpm::fuzz::WorkFolder("settings");
  // Start-up moves into the program's folder; the fuzzer's own files are relative to here.
  static const std::filesystem::path here = std::filesystem::current_path();
  static dpm::fake::VirtualTime time;
  static dpm::fake::FakeSerialLine line(time);

  std::ofstream(folder / "Settings.SSS", std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  dpm::ResetGlobals();
  dpm::Platform() = dpm::Services{&time, &time, &line};
  try {
    dpm::Main(folder);
  } catch (const dpm::RuntimeFault&) {
  }
  std::filesystem::current_path(here);
  if (line.PortOpen()) line.SetPortOpen(false);
  line.ClearTranscript();
  return 0;
}

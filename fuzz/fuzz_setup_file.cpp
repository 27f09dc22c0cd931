// Any file opened as a setup: the reader, the version rules, then everything that reads
// the loaded image the way the screens and dpm-cli do (the derived input facts, the text
// of every field, the front-panel menu), and dpm-cli's check of a setup file. A fault that
// ends the program (an index or a number out of range) is a designed outcome; anything
// else escaping, or a sanitizer report, is a finding.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>

#include "cli/cli_options.h"
#include "cli/setup_listing.h"
#include "fuzz_folder.h"
#include "link/globals.h"
#include "panelmenu/menu_rows.h"
#include "platform/faults.h"
#include "setup/setup_files.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const std::filesystem::path file = dpm::fuzz::WorkFolder("setup-file") / "fuzz.DPM";
  std::ofstream(file, std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));

  dpm::ResetGlobals();
  dpm::g.DefaultFirmwareRev = 4;
  try {
    if (dpm::LoadSetupFile(file)) {
      dpm::cli::ListFields();
      dpm::PanelMenuLines(dpm::BuildPanelMenu());
    }
  } catch (const dpm::RuntimeFault&) {
  }

  dpm::ResetGlobals();
  try {
    dpm::cli::LoadCheckedSetupFile(file);
    dpm::cli::FormatFields(dpm::cli::ListFields());
  } catch (const dpm::cli::UsageError&) {
  } catch (const dpm::RuntimeFault&) {
  }
  return 0;
}

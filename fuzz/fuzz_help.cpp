// Any pair of help files: the index (.R10) and the texts (.S10) that the field help reads,
// and a help context to look up in them. The input holds the context (two bytes), the
// length of the index (two bytes), the index and then the texts. A help item that cannot be
// read is a designed outcome with a message; anything escaping, or a sanitizer report, is
// a finding.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz_folder.h"
#include "help/help_files.h"

namespace {

void WriteFile(const std::filesystem::path& path, const uint8_t* data, std::size_t size) {
  std::ofstream(path, std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const std::filesystem::path folder = dpm::fuzz::WorkFolder("help");
  if (size < 4) return 0;
  const int context = static_cast<int16_t>(data[0] | (data[1] << 8));
  const std::size_t indexSize = std::min<std::size_t>(data[2] | (data[3] << 8), size - 4);
  // The files of the context's own number, so that the lookup reaches them whatever it is.
  WriteFile(folder / dpm::HelpFileName(context / 100, ".R10"), data + 4, indexSize);
  WriteFile(folder / dpm::HelpFileName(context / 100, ".S10"), data + 4 + indexSize, size - 4 - indexSize);
  const dpm::HelpItem item = dpm::ReadHelpItem(context, folder);
  if (item.Read() == !item.fault.empty()) __builtin_trap();
  return 0;
}

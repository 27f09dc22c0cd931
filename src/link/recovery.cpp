#include "link/recovery.h"

#include <fstream>
#include <system_error>

#include "link/globals.h"
#include "platform/faults.h"

namespace dpm {

bool SetupInHand() { return !g.SetupImage.empty() && g.SetupImage != std::string(128, '0'); }

std::filesystem::path WriteRecoveryFile(const std::filesystem::path& programFolder) {
  namespace fs = std::filesystem;
  const fs::path target = programFolder / kRecoveryFileName;
  const fs::path temporary = programFolder / (std::string(kRecoveryFileName) + ".tmp");

  // A setup file never holds exactly 120 digits: that length means the old format to the
  // reader, which would add its own suffix.
  std::string image = g.SetupImage;
  if (image.size() == 120) image += "00000000";
  {
    std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
    if (file) file << image << "\r\n" << g.MeterKind << "\r\n";
    file.close();
    if (!file) {
      std::error_code ignored;
      fs::remove(temporary, ignored);
      throw FileFault("Cannot write \"" + temporary.string() + "\"");
    }
  }
  std::error_code error;
  fs::rename(temporary, target, error);
  if (error) {
    std::error_code ignored;
    fs::remove(temporary, ignored);
    throw FileFault("Cannot write \"" + target.string() + "\": " + error.message());
  }
  return target;
}

}  // namespace dpm

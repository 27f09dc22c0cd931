#include "help/help_files.h"

#include <fstream>
#include <system_error>
#include <utility>

#include "platform/numeric.h"

namespace dpm {
namespace {

std::filesystem::path& FolderSet() {
  static std::filesystem::path folder;
  return folder;
}

std::string ForContext(int context) { return " (help context " + std::to_string(context) + ")."; }

uint32_t LittleEndian(const unsigned char* bytes, int count) {
  uint32_t value = 0;
  for (int i = count - 1; i >= 0; --i) value = value << 8 | bytes[i];
  return value;
}

}  // namespace

std::string HelpFileName(int fileNumber, const std::string& extension) {
  const std::string number = NumberText(static_cast<int64_t>(fileNumber));
  return "Help" + (number.size() > 2 ? number.substr(number.size() - 2) : number) + extension;
}

HelpItem ReadHelpItem(int context, const std::filesystem::path& folder) {
  const int fileNumber = context / 100;
  const int record = context % 100;
  const std::string indexName = HelpFileName(fileNumber, ".R10");
  const std::string textName = HelpFileName(fileNumber, ".S10");
  auto fault = [&](std::string message) { return HelpItem{{}, std::move(message) + ForContext(context)}; };

  if (record < 1) {
    return fault("No field has been chosen yet: " + indexName + " has no record " + std::to_string(record) +
                 ". Select a field, then press F1");
  }
  std::ifstream index(folder / indexName, std::ios::binary);
  if (!index) return fault("Help file " + indexName + " not found");
  std::ifstream text(folder / textName, std::ios::binary);
  if (!text) return fault("Help file " + textName + " not found");

  unsigned char bytes[kHelpRecordSize];
  index.seekg(static_cast<std::streamoff>((record - 1) * kHelpRecordSize));
  if (!index.read(reinterpret_cast<char*>(bytes), kHelpRecordSize)) {
    return fault(indexName + " has no record " + std::to_string(record));
  }
  const uint32_t position = LittleEndian(bytes, 4);
  const uint32_t length = LittleEndian(bytes + 4, 2);
  if (position == 0) return fault(indexName + " holds no text in record " + std::to_string(record));

  std::string item(length, '\0');
  text.seekg(static_cast<std::streamoff>(position - 1));
  if (!text.read(item.data(), static_cast<std::streamsize>(length))) {
    return fault(textName + " ends before the text of record " + std::to_string(record));
  }
  return HelpItem{std::move(item), {}};
}

HelpItem ReadHelpItem(int context) { return ReadHelpItem(context, HelpFolder()); }

std::filesystem::path HelpFolder() {
  if (!FolderSet().empty()) return FolderSet();
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (!error) return program.parent_path();
  return std::filesystem::current_path(error);
}

void SetHelpFolder(std::filesystem::path folder) { FolderSet() = std::move(folder); }

}  // namespace dpm

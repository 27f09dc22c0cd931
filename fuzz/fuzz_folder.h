#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

namespace dpm::fuzz {

// A folder of the target's own for the files it feeds the program, made once per run and
// removed when the run ends. It lies in memory where the machine allows: rewriting a file
// on disk a million times costs more than the code under test.
inline std::filesystem::path WorkFolder(const std::string& target) {
  static std::filesystem::path made;
  std::error_code error;
  const std::filesystem::path base =
      std::filesystem::is_directory("/dev/shm", error) ? "/dev/shm" : std::filesystem::temp_directory_path();
  std::string pattern = (base / ("dpm-fuzz-" + target + "-XXXXXX")).string();
  if (::mkdtemp(pattern.data()) == nullptr) abort();
  made = pattern;
  atexit([] {
    std::error_code ignored;
    std::filesystem::remove_all(made, ignored);
  });
  return made;
}

}  // namespace dpm::fuzz

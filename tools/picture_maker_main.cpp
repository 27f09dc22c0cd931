// picture_maker [--jumpers] SOURCE FOLDER: draws every picture of SOURCE into FOLDER as a BMP
// file of its own name. SOURCE is in the picture language (picture_maker.h), or with
// --jumpers a jumper table (jumper_table.h). A mistake in the source stops the build with
// its line number.
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>

#include "jumper_table.h"
#include "picture_maker.h"

int main(int argc, char** argv) {
  const bool jumpers = argc == 4 && std::strcmp(argv[1], "--jumpers") == 0;
  if (argc != 3 && !jumpers) {
    std::fprintf(stderr, "usage: picture_maker [--jumpers] SOURCE FOLDER\n");
    return 2;
  }
  const char* sourceName = argv[argc - 2];
  std::ifstream source(sourceName);
  if (!source) {
    std::fprintf(stderr, "picture_maker: cannot read %s\n", sourceName);
    return 1;
  }
  try {
    const std::filesystem::path folder = argv[argc - 1];
    std::filesystem::create_directories(folder);
    const auto pictures = jumpers ? dpm::tools::DrawJumperTable(source) : dpm::tools::DrawPictures(source);
    for (const dpm::tools::Picture& picture : pictures) dpm::tools::WriteBmp(picture.image, folder / picture.name);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s: %s\n", sourceName, e.what());
    return 1;
  }
  return 0;
}

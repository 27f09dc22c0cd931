// picture_maker SOURCE FOLDER: draws every picture of SOURCE into FOLDER as a BMP file of
// its own name. A mistake in the source stops the build with its line number.
#include <cstdio>
#include <exception>
#include <fstream>

#include "picture_maker.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: picture_maker SOURCE FOLDER\n");
    return 2;
  }
  std::ifstream source(argv[1]);
  if (!source) {
    std::fprintf(stderr, "picture_maker: cannot read %s\n", argv[1]);
    return 1;
  }
  try {
    const std::filesystem::path folder = argv[2];
    std::filesystem::create_directories(folder);
    for (const dpm::tools::Picture& picture : dpm::tools::DrawPictures(source))
      dpm::tools::WriteBmp(picture.image, folder / picture.name);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s: %s\n", argv[1], e.what());
    return 1;
  }
  return 0;
}

#pragma once

#include <optional>
#include <string>

#include <QPixmap>

#include "platform/dialogs.h"

namespace dpm::qt {

// Pictures by file name from the program's folder (the current directory; the name is
// matched without regard to case when it is not there as written), or by number: picture N
// is the file "Jumper<N>.BMP" of that folder (PictureFileOfNumber).
std::optional<PictureRef> FindPictureFile(const std::string& fileName);
std::optional<PictureRef> FindPictureNumber(int number);

// The image of a picture found before; a null pixmap when it has gone.
QPixmap PixmapOf(const PictureRef& picture);

}  // namespace dpm::qt

#include "platform/qt/qt_pictures.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>

#include "platform/forms/picture.h"
#include "platform/qt/qt_units.h"

namespace dpm::qt {
namespace {

QString PathOfFile(const std::string& fileName) {
  const QString name = QString::fromStdString(fileName);
  if (QFileInfo::exists(name)) return name;
  const QFileInfo info(name);
  const QDir dir = info.dir();
  for (const QString& entry : dir.entryList(QDir::Files)) {
    if (entry.compare(info.fileName(), Qt::CaseInsensitive) == 0) return dir.filePath(entry);
  }
  return {};
}

// The program's numbered pictures are the jumper settings of the calibration ranges, drawn
// at build time into the program's folder as "Jumper<number>.BMP".
QString PathOfNumber(int number) { return PathOfFile(PictureFileOfNumber(number)); }

std::optional<PictureRef> RefOf(const QString& path, PictureRef ref) {
  if (path.isEmpty()) return std::nullopt;
  const QSize size = QImageReader(path).size();
  if (!size.isValid()) return std::nullopt;
  ref.widthTwips = ToTwips(size.width());
  ref.heightTwips = ToTwips(size.height());
  return ref;
}

}  // namespace

std::optional<PictureRef> FindPictureFile(const std::string& fileName) {
  return RefOf(PathOfFile(fileName), PictureRef{fileName, 0, 0, 0});
}

std::optional<PictureRef> FindPictureNumber(int number) {
  return RefOf(PathOfNumber(number), PictureRef{{}, number, 0, 0});
}

QPixmap PixmapOf(const PictureRef& picture) {
  if (picture.Empty()) return {};
  const QString path = picture.fileName.empty() ? PathOfNumber(picture.number) : PathOfFile(picture.fileName);
  return path.isEmpty() ? QPixmap() : QPixmap(path);
}

}  // namespace dpm::qt

#include <QImageReader>
#include <QScopedValueRollback>
#include <algorithm>
#include <cmath>
#include <utility>

#include "graphics/frmGrafik.h"
#include "graphics/picture_dialog.h"
#include "graphics/pixel_image.h"

namespace kelvo {

namespace {

constexpr int kLargestPictureSide = 20000;

// Every kind that Qt reads here.
std::string PictureFilter() {
  QStringList patterns;
  for (const QByteArray& format : QImageReader::supportedImageFormats()) {
    patterns << QStringLiteral("*.") + QString::fromLatin1(format);
  }
  return "Bilder |" + patterns.join(u' ').toStdString();
}

// A photograph is made smaller while it is still the toolkit's.
PictureSource SourceOf(const QImage& image) {
  const double pixels = static_cast<double>(image.width()) * image.height();
  const double share = std::sqrt(static_cast<double>(PictureSource::kMaxPixels) / pixels);
  if (share >= 1) return PictureSource(ToPicture(image));
  const QSize size = (QSizeF(image.size()) * share).toSize().expandedTo({1, 1});
  return PictureSource(
      ToPicture(image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)));
}

}  // namespace

void frmGrafik::mnuGrafikBild_Click() {
  const auto path = person_.OpenFile("Bild einfügen", PictureFilter());
  if (path) InsertFile(QString::fromStdString(*path), std::nullopt);
}

void frmGrafik::InsertFile(const QString& path, std::optional<Point> at) {
  QImageReader reader(path);
  reader.setDecideFormatFromContent(true);
  reader.setAutoTransform(true);
  const QSize size = reader.size();
  const bool tooLarge = size.width() > kLargestPictureSide || size.height() > kLargestPictureSide;
  const QImage image = tooLarge ? QImage() : reader.read();
  if (image.isNull()) {
    const QString reason = tooLarge ? tr("Es ist zu groß.") : reader.errorString();
    person_.Message(
        tr("Das Bild konnte nicht gelesen werden:\n%1\n%2").arg(path, reason).toStdString(),
        Icon::Exclamation);
    return;
  }
  InsertImage(image, at);
}

Colour frmGrafik::BlackThreshold() const {
  return static_cast<Colour>(
      std::clamp<std::int64_t>(host_.Terminal().blackThreshold, 0, std::int64_t{kWhite} + 1));
}

void frmGrafik::InsertImage(const QImage& image, std::optional<Point> at) {
  PictureDialog dialog(SourceOf(image), DisplaySize(), BlackThreshold(), this);
  if (dialog.exec() != QDialog::Accepted) return;
  DrawingObject object = dialog.Result();
  const Box box = BoundsOf(object);
  const Point half{box.Width() / 2, box.Height() / 2};
  const Point corner = at ? Point{at->x - half.x, at->y - half.y} : PlaceFor(box);
  Drawing drawing = document_.Current();
  Paste(drawing, {std::move(object)}, corner.x, corner.y);
  document_.Commit(std::move(drawing));
}

// The picture's upper left corner stays. One that has no source yet is its own.
void frmGrafik::mnuGrafikBildBearbeiten_Click() {
  if (pictureOpen_) return;
  const QScopedValueRollback<bool> open(pictureOpen_, true);
  typing_->End();
  const Drawing before = document_.Current();
  const auto index = OnlySelected(before);
  if (!index || before[*index].kind != Kind::Picture) return person_.Beep();
  DrawingObject object = before[*index];
  if (object.source.Empty()) object.source = PictureSource(object.picture);
  if (object.source.Empty()) return person_.Beep();  // without a pixel
  PictureDialog dialog(object, DisplaySize(), BlackThreshold(), this);
  // The drawing may have become another one while the dialog was open.
  if (dialog.exec() != QDialog::Accepted || !(document_.Current() == before)) return;
  const Box box = BoundsOf(object);
  DrawingObject result = dialog.Result();
  MoveBy(result, box.left, box.top - BoundsOf(result).top);
  object.source = std::move(result.source);
  object.preparation = result.preparation;
  object.picture = std::move(result.picture);
  SetCorners(object, BoundsOf(result));
  Edit([&](Drawing& drawing) { drawing[*index] = object; });
}

}  // namespace kelvo

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QImageReader>
#include <QLabel>
#include <QMimeData>
#include <QScrollArea>
#include <QUrl>
#include <algorithm>

#include "base/guard.h"
#include "graphics/frmGrafik.h"
#include "graphics/picture_dialog.h"
#include "graphics/pixel_image.h"
#include "graphics/wmf.h"

namespace kelvo {

namespace {

constexpr const char* kWmfFilter = "Vistel(WMF) |*.wmf";
constexpr int kLargestPictureSide = 20000;

// Every kind that Qt reads here.
std::string PictureFilter() {
  QStringList patterns;
  for (const QByteArray& format : QImageReader::supportedImageFormats()) {
    patterns << QStringLiteral("*.") + QString::fromLatin1(format);
  }
  return "Bilder |" + patterns.join(u' ').toStdString();
}

}  // namespace

bool frmGrafik::MayDiscard() {
  return !document_.Unsaved() || document_.Current().empty() ||
         person_.Ask("Die Zeichnung ist nicht gespeichert. Trotzdem verwerfen ?",
                     Icon::Exclamation);
}

bool frmGrafik::MayEnd() {
  if (!MayDiscard()) return false;
  draftTimer_.stop();
  draft_.Remove();
  return true;
}

void frmGrafik::Clear() {
  document_.Commit({});
  document_.MarkSaved();
  draft_.Remove();
}

WmfDrawing frmGrafik::FromWmf(std::string_view bytes) const {
  return ReadWmf(bytes, Display->DisplayWidth(), Display->DisplayHeight(), fonts_);
}

WmfFile frmGrafik::ToWmf(const Drawing& drawing) const {
  return WriteWmf(drawing, Display->DisplayWidth(), Display->DisplayHeight());
}

void frmGrafik::LoadDrawing() {
  if (!MayDiscard()) return;
  if (const auto path = person_.OpenFile("Datei laden", kWmfFilter)) LoadFile(*path);
}

void frmGrafik::LoadFile(const std::string& path) {
  const auto bytes = ReadFile(path, WmfLimits().fileBytes);
  if (!bytes) {
    person_.Message("Die Datei konnte nicht gelesen werden:\n" + path, Icon::Exclamation);
    return;
  }
  const WmfDrawing loaded = FromWmf(*bytes);
  if (!loaded.error.empty()) {
    person_.Message(loaded.error + "\n" + path, Icon::Exclamation);
    return;
  }
  document_.Commit(loaded.drawing);
  document_.MarkSaved();
  draft_.Remove();
  Q_EMIT FileUsed(QString::fromStdString(path));
  SetZoom(Display->Zoom(), {});
  ReportLoaded(loaded);
}

void frmGrafik::ReportLoaded(const WmfDrawing& loaded) {
  QStringList skipped;
  for (const auto& [name, count] : loaded.skipped) {
    skipped << QStringLiteral("%1 x %2").arg(count).arg(QString::fromStdString(name));
  }
  QStringList report;
  if (!skipped.isEmpty()) {
    report << tr("Nicht übernommen wurden: %1").arg(skipped.join(QStringLiteral(", ")));
  }
  const std::size_t unsent = CountKind(loaded.drawing, Kind::Vertices);
  if (unsent > 0) {
    report << tr("Die Zeichnung enthält Vielecke (%1). Sie werden gezeichnet, aber nicht zum "
                 "Terminal gesendet. Das Menü Objekt kann sie in Linienzüge umwandeln.")
                  .arg(unsent);
  }
  if (!report.isEmpty()) person_.Message(report.join(u'\n').toStdString(), Icon::Information);
}

bool frmGrafik::SaveDrawing() {
  const auto path = person_.SaveFile("Datei speichern", kWmfFilter);
  if (!path) return false;
  const WmfFile file = ToWmf(document_.Current());
  if (!file.error.empty()) {
    person_.Message(file.error, Icon::Exclamation);
    return false;
  }
  if (!WriteFile(*path, file.bytes)) {
    person_.Message("Die Datei konnte nicht geschrieben werden:\n" + *path, Icon::Exclamation);
    return false;
  }
  document_.MarkSaved();
  draft_.Remove();
  Q_EMIT FileUsed(QString::fromStdString(*path));
  return true;
}

void frmGrafik::OfferDraft() {
  const auto bytes = draft_.Read();
  if (!bytes) return;
  const WmfDrawing draft = FromWmf(*bytes);
  const bool wanted = draft.error.empty() && !draft.drawing.empty() &&
                      person_.Ask(
                          "Eine nicht gespeicherte Zeichnung ist vom letzten Mal übrig. "
                          "Wiederherstellen ?");
  if (!wanted) {
    draft_.Remove();
    return;
  }
  document_.Commit(draft.drawing);
  document_.MarkUnsaved();
  ReportLoaded(draft);
}

void frmGrafik::KeepDraft() {
  if (!document_.Unsaved() || document_.Current().empty()) {
    draft_.Remove();
    return;
  }
  const WmfFile file = ToWmf(document_.Current());
  if (file.error.empty()) draft_.Write(file.bytes);
}

void frmGrafik::mnuGrafikNeu_Click() { host_.NewDrawing(); }

void frmGrafik::mnuGrafikLaden_Click() { LoadDrawing(); }

void frmGrafik::mnuGrafikSpeichern_Click() { SaveDrawing(); }

void frmGrafik::mnuGrafikBildEEProm_Click() { host_.SaveBMPinEEProm(); }

void frmGrafik::mnuGrafikSenden_Click() {
  sendPending_ = false;
  host_.Send();
}

void frmGrafik::mnuGrafikSchliessen_Click() { close(); }

// ---- Pictures ----

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

void frmGrafik::InsertImage(const QImage& image, std::optional<Point> at) {
  const auto threshold = static_cast<Colour>(
      std::clamp<std::int64_t>(host_.Terminal().blackThreshold, 0, std::int64_t{kWhite} + 1));
  PictureDialog dialog(image, DisplaySize(), threshold, this);
  if (dialog.exec() != QDialog::Accepted) return;
  DrawingObject object;
  object.kind = Kind::Picture;
  object.picture = dialog.Result();
  const Point middle = at.value_or(VisibleMiddle());
  const int left = middle.x - object.picture.Width() / 2;
  const int bottom = middle.y - object.picture.Height() / 2;
  SetCorners(object, {left, bottom, left + object.picture.Width() - 1,
                      bottom + object.picture.Height() - 1});
  Drawing drawing = document_.Current();
  Paste(drawing, {std::move(object)}, 0, 0);
  document_.Commit(std::move(drawing));
}

// One object for each line that holds something, below each other.
void frmGrafik::InsertText(const QString& text) {
  Point topLeft = VisibleMiddle();
  std::vector<DrawingObject> objects;
  for (const QString& line : text.split(u'\n')) {
    const auto wire = ToWireText(line.trimmed());
    if (!wire) {
      person_.Message("Der Text enthält Zeichen, die das Terminal nicht darstellen kann.",
                      Icon::Exclamation);
      return;
    }
    if (wire->empty()) continue;
    objects.push_back(MakeText(topLeft, style_->Style().text, *wire, fonts_));
    topLeft.y -= BoundsOf(objects.back()).Height();
  }
  Drawing drawing = document_.Current();
  Paste(drawing, std::move(objects), 0, 0);
  document_.Commit(std::move(drawing));
}

// A file that was dropped or pasted: a drawing is loaded, a picture becomes part of the drawing.
void frmGrafik::TakeFile(const QString& path, std::optional<Point> at) {
  if (!path.endsWith(QStringLiteral(".wmf"), Qt::CaseInsensitive)) {
    InsertFile(path, at);
  } else if (MayDiscard()) {
    LoadFile(path.toStdString());
  }
}

bool frmGrafik::InsertMime(const QMimeData& mime, std::optional<Point> at) {
  if (mime.hasUrls() && mime.urls().first().isLocalFile()) {
    TakeFile(mime.urls().first().toLocalFile(), at);
  } else if (const auto image = qvariant_cast<QImage>(mime.imageData()); !image.isNull()) {
    InsertImage(image, at);
  } else if (mime.hasText()) {
    InsertText(mime.text());
  } else {
    return false;
  }
  return true;
}

Point frmGrafik::VisibleMiddle() const {
  const QRect visible = Display->visibleRegion().boundingRect();
  if (visible.isEmpty()) return {Display->DisplayWidth() / 2, Display->DisplayHeight() / 2};
  return Display->ToDrawing(visible.center());
}

void frmGrafik::dragEnterEvent(QDragEnterEvent* event) {
  const QMimeData& mime = *event->mimeData();
  if (mime.hasUrls() || mime.hasImage() || mime.hasText()) event->acceptProposedAction();
}

// The picture's dialog waits until the drop is over: the program that it came from stands still
// until then, and takes its data back.
void frmGrafik::dropEvent(QDropEvent* event) {
  const Point at = Display->ToDrawing(Display->mapFrom(this, event->position().toPoint()));
  const auto dropped = std::make_shared<QMimeData>();
  const QMimeData& mime = *event->mimeData();
  if (mime.hasUrls()) dropped->setUrls(mime.urls());
  if (mime.hasImage()) dropped->setImageData(mime.imageData());
  if (mime.hasText()) dropped->setText(mime.text());
  event->acceptProposedAction();
  QTimer::singleShot(0, this, [this, dropped, at] {
    Guarded(person_, "Display_Drop", [&] { InsertMime(*dropped, at); });
  });
}

}  // namespace kelvo

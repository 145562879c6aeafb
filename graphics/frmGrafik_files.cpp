#include <QBuffer>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMimeData>
#include <QPrinter>
#include <QScrollArea>
#include <QStatusBar>
#include <QUrl>
#include <algorithm>

#include "base/guard.h"
#include "graphics/frmGrafik.h"
#include "graphics/pic_reader.h"
#include "graphics/pixel_image.h"
#include "graphics/print_drawing.h"
#include "graphics/stored_dialog.h"
#include "graphics/symbol_panel.h"
#include "graphics/wmf.h"
#include "widgets/files.h"

namespace kelvo {

namespace {

constexpr const char* kWmfFilter = "Vistel(WMF) |*.wmf";
constexpr const char* kDrawingFilter = "Vistel(WMF) |*.wmf|Text (txt) |*.txt";

// What is dropped here stays where it came from, whatever the other program proposes.
void TakeCopy(QDropEvent& event) {
  event.setDropAction(Qt::CopyAction);
  event.accept();
}

bool IsTextFile(const std::string& path) {
  return QString::fromStdString(path).endsWith(QStringLiteral(".txt"), Qt::CaseInsensitive);
}

bool HoldsCommands(const std::string& path) {
  const auto bytes = IsTextFile(path) ? ReadFile(path, WmfLimits().fileBytes) : std::nullopt;
  return bytes && LooksLikePic(*bytes);
}

}  // namespace

bool frmGrafik::MayDiscard() {
  typing_->End();
  if (!document_.Unsaved() || document_.Whole().empty()) return true;
  const Decision decision = person_.AskToSave("Die Zeichnung ist nicht gespeichert.");
  return decision == Decision::Discard || (decision == Decision::Save && SaveDrawing());
}

bool frmGrafik::MayEnd() {
  if (!MayDiscard()) return false;
  draftTimer_.stop();
  draft_.Remove();
  return true;
}

void frmGrafik::Clear() {
  typing_->End();
  document_.Replace({});
  path_.clear();
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
  if (const auto path = person_.OpenFile("Datei laden", kDrawingFilter)) LoadFile(*path);
}

// A metafile, or a text of drawing commands.
LoadedDrawing frmGrafik::ReadDrawing(const std::string& path) const {
  LoadedDrawing failed;
  const auto limit = static_cast<qint64>(WmfLimits().fileBytes);
  if (QFileInfo(QString::fromStdString(path)).size() > limit) {
    failed.error = "Die Datei ist zu groß.\n" + path;
    return failed;
  }
  const auto bytes = ReadFile(path, WmfLimits().fileBytes);
  if (!bytes) {
    failed.error = "Die Datei konnte nicht gelesen werden:\n" + path;
    return failed;
  }
  LoadedDrawing loaded =
      IsTextFile(path) || LooksLikePic(*bytes) ? FromCommands(*bytes) : FromWmf(*bytes);
  if (!loaded.error.empty()) loaded.error += "\n" + path;
  return loaded;
}

LoadedDrawing frmGrafik::FromCommands(std::string_view commands) const {
  return ReadPic(commands, Display->DisplayHeight(), fonts_);
}

void frmGrafik::LoadFile(const std::string& path) {
  typing_->End();
  if (!TakeLoaded(ReadDrawing(path), IsTextFile(path) ? std::string() : path)) return;
  Q_EMIT FileUsed(QString::fromStdString(path));
}

bool frmGrafik::TakeLoaded(const LoadedDrawing& loaded, const std::string& path) {
  if (!loaded.error.empty()) {
    person_.Message(loaded.error, Icon::Exclamation);
    return false;
  }
  document_.Replace(loaded.drawing);
  path_ = path;
  document_.MarkSaved();
  draft_.Remove();
  SetZoom(Display->Zoom(), {});
  ReportLoaded(loaded);
  return true;
}

// Macros that draw are listed behind the drawings.
void frmGrafik::mnuGrafikDatenbank_Click() {
  if (!MayDiscard()) return;
  std::vector<StoredDialog::Choice> choices;
  for (const GraphicsHost::StoredText& stored : host_.StoredTexts()) {
    LoadedDrawing loaded = FromCommands(stored.commands);
    if (!stored.isDrawing && (!loaded.error.empty() || loaded.drawing.empty())) continue;
    const QString name = QString::fromStdString(stored.name);
    choices.push_back({stored.isDrawing ? name : tr("%1 (Makro)").arg(name), std::move(loaded)});
  }
  if (choices.empty()) return person_.Message("In der Datenbank ist keine Zeichnung.");
  StoredDialog dialog(
      std::move(choices), [this](const Drawing& drawing) { return Pixels(drawing); }, this);
  if (dialog.exec() == QDialog::Accepted) TakeLoaded(dialog.Chosen(), {});
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
                 "Terminal gesendet. Das Menü Objekt kann sie in Linienzüge oder Bilder umwandeln.")
                  .arg(unsent);
  }
  if (!report.isEmpty()) person_.Message(report.join(u'\n').toStdString(), Icon::Information);
}

bool frmGrafik::SaveDrawing() {
  const auto path = person_.SaveFile("Datei speichern", kWmfFilter);
  return path && StoreDrawing(*path);
}

bool frmGrafik::StoreDrawing(const std::string& path) {
  typing_->End();
  const WmfFile file = ToWmf(document_.Whole());
  if (!file.error.empty()) {
    person_.Message(file.error, Icon::Exclamation);
    return false;
  }
  if (const auto reason = WriteFile(path, file.bytes)) {
    person_.Message("Die Datei konnte nicht geschrieben werden:\n" + path + "\n" + *reason,
                    Icon::Exclamation);
    return false;
  }
  path_ = path;
  document_.MarkSaved();
  draft_.Remove();
  Q_EMIT FileUsed(QString::fromStdString(path));
  return true;
}

void frmGrafik::OfferDraft() {
  const auto left = draft_.LeftOver(WmfLimits().fileBytes);
  if (!left || !person_.IsThere()) return;
  WmfDrawing kept;
  kept.error = left->problem;
  if (kept.error.empty()) kept = FromWmf(left->bytes);
  if (!kept.error.empty() || kept.drawing.empty()) {
    const std::string problem = kept.error.empty() ? "die Zeichnung ist leer" : kept.error;
    return person_.Message(LostDraftText(problem, draft_.SetAside()), Icon::Exclamation);
  }
  const bool wanted = person_.Ask(
      "Eine nicht gespeicherte Zeichnung ist vom letzten Mal übrig. "
      "Wiederherstellen ?",
      Icon::Question, {}, Proposal::YesAlways, DeclinedDraftHint(draft_.PlaceAside()));
  if (!person_.IsThere()) return;
  if (!wanted) return static_cast<void>(draft_.SetAside());
  draft_.Take();
  document_.Replace(kept.drawing);
  document_.MarkUnsaved();
  ReportLoaded(kept);
}

void frmGrafik::KeepDraft() {
  if (!document_.Unsaved() || document_.Whole().empty()) {
    draft_.Remove();
    return;
  }
  const WmfFile file = ToWmf(document_.Whole());
  const auto reason = file.error.empty() ? draft_.Write(file.bytes) : file.error;
  if (!reason) return;
  statusBar()->showMessage(
      tr("Der Entwurf kann nicht gesichert werden: %1").arg(QString::fromStdString(*reason)));
}

void frmGrafik::mnuGrafikNeu_Click() { host_.NewDrawing(); }

void frmGrafik::mnuGrafikLaden_Click() { LoadDrawing(); }

// Under its name, once it has one.
std::string frmGrafik::FileName() const {
  return QFileInfo(QString::fromStdString(path_)).fileName().toStdString();
}

void frmGrafik::mnuGrafikSpeichern_Click() { path_.empty() ? SaveDrawing() : StoreDrawing(path_); }

void frmGrafik::mnuGrafikPng_Click() {
  const auto path = person_.SaveFile("Als PNG exportieren", "PNG |*.png");
  if (!path) return;
  const auto typed =
      person_.Input("Vergrößerung (1 … 16 Bildpunkte je Punkt)", std::to_string(Display->Zoom()));
  if (!typed) return;
  const int scale = std::clamp(QString::fromStdString(*typed).toInt(), 1, 16);
  const QImage pixels = Pixels();
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  pixels.scaled(pixels.size() * scale).save(&buffer, "PNG");
  if (const auto reason = WriteFile(*path, bytes.toStdString())) {
    person_.Message("Die Datei konnte nicht geschrieben werden:\n" + *path + "\n" + *reason,
                    Icon::Exclamation);
  }
}

// As it is now, whatever happens while the dialog is open.
void frmGrafik::mnuGrafikDrucken_Click() {
  const QString name = QString::fromStdString(FileName());
  const PrintedDrawing drawing{Pixels(), name.isEmpty() ? tr("Zeichnung ohne Namen") : name};
  QPrinter printer(QPrinter::HighResolution);
  printer.setDocName(drawing.name);
  printer.setCreator(QStringLiteral("kelvo"));
  const bool wide = drawing.pixels.width() > drawing.pixels.height();
  printer.setPageOrientation(wide ? QPageLayout::Landscape : QPageLayout::Portrait);
  if (!host_.ChoosePrinter(printer)) return;
  if (!PrintDrawing(printer, drawing)) {
    person_.Message("Die Zeichnung konnte nicht gedruckt werden.", Icon::Exclamation);
  }
}

// Into the drawing that is there, where it lay in its own.
void frmGrafik::mnuGrafikZeichnung_Click() {
  const auto path = person_.OpenFile("Zeichnung einfügen", kDrawingFilter);
  if (!path) return;
  const LoadedDrawing loaded = ReadDrawing(*path);
  if (!loaded.error.empty()) return person_.Message(loaded.error, Icon::Exclamation);
  Edit([&](Drawing& drawing) { Paste(drawing, loaded.drawing, 0, 0); });
  ReportLoaded(loaded);
}

void frmGrafik::mnuGrafikBildEEProm_Click() {
  host_.SaveBMPinEEProm(GraphicsHost::BitmapTo::Selected);
}

void frmGrafik::mnuGrafikSenden_Click() { SendNow(); }

void frmGrafik::mnuGrafikSchliessen_Click() { close(); }

// ---- What others hand over ----

// One object for each line that holds something, below each other.
void frmGrafik::InsertText(const QString& text, std::optional<Point> at) {
  Point topLeft = at.value_or(VisibleMiddle());
  std::vector<DrawingObject> objects;
  for (QString line : PlainForms(text).split(u'\n')) {
    while (!line.isEmpty() && line.back().isSpace()) line.chop(1);
    const auto wire = ToWireText(line);
    if (!wire) {
      person_.Message("Der Text enthält Zeichen, die das Terminal nicht darstellen kann.",
                      Icon::Exclamation, {},
                      tr("Das erste davon ist: %1").arg(FirstForeign(line)).toStdString());
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
  const bool isDrawing = path.endsWith(QStringLiteral(".wmf"), Qt::CaseInsensitive) ||
                         HoldsCommands(path.toStdString());
  if (!isDrawing) {
    InsertFile(path, at);
  } else if (MayDiscard()) {
    LoadFile(path.toStdString());
  }
}

bool frmGrafik::InsertMime(const QMimeData& mime, std::optional<Point> at) {
  typing_->End();
  if (mime.hasUrls() && mime.urls().first().isLocalFile()) {
    for (const QUrl& file : mime.urls()) {
      if (file.isLocalFile()) TakeFile(file.toLocalFile(), at);
    }
  } else if (const auto image = qvariant_cast<QImage>(mime.imageData()); !image.isNull()) {
    InsertImage(image, at);
  } else if (mime.hasText()) {
    InsertText(mime.text(), at);
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

Point frmGrafik::PlaceFor(const Box& box) const {
  const Point middle = VisibleMiddle();
  return OntoDisplay({middle.x - box.Width() / 2, middle.y - box.Height() / 2}, box);
}

Point frmGrafik::OntoDisplay(Point corner, const Box& box) const {
  const auto fitted = [](int from, int length, int display) {
    return length > display ? from : std::clamp(from, 0, display - length);
  };
  return {fitted(corner.x, box.Width(), Display->DisplayWidth()),
          fitted(corner.y, box.Height(), Display->DisplayHeight())};
}

void frmGrafik::dragEnterEvent(QDragEnterEvent* event) {
  const QMimeData& mime = *event->mimeData();
  const bool symbol = mime.hasFormat(SymbolList::MimeType());
  if (symbol || mime.hasUrls() || mime.hasImage() || mime.hasText()) TakeCopy(*event);
}

// The picture's dialog waits until the drop is over: the program that it came from stands still
// until then, and takes its data back.
void frmGrafik::dropEvent(QDropEvent* event) {
  if (DropSymbol(*event)) return TakeCopy(*event);
  const Point at = Display->ToDrawing(Display->mapFrom(this, event->position().toPoint()));
  const auto dropped = std::make_shared<QMimeData>();
  const QMimeData& mime = *event->mimeData();
  if (mime.hasUrls()) dropped->setUrls(mime.urls());
  if (mime.hasImage()) dropped->setImageData(mime.imageData());
  if (mime.hasText()) dropped->setText(mime.text());
  TakeCopy(*event);
  QTimer::singleShot(0, this, [this, dropped, at] {
    Guarded(person_, "Display_Drop", [&] { InsertMime(*dropped, at); });
  });
}

}  // namespace kelvo

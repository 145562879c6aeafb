#include "graphics/wmf_player.h"

#include <algorithm>
#include <cstring>

#include "graphics/dib.h"
#include "graphics/wmf_format.h"

namespace kelvo::wmf {

struct Player::Row {
  std::uint8_t type;
  Action action;
  const char* name;  // of what is skipped, for the operator
};

// Types of record by the low byte of their number. What is not listed here is unknown.
const Player::Row Player::kRows[] = {
    {U_WMR_SETBKCOLOR, &Player::SetBkColor, ""},
    {U_WMR_SETBKMODE, &Player::SetBkMode, ""},
    {U_WMR_SETROP2, &Player::SetRop2, ""},
    {U_WMR_SETTEXTCOLOR, &Player::SetTextColor, ""},
    {U_WMR_SETTEXTALIGN, &Player::SetTextAlign, ""},
    {U_WMR_SETWINDOWORG, &Player::SetWindowOrigin, ""},
    {U_WMR_SETWINDOWEXT, &Player::SetWindowExtent, ""},
    {U_WMR_SETMAPMODE, &Player::Ignore, ""},
    {U_WMR_SETRELABS, &Player::Ignore, ""},
    {U_WMR_SETPOLYFILLMODE, &Player::SetPolyFillMode, ""},
    {U_WMR_SETSTRETCHBLTMODE, &Player::Ignore, ""},
    {U_WMR_SETTEXTCHAREXTRA, &Player::Ignore, ""},
    {U_WMR_SETTEXTJUSTIFICATION, &Player::Ignore, ""},
    {U_WMR_SETMAPPERFLAGS, &Player::Ignore, ""},
    {U_WMR_REALIZEPALETTE, &Player::Ignore, ""},
    {U_WMR_SELECTPALETTE, &Player::Ignore, ""},
    {U_WMR_SETPALENTRIES, &Player::Ignore, ""},
    {U_WMR_ANIMATEPALETTE, &Player::Ignore, ""},
    {U_WMR_RESIZEPALETTE, &Player::Ignore, ""},
    {U_WMR_SAVEDC, &Player::SaveContext, ""},
    {U_WMR_RESTOREDC, &Player::RestoreContext, ""},
    {U_WMR_SELECTOBJECT, &Player::SelectTool, ""},
    {U_WMR_DELETEOBJECT, &Player::DeleteTool, ""},
    {U_WMR_CREATEPENINDIRECT, &Player::CreatePen, ""},
    {U_WMR_CREATEBRUSHINDIRECT, &Player::CreateBrush, ""},
    {U_WMR_CREATEFONTINDIRECT, &Player::CreateFont, ""},
    {U_WMR_CREATEPATTERNBRUSH, &Player::CreatePatternBrush, ""},
    {U_WMR_DIBCREATEPATTERNBRUSH, &Player::CreatePatternBrush, ""},
    {U_WMR_CREATEPALETTE, &Player::CreateOther, ""},
    {U_WMR_CREATEREGION, &Player::CreateOther, ""},
    {U_WMR_MOVETO, &Player::MoveTo, ""},
    {U_WMR_LINETO, &Player::LineTo, ""},
    {U_WMR_POLYLINE, &Player::DrawPolyline, ""},
    {U_WMR_POLYGON, &Player::DrawPolygon, ""},
    {U_WMR_POLYPOLYGON, &Player::DrawPolyPolygon, "Füllung"},
    {U_WMR_RECTANGLE, &Player::DrawRectangle, ""},
    {U_WMR_ROUNDRECT, &Player::DrawRoundRectangle, "Füllung"},
    {U_WMR_ELLIPSE, &Player::DrawEllipse, ""},
    {U_WMR_SETPIXEL, &Player::DrawPixel, ""},
    {U_WMR_PATBLT, &Player::PaintBox, "Rasteroperation"},
    {U_WMR_TEXTOUT, &Player::DrawTextOut, ""},
    {U_WMR_EXTTEXTOUT, &Player::DrawExtTextOut, ""},
    {U_WMR_STRETCHDIB, &Player::StretchDib, "Bild"},
    {U_WMR_DIBSTRETCHBLT, &Player::DibStretchBlt, "Bild"},
    {U_WMR_DIBBITBLT, &Player::DibBitBlt, "Bild"},
    {U_WMR_SETDIBTODEV, &Player::SetDibToDevice, "Bild"},
    {U_WMR_ESCAPE, &Player::ReadEscape, "Gerätebefehl"},
    {U_WMR_BITBLT, &Player::SkipRecord, "Bild"},
    {U_WMR_STRETCHBLT, &Player::SkipRecord, "Bild"},
    {U_WMR_ARC, &Player::DrawArc, "Füllung"},
    {U_WMR_PIE, &Player::DrawPie, "Füllung"},
    {U_WMR_CHORD, &Player::DrawChord, "Füllung"},
    {U_WMR_FLOODFILL, &Player::SkipRecord, "Flächenfüllung"},
    {U_WMR_EXTFLOODFILL, &Player::SkipRecord, "Flächenfüllung"},
    {U_WMR_FILLREGION, &Player::SkipRecord, "Bereich"},
    {U_WMR_FRAMEREGION, &Player::SkipRecord, "Bereich"},
    {U_WMR_INVERTREGION, &Player::SkipRecord, "Bereich"},
    {U_WMR_PAINTREGION, &Player::SkipRecord, "Bereich"},
    {U_WMR_SELECTCLIPREGION, &Player::SkipRecord, "Beschneidung"},
    {U_WMR_EXCLUDECLIPRECT, &Player::SkipRecord, "Beschneidung"},
    {U_WMR_INTERSECTCLIPRECT, &Player::SkipRecord, "Beschneidung"},
    {U_WMR_OFFSETCLIPRGN, &Player::SkipRecord, "Beschneidung"},
    {U_WMR_SETVIEWPORTORG, &Player::SkipRecord, "Ausschnitt"},
    {U_WMR_SETVIEWPORTEXT, &Player::SkipRecord, "Ausschnitt"},
    {U_WMR_OFFSETWINDOWORG, &Player::SkipRecord, "Ausschnitt"},
    {U_WMR_SCALEWINDOWEXT, &Player::SkipRecord, "Ausschnitt"},
    {U_WMR_OFFSETVIEWPORTORG, &Player::SkipRecord, "Ausschnitt"},
    {U_WMR_SCALEVIEWPORTEXT, &Player::SkipRecord, "Ausschnitt"},
};

const Player::Row* Player::FindRow(std::uint8_t type) {
  const auto found = std::find_if(std::begin(kRows), std::end(kRows),
                                  [type](const Row& r) { return r.type == type; });
  return found == std::end(kRows) ? nullptr : found;
}

Player::Player(Placement placement, const DeviceFonts& fonts, const WmfLimits& limits)
    : limits_(limits),
      builder_(limits),
      canvas_(placement, builder_, fonts),
      tools_(limits.handles),
      sources_(limits) {}

bool Player::Play(std::string_view record) {
  record_ = record;
  const auto type = static_cast<std::uint8_t>(record[4]);
  if (type != U_WMR_LINETO) FinishPath();
  if (type == U_WMR_EOF) return false;
  row_ = FindRow(type);
  if (row_ != nullptr) {
    (this->*row_->action)();
  } else {
    Skip("unbekannter Datensatz");
  }
  if (type != U_WMR_ESCAPE) {
    drawn_ = true;
    sources_.Forget();
  }
  return true;
}

Drawing Player::Take() { return builder_.Take(); }

void Player::SkipRecord() { Skip(row_->name); }

// A line is drawn record by record; together they are one object.
void Player::FinishPath() {
  canvas_.Path(path_);
  path_.clear();
}

std::string_view Player::BytesAt(std::size_t parameter, std::size_t count) const {
  const std::size_t at = kRecordHeaderBytes + 2 * parameter;
  if (at > record_.size() || count > record_.size() - at) ThrowDamaged();
  return record_.substr(at, count);
}

unsigned Player::Unsigned(std::size_t parameter) const {
  const std::string_view bytes = BytesAt(parameter, 2);
  return static_cast<unsigned char>(bytes[0]) |
         static_cast<unsigned>(static_cast<unsigned char>(bytes[1])) << 8;
}

int Player::Number(std::size_t parameter) const {
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(Unsigned(parameter)));
}

Point Player::PointAt(std::size_t parameter) const {
  return {Number(parameter), Number(parameter + 1)};
}

Point Player::TurnedPointAt(std::size_t parameter) const {
  return {Number(parameter + 1), Number(parameter)};
}

std::vector<Point> Player::PointsAt(std::size_t parameter, std::size_t count) {
  BytesAt(parameter, 4 * count);  // checked before anything is built
  std::vector<Point> points;
  points.reserve(count);
  for (std::size_t i = 0; i < count; ++i) points.push_back(PointAt(parameter + 2 * i));
  return points;
}

U_COLORREF Player::ColourAt(std::size_t parameter) const {
  U_COLORREF colour{};
  std::memcpy(&colour, BytesAt(parameter, sizeof colour).data(), sizeof colour);
  return colour;
}

// ---- State ----

void Player::SetBkColor() { canvas_.State().darkGround = IsDark(ColourAt(0)); }

void Player::SetBkMode() { canvas_.State().opaqueGround = Unsigned(0) == U_OPAQUE; }

void Player::SetRop2() { canvas_.State().penMode = static_cast<PenMode>(Number(0)); }

void Player::SetTextColor() { canvas_.State().darkText = IsDark(ColourAt(0)); }

void Player::SetPolyFillMode() { canvas_.State().windingFill = Unsigned(0) == U_WINDING; }

void Player::SetTextAlign() { canvas_.State().textAlign = Unsigned(0); }

void Player::SetWindowOrigin() { canvas_.State().windowOrigin = TurnedPointAt(0); }

void Player::SetWindowExtent() { canvas_.SetWindowExtent(TurnedPointAt(0)); }

void Player::SaveContext() {
  if (saved_.size() >= limits_.groupDepth) {
    throw BadFile("Die Datei sichert ihren Zustand zu oft.");
  }
  saved_.push_back(canvas_.State());
}

// Negative numbers count back from the newest saved state, positive ones from the first.
void Player::RestoreContext() {
  const int wanted = Number(0);
  const auto count = static_cast<int>(saved_.size());
  const int index = wanted < 0 ? count + wanted : wanted - 1;
  if (index < 0 || index >= count) return;
  canvas_.State() = saved_[static_cast<std::size_t>(index)];
  saved_.resize(static_cast<std::size_t>(index));
}

void Player::SelectTool() {
  const Tool* tool = tools_.Find(static_cast<std::uint16_t>(Unsigned(0)));
  if (tool == nullptr) return;
  Context& state = canvas_.State();
  if (const auto* pen = std::get_if<Pen>(tool)) state.pen = *pen;
  if (const auto* brush = std::get_if<Brush>(tool)) state.brush = *brush;
  if (const auto* font = std::get_if<Font>(tool)) state.font = *font;
}

void Player::DeleteTool() { tools_.Delete(static_cast<std::uint16_t>(Unsigned(0))); }

void Player::CreatePen() {
  constexpr unsigned kStyleMask = 15;
  tools_.Create(Pen{(Unsigned(0) & kStyleMask) != U_PS_NULL, IsDark(ColourAt(3))});
}

void Player::CreateBrush() { tools_.Create(Brush{Unsigned(0) != U_BS_NULL, IsDark(ColourAt(1))}); }

void Player::CreatePatternBrush() { tools_.Create(Brush{true, true}); }

void Player::CreateFont() {
  constexpr int kBoldFrom = 600;
  tools_.Create(Font{Number(0), Number(1), Number(4) >= kBoldFrom, (Unsigned(5) >> 8) != 0});
}

void Player::CreateOther() { tools_.Create(OtherTool{}); }

// ---- Figures ----

void Player::MoveTo() { canvas_.State().current = TurnedPointAt(0); }

void Player::LineTo() {
  if (path_.empty()) path_.push_back(canvas_.State().current);
  canvas_.State().current = TurnedPointAt(0);
  path_.push_back(canvas_.State().current);
  if (path_.size() > limits_.vertices) builder_.CountVertices(path_.size());
}

void Player::DrawPolyline() { canvas_.Polyline(PointsAt(1, Unsigned(0))); }

void Player::DrawPolygon() { canvas_.Polygon(PointsAt(1, Unsigned(0))); }

void Player::DrawPolyPolygon() {
  const std::size_t count = Unsigned(0);
  std::size_t at = 1 + count;
  std::vector<std::vector<Point>> polygons;
  for (std::size_t i = 0; i < count; ++i) {
    polygons.push_back(PointsAt(at, Unsigned(1 + i)));
    at += 2 * polygons.back().size();
  }
  if (count > 1 && Foreign()) return Report(canvas_.Polygons(polygons));
  for (const std::vector<Point>& polygon : polygons) canvas_.Polygon(polygon);
}

void Player::DrawRectangle() { canvas_.Boxed(Kind::Rectangle, TurnedPointAt(2), TurnedPointAt(0)); }

void Player::DrawRoundRectangle() {
  Report(canvas_.RoundedBox(TurnedPointAt(4), TurnedPointAt(2), TurnedPointAt(0)));
}

void Player::DrawArc(ArcKind kind) {
  Report(canvas_.Arc(kind, TurnedPointAt(6), TurnedPointAt(4), TurnedPointAt(2), TurnedPointAt(0)));
}

void Player::DrawEllipse() { canvas_.Boxed(Kind::Ellipse, TurnedPointAt(2), TurnedPointAt(0)); }

void Player::DrawPixel() { canvas_.Pixel(TurnedPointAt(2), IsDark(ColourAt(0))); }

void Player::PaintBox() {
  const std::uint32_t operation = Unsigned(0) | Unsigned(1) << 16;
  const Brush& brush = canvas_.State().brush;
  const bool known = operation == U_PATCOPY || operation == U_BLACKNESS || operation == U_WHITENESS;
  if (!known) {
    SkipRecord();
  } else if (operation != U_PATCOPY || brush.visible) {
    const bool dark = operation == U_PATCOPY ? brush.dark : operation == U_BLACKNESS;
    canvas_.FilledBox(TurnedPointAt(4), TurnedPointAt(2), dark);
  }
}

// ---- Text: this program's own stands in its comments ----

void Player::DrawTextOut() {
  if (!Foreign()) return;
  const std::size_t length = Unsigned(0);
  const std::string_view text = BytesAt(1, length);
  canvas_.Text(TurnedPointAt(1 + (length + 1) / 2), text);
}

void Player::DrawExtTextOut() {
  if (!Foreign()) return;
  constexpr unsigned kHasRectangle = U_ETO_OPAQUE | U_ETO_CLIPPED;
  const std::size_t textAt = (Unsigned(3) & kHasRectangle) != 0 ? 8 : 4;
  if ((Unsigned(3) & U_ETO_OPAQUE) != 0) {
    const Point corner = PointAt(4);
    const Point opposite = PointAt(6);
    canvas_.FilledBox(corner, {opposite.x - corner.x, opposite.y - corner.y},
                      canvas_.State().darkGround);
  }
  canvas_.Text(TurnedPointAt(0), BytesAt(textAt, Unsigned(2)));
}

// ---- Pictures ----

void Player::StretchDib() {
  DrawDib(TurnedPointAt(9), TurnedPointAt(7), TurnedPointAt(5), TurnedPointAt(3), 11);
}

void Player::DibStretchBlt() {
  DrawDib(TurnedPointAt(8), TurnedPointAt(6), TurnedPointAt(4), TurnedPointAt(2), 10);
}

void Player::DibBitBlt() {
  DrawDib(TurnedPointAt(6), TurnedPointAt(4), TurnedPointAt(2), TurnedPointAt(4), 8);
}

void Player::SetDibToDevice() {
  DrawDib(TurnedPointAt(7), TurnedPointAt(5), TurnedPointAt(3), TurnedPointAt(5), 9);
}

// Where the source leaves the picture, or is all of it, the whole picture is taken.
void Player::DrawDib(Point destination, Point size, Point source, Point sourceSize,
                     std::size_t dibParameter) {
  const std::size_t headerBytes = kRecordHeaderBytes + 2 * dibParameter;
  const std::string_view dib =
      headerBytes < record_.size() ? record_.substr(headerBytes) : std::string_view();
  std::optional<Picture> picture = ReadDib(dib, builder_.PixelsLeft());
  if (!picture) {
    SkipRecord();
    return;
  }
  const bool part = Foreign() && source.x >= 0 && source.y >= 0 && sourceSize.x > 0 &&
                    sourceSize.y > 0 && source.x + sourceSize.x <= picture->Width() &&
                    source.y + sourceSize.y <= picture->Height();
  if (part) {  // its rows are counted from the bottom
    const int top = picture->Height() - source.y - sourceSize.y;
    *picture = Cropped(*picture, source.x, top, sourceSize.x, sourceSize.y);
  }
  DrawingObject object;
  object.picture = std::move(*picture);
  if (!sources_.GiveTo(object)) Skip("Vorlage eines Bildes");
  if (!canvas_.Image(destination, size, std::move(object))) SkipRecord();
}

}  // namespace kelvo::wmf

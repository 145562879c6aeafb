#include "simulator/screen.h"

#include <algorithm>
#include <array>

namespace kelvo::sim {
namespace {

// Coordinates are 16-bit numbers in the Terminal.
int Coordinate(int value) { return std::clamp(value, -32768, 32767); }

PixelPoint Point(const Parameters& parameters, int field) {
  return {Coordinate(parameters.Number(field)), Coordinate(parameters.Number(field + 1))};
}

void SetAttribute(TextStyle& style, int attribute) {
  style.underline = (attribute & 1) != 0;
  style.bold = (attribute & 2) != 0;
  style.inverse = (attribute & 4) != 0;
}

int Attribute(const TextStyle& style) {
  return (style.underline ? 1 : 0) + (style.bold ? 2 : 0) + (style.inverse ? 4 : 0);
}

void SetZoom(TextStyle& style, const Parameters& parameters) {
  style.zoomX = std::clamp(parameters.Number(0), 1, kMaxZoomX);
  style.zoomY = std::clamp(parameters.Number(1), 1, kMaxZoomY);
}

void SetFont(TextStyle& style, int font) {
  if (font >= 0 && font < DeviceFonts::kCount) style.font = font;
}

std::string Pair(int first, int second) {
  return std::to_string(first) + "," + std::to_string(second);
}

}  // namespace

Screen::Screen(const DeviceFonts& fonts, int width, int height) : fonts_(fonts) {
  Reset(width, height);
}

void Screen::Resize(int width, int height) {
  pixels_ = PixelMap(width, height);
  ++revision_;
}

void Screen::Reset(int width, int height) {
  Resize(width, height);
  text_ = {};
  graphicText_ = {};
  SetPen(Ink::Set);
  column_ = row_ = 1;
  position_ = {};
  cursor_ = CursorKind::Off;
  cursorBlock_ = false;
  crossSize_ = 8;
}

bool Screen::Execute(Command command, const Parameters& parameters) {
  if (!ExecuteText(command, parameters) && !ExecuteGraphic(command, parameters)) return false;
  ++revision_;
  return true;
}

bool Screen::ExecuteText(Command command, const Parameters& parameters) {
  switch (command) {
    case Command::DefineCursor:
      DefineCursor(parameters);
      return true;
    case Command::SwitchCursor:
      SwitchCursor(parameters.Number(0));
      return true;
    case Command::TextPosition:
      MoveText(parameters.Number(0), parameters.Number(1));
      return true;
    case Command::TextHome:
      MoveText(1, 1);
      return true;
    case Command::TextFont:
      SetFont(text_, parameters.Number(0));
      return true;
    case Command::TextAttribute:
      SetAttribute(text_, parameters.Number(0));
      return true;
    case Command::TextMode:
      text_.mode = static_cast<kelvo::TextMode>(std::clamp(parameters.Number(0), 0, 3));
      return true;
    case Command::TextZoom:
      SetZoom(text_, parameters);
      return true;
    default:
      return false;
  }
}

bool Screen::ExecuteGraphic(Command command, const Parameters& parameters) {
  switch (command) {
    case Command::Clear:
      pixels_.Clear();
      SetPen(Ink::Set);  // every drawing begins with the pen that draws
      return true;
    case Command::GraphicPosition:
      position_ = Point(parameters, 0);
      return true;
    case Command::GraphicHome:
      position_ = {};
      return true;
    case Command::DrawMode:
      SetPen(parameters.Number(0) == 1 ? Ink::Clear : Ink::Set);
      return true;
    case Command::Line:
      DrawLineTo(Point(parameters, 0));
      return true;
    case Command::Rectangle:
    case Command::FilledRectangle:
      DrawRectangleTo(Point(parameters, 0), command == Command::FilledRectangle);
      return true;
    case Command::Ellipse:
    case Command::FilledEllipse:
      DrawEllipseAround(Coordinate(parameters.Number(0)), Coordinate(parameters.Number(1)),
                        command == Command::FilledEllipse);
      return true;
    case Command::Bitmap:
      DrawBitmap(parameters);
      return true;
    case Command::GraphicFont:
      SetFont(graphicText_, parameters.Number(0));
      return true;
    case Command::GraphicZoom:
      SetZoom(graphicText_, parameters);
      return true;
    case Command::GraphicAttribute:
      SetAttribute(graphicText_, parameters.Number(0));
      return true;
    case Command::GraphicText:
      return true;  // its text comes byte by byte
    default:
      return false;
  }
}

std::optional<std::string> Screen::Answer(Command query) const {
  switch (query) {
    case Command::AskCursor:
      return std::to_string(static_cast<int>(cursor_));
    case Command::AskCursorShape:
      return CursorShape();
    case Command::AskTextPosition:
      return Pair(column_, row_);
    case Command::AskGraphicPosition:
      return Pair(position_.x, position_.y);
    case Command::AskTextFont:
      return std::to_string(text_.font);
    case Command::AskTextAttribute:
      return std::to_string(Attribute(text_));
    case Command::AskTextMode:
      return std::to_string(static_cast<int>(text_.mode));
    case Command::AskTextZoom:
      return Pair(text_.zoomX, text_.zoomY);
    default:
      return std::nullopt;
  }
}

// A cursor at the text position has only its shape; the others name their kind in front, because
// behind the comma stands a shape for the one and a size for the other.
std::string Screen::CursorShape() const {
  const int kind = static_cast<int>(cursor_);
  switch (cursor_) {
    case CursorKind::Off:
    case CursorKind::BlinkingAtText:
    case CursorKind::SteadyAtText:
      return std::to_string(cursorBlock_ ? 1 : 0);
    case CursorKind::BlinkingCross:
    case CursorKind::SteadyCross:
      return Pair(kind, crossSize_);
    case CursorKind::BlinkingAtGraphic:
    case CursorKind::SteadyAtGraphic:
      break;
  }
  return Pair(kind, cursorBlock_ ? 1 : 0);
}

void Screen::DefineCursor(const Parameters& parameters) {
  const int kind = parameters.Number(0);
  if (kind < 1 || kind > 6 || parameters.Count() < 2) return;
  if (kind == 3 || kind == 4) {
    crossSize_ = std::clamp(parameters.Number(1), 0, 1000);
  } else {
    cursorBlock_ = parameters.Number(1) == 1;
  }
}

void Screen::SwitchCursor(int kind) {
  if (kind >= 0 && kind <= 6) cursor_ = static_cast<CursorKind>(kind);
}

bool Screen::CursorBlinks() const {
  return cursor_ == CursorKind::BlinkingAtText || cursor_ == CursorKind::BlinkingCross ||
         cursor_ == CursorKind::BlinkingAtGraphic;
}

std::string Screen::ConfigCommands() const {
  std::string commands;
  const auto add = [&commands](const std::string& command) { commands += "\x1B" + command + ";"; };
  add("!c1," + std::to_string(cursorBlock_ ? 1 : 0));
  add("!c3," + std::to_string(crossSize_));
  add("!C" + std::to_string(static_cast<int>(cursor_)));
  add("TF" + std::to_string(text_.font));
  add("TA" + std::to_string(Attribute(text_)));
  add("TM" + std::to_string(static_cast<int>(text_.mode)));
  add("TZ" + Pair(text_.zoomX, text_.zoomY));
  return commands;
}

// ---- text layer ----

// The nominal size, so that the cursor keeps its place when a font is missing.
Screen::Cell Screen::TextCell() const {
  static constexpr std::array<Cell, DeviceFonts::kCount> kSizes = {
      {{8, 8}, {8, 10}, {8, 14}, {8, 16}, {4, 6}, {8, 8}, {8, 10}, {8, 14}, {8, 16}, {16, 32}}};
  const Cell& size = kSizes[static_cast<std::size_t>(text_.font)];
  return {size.width * text_.zoomX, size.height * text_.zoomY};
}

void Screen::MoveText(int column, int row) {
  const Cell cell = TextCell();
  column_ = std::clamp(column, 1, std::max(1, pixels_.Width() / cell.width));
  row_ = std::clamp(row, 1, std::max(1, pixels_.Height() / cell.height));
}

void Screen::PutText(unsigned char byte) {
  ++revision_;
  if (byte == '\r') {
    column_ = 1;
  } else if (byte == '\n') {
    NextRow();
  } else if (byte == '\b') {
    MoveText(column_ - 1, row_);
  } else if (byte >= ' ') {
    MoveText(column_, row_);  // a larger font may have come since
    const Cell cell = TextCell();
    const char character = static_cast<char>(byte);
    DrawText(pixels_, fonts_, (column_ - 1) * cell.width, (row_ - 1) * cell.height,
             std::string_view(&character, 1), text_);
    if (++column_ > pixels_.Width() / cell.width) {
      column_ = 1;
      NextRow();
    }
  }
}

// Below the last row it goes on at the top: the display does not scroll, deliberately, because
// graphics stand in the same picture.
void Screen::NextRow() {
  if (++row_ > pixels_.Height() / TextCell().height) row_ = 1;
}

// ---- graphics ----

void Screen::SetPen(Ink ink) {
  ink_ = ink;
  graphicText_.mode = GraphicTextMode(ink);
}

void Screen::DrawLineTo(PixelPoint end) {
  DrawLine(pixels_, position_.x, position_.y, end.x, end.y, ink_);
  position_ = end;
}

void Screen::DrawRectangleTo(PixelPoint corner, bool filled) {
  DrawRectangle(pixels_, position_.x, position_.y, corner.x, corner.y, filled, ink_);
}

void Screen::DrawEllipseAround(int radiusX, int radiusY, bool filled) {
  DrawEllipse(pixels_, position_.x, position_.y, radiusX, radiusY, filled, ink_);
}

void Screen::PutGraphicText(unsigned char byte) {
  ++revision_;
  const char character = static_cast<char>(byte);
  position_.x = Coordinate(DrawText(pixels_, fonts_, position_.x, position_.y,
                                    std::string_view(&character, 1), graphicText_));
}

// x, y, width, height, digits. The width counts bytes, or pixels when it is negative. Only the rows
// that have digits are drawn, so that no size given makes more work than was sent.
void Screen::DrawBitmap(const Parameters& parameters) {
  const PixelPoint corner = Point(parameters, 0);
  const int given = Coordinate(parameters.Number(2));
  const int width = given < 0 ? -given : given * 8;
  const std::string_view digits = parameters.Rest(4);
  const int rowDigits = (width + 7) / 8 * 2;
  if (rowDigits == 0) return;
  const int rows = (static_cast<int>(digits.size()) + rowDigits - 1) / rowDigits;
  PixelMap bits(width, std::min(parameters.Number(3), rows));
  for (int i = 0; i < static_cast<int>(digits.size()); ++i) {
    const int nibble = HexDigit(digits[static_cast<std::size_t>(i)]).value_or(0);
    for (int bit = 0; bit < 4; ++bit) {
      if ((nibble & 8 >> bit) != 0) bits.Put(i % rowDigits * 4 + bit, i / rowDigits, Ink::Set);
    }
  }
  kelvo::DrawBitmap(pixels_, corner.x, corner.y, bits, ink_);
}

// ---- cursor ----

PixelMap Screen::Picture(bool lit) const {
  PixelMap picture = pixels_;
  if (lit || !CursorBlinks()) DrawCursor(picture);
  return picture;
}

void Screen::DrawCursor(PixelMap& picture) const {
  const Cell cell = TextCell();
  switch (cursor_) {
    case CursorKind::Off:
      break;
    case CursorKind::BlinkingAtText:
    case CursorKind::SteadyAtText:
      InvertCell(picture, {(column_ - 1) * cell.width, (row_ - 1) * cell.height});
      break;
    case CursorKind::BlinkingCross:
    case CursorKind::SteadyCross:
      InvertCross(picture);
      break;
    case CursorKind::BlinkingAtGraphic:
    case CursorKind::SteadyAtGraphic:
      InvertCell(picture, position_);
      break;
  }
}

void Screen::InvertCell(PixelMap& picture, PixelPoint corner) const {
  const Cell cell = TextCell();
  const int top = cursorBlock_ ? 0 : cell.height - text_.zoomY;
  for (int y = top; y < cell.height; ++y) {
    for (int x = 0; x < cell.width; ++x) picture.Put(corner.x + x, corner.y + y, Ink::Invert);
  }
}

void Screen::InvertCross(PixelMap& picture) const {
  for (int offset = -crossSize_; offset <= crossSize_; ++offset) {
    picture.Put(position_.x + offset, position_.y, Ink::Invert);
    if (offset != 0) picture.Put(position_.x, position_.y + offset, Ink::Invert);
  }
}

}  // namespace kelvo::sim

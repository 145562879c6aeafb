#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "graphics/device_font.h"
#include "graphics/pixel_map.h"
#include "graphics/raster.h"
#include "simulator/command_table.h"
#include "simulator/parameters.h"

namespace kelvo::sim {

/// The cursor kinds, numbered as in the commands.
enum class CursorKind {
  Off = 0,
  BlinkingAtText = 1,
  SteadyAtText = 2,
  BlinkingCross = 3,
  SteadyCross = 4,
  BlinkingAtGraphic = 5,
  SteadyAtGraphic = 6,
};

/// The display: one picture that text layer and graphics draw into, and the cursor above it.
/// Graphic positions are pixels from the top left corner, text positions are columns and rows
/// from 1 in cells of the text font. The pen ("GM") is one for shapes, bitmaps and graphic text;
/// clearing the display ("GC") brings back the pen that draws for all of them and leaves positions,
/// styles, text layer and cursor as they are.
class Screen {
 public:
  /// The fonts must outlive the screen.
  Screen(const DeviceFonts& fonts, int width, int height);

  /// Everything as after switching on, with this display size in pixels.
  void Reset(int width, int height);
  /// An empty display of this size in pixels; styles and cursor stay.
  void Resize(int width, int height);

  /// Carries out a text, cursor or drawing command; false when it is none.
  bool Execute(Command command, const Parameters& parameters);
  /// The value that a query of these groups asks for; nothing when it is none of them.
  std::optional<std::string> Answer(Command query) const;
  /// A byte for the text layer. CR goes to column 1, LF to the next row, backspace one column
  /// back; other control characters do nothing.
  void PutText(unsigned char byte);
  void PutGraphicText(unsigned char byte);

  /// The picture without the cursor.
  const PixelMap& Pixels() const { return pixels_; }
  /// The picture with the cursor, which a blinking one joins only when `lit`.
  PixelMap Picture(bool lit) const;
  CursorKind Cursor() const { return cursor_; }
  bool CursorBlinks() const;

  /// Commands that bring text style and cursor back; the form in which they are stored.
  std::string ConfigCommands() const;
  /// Grows with every command and text that may change the picture.
  std::uint64_t Revision() const { return revision_; }

 private:
  struct Cell {
    int width;
    int height;
  };

  bool ExecuteText(Command command, const Parameters& parameters);
  bool ExecuteGraphic(Command command, const Parameters& parameters);
  void DefineCursor(const Parameters& parameters);
  void SwitchCursor(int kind);
  void MoveText(int column, int row);
  void NextRow();
  void SetPen(Ink ink);
  void DrawLineTo(PixelPoint end);
  void DrawRectangleTo(PixelPoint corner, bool filled);
  void DrawEllipseAround(int radiusX, int radiusY, bool filled);
  void DrawBitmap(const Parameters& parameters);
  std::string CursorShape() const;
  Cell TextCell() const;
  void DrawCursor(PixelMap& picture) const;
  void InvertCell(PixelMap& picture, PixelPoint corner) const;
  void InvertCross(PixelMap& picture) const;

  const DeviceFonts& fonts_;
  PixelMap pixels_;
  TextStyle text_;
  int column_ = 1;
  int row_ = 1;
  TextStyle graphicText_;
  PixelPoint position_;
  Ink ink_ = Ink::Set;
  CursorKind cursor_ = CursorKind::Off;
  bool cursorBlock_ = false;  // the other shape is the underline
  int crossSize_ = 8;         // pixels from the centre to each side
  std::uint64_t revision_ = 0;
};

}  // namespace kelvo::sim

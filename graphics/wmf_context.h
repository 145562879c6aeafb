#pragma once

#include <uwmf.h>

#include <cstdint>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "graphics/drawing.h"

// What the records of a metafile set up for those that draw.

namespace kelvo::wmf {

/// Ends the reading; its text (German, UTF-8) is for the operator.
struct BadFile : std::runtime_error {
  using std::runtime_error::runtime_error;
};

[[noreturn]] void ThrowDamaged();

struct Pen {
  bool visible = true;
  bool dark = true;
};
struct Brush {
  bool visible = true;
  bool dark = false;
};
struct Font {
  int height = 0;  ///< logical units; 0: unknown
  int width = 0;
  bool bold = false;
  bool underline = false;
};
/// Palettes and regions: they take a number and do nothing here.
struct OtherTool {};
using Tool = std::variant<Pen, Brush, Font, OtherTool>;

/// Whether a monochrome display shows a colour black.
bool IsDark(const U_COLORREF& colour);

/// The numbered tools of a metafile; a new one takes the lowest free number.
class ToolTable {
 public:
  explicit ToolTable(std::size_t limit) : limit_(limit) {}
  void Create(const Tool& tool);
  void Delete(std::uint16_t number);
  /// Null for a number without a tool.
  const Tool* Find(std::uint16_t number) const;

 private:
  std::size_t limit_;
  std::map<std::uint16_t, Tool> tools_;
  std::set<std::uint16_t> freed_;
};

/// The state that SAVEDC saves.
struct Context {
  Point windowOrigin;
  Point windowExtent;  ///< 0: not set; negative where an axis is turned round
  Pen pen;
  Brush brush;
  Font font;
  bool darkText = true;
  bool darkGround = false;
  bool opaqueGround = true;
  unsigned textAlign = 0;
  bool windingFill = false;  ///< of polygons that cross or hold each other
  PenMode penMode = PenMode::Draw;
  Point current;  ///< logical units
};

}  // namespace kelvo::wmf

#pragma once

#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "graphics/pixel_map.h"

// What stands on a data sheet, before anybody knows how large a page is. All texts are UTF-8, and
// every character of theirs can be seen.

namespace kelvo {

struct SheetHeading {
  int level = 1;  ///< 0 for the title, 1 for a part, 2 for a chapter, 3 for what stands in one
  std::string text;
  bool operator==(const SheetHeading&) const = default;
};

struct SheetText {
  std::string text;
  bool small = false;  ///< what something rests on, and remarks
  bool operator==(const SheetText&) const = default;
};

struct SheetColumn {
  std::string title;
  int share = 1;      ///< of the table's width
  bool wire = false;  ///< characters of the line, each as wide as the other
  bool operator==(const SheetColumn&) const = default;
};

struct SheetTable {
  std::vector<SheetColumn> columns;
  std::vector<std::vector<std::string>> rows;
  bool operator==(const SheetTable&) const = default;
};

/// A keypad: in each cell what its key sends, and as which code.
struct SheetGrid {
  struct Cell {
    std::string sign;
    std::string code{};
    bool operator==(const Cell&) const = default;
  };
  std::vector<Cell> columns;  ///< titles, without that of the first column
  std::vector<std::pair<Cell, std::vector<Cell>>> rows;  ///< title and cells
  bool operator==(const SheetGrid&) const = default;
};

struct SheetPicture {
  PixelMap pixels;
  std::string caption;
  bool operator==(const SheetPicture&) const = default;
};

/// The list of all headings of the levels 1 and 2 with their pages.
struct SheetContents {
  bool operator==(const SheetContents&) const = default;
};

using SheetBlock =
    std::variant<SheetHeading, SheetText, SheetTable, SheetGrid, SheetPicture, SheetContents>;

/// It begins on a page of its own.
struct SheetPart {
  std::string name;  ///< stands on each of its pages
  std::vector<SheetBlock> blocks;
  bool operator==(const SheetPart&) const = default;
};

struct Sheet {
  std::string title;
  std::vector<SheetPart> parts;
  bool operator==(const Sheet&) const = default;
};

}  // namespace kelvo

#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The Terminal's ten fonts as files: "fonts/Font" number ".Fnt" in the program's folder.
//
//   file   = "KFNT" version width height glyph{256}
//   version, width, height: one byte each; version is 1, width and height are pixels (1..32)
//   glyph  = height rows from the top, each of (width + 7) / 8 bytes,
//            the most significant bit is the left pixel
//
// The glyphs stand in Latin-1 order: glyph b is the character with code b.

namespace kelvo {

/// One font of 256 cells of equal size.
class DeviceFont {
 public:
  /// Reads the file format above. False (and an empty font) when `bytes` is not such a file.
  bool Parse(std::string_view bytes);

  bool Empty() const { return rows_.empty(); }
  int Width() const { return width_; }    ///< pixels
  int Height() const { return height_; }  ///< pixels
  /// Whether the pixel of a character's cell is set; false outside the cell.
  bool Pixel(unsigned char character, int x, int y) const;
  /// The pixels of a cell's row 0 <= y < Height(); bit Width() - 1 is the left one.
  std::uint32_t Row(unsigned char character, int y) const {
    return rows_[static_cast<std::size_t>(character) * static_cast<std::size_t>(height_) +
                 static_cast<std::size_t>(y)];
  }
  /// Whether a character has a picture. A blank needs none, and of a font that is missing nobody
  /// knows.
  bool HasGlyph(unsigned char character) const;

 private:
  int width_ = 0;
  int height_ = 0;
  std::vector<std::uint32_t> rows_;  // 256 x height, bit width-1 is the left pixel
};

/// The fonts 0..9 in the order of the font list: 8 x 8, 8 x 10, 8 x 14, 8 x 16, 4 x 6 digits,
/// 8 x 8 bold, 8 x 10 bold, 8 x 14 bold, 8 x 16 bold, 16 x 32 digits.
class DeviceFonts {
 public:
  static constexpr int kCount = 10;
  /// Loads what is there from a folder; returns the numbers of the fonts that are missing or
  /// damaged (those stay empty and draw nothing).
  std::vector<int> Load(const std::string& folder);
  /// An empty font outside 0..9.
  const DeviceFont& Font(int number) const;
  /// Whether a font's letters are bold by themselves (5..8).
  static bool IsBold(int number) { return number >= 5 && number <= 8; }

 private:
  std::array<DeviceFont, kCount> fonts_;
};

}  // namespace kelvo

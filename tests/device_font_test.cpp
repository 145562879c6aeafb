#include "graphics/device_font.h"

#include <gtest/gtest.h>

#include <fstream>

#include "graphics/raster.h"
#include "tests/pixel_picture.h"

namespace kelvo {
namespace {

// A font file of 3 x 2 cells in which "A" is "#.#" over ".#.".
std::string TinyFont() {
  std::string bytes = std::string("KFNT\1\3\2") + std::string(2 * 256, '\0');
  bytes[7 + 2 * 'A'] = static_cast<char>(0xa0);
  bytes[7 + 2 * 'A' + 1] = 0x40;
  return bytes;
}

DeviceFonts FolderWithTinyFont(const std::string& name) {
  std::ofstream(testing::TempDir() + name, std::ios::binary) << TinyFont();
  DeviceFonts fonts;
  fonts.Load(testing::TempDir());
  return fonts;
}

std::string Drawn(const TextStyle& style, int x = 0, PixelMap map = PixelMap(6, 4)) {
  static const DeviceFonts fonts = FolderWithTinyFont("Font0.Fnt");
  DrawText(map, fonts, x, 0, "AA", style);
  return AsText(map);
}

TEST(DeviceFont, ReadsItsFormatAndRefusesEverythingElse) {
  DeviceFont font;
  ASSERT_TRUE(font.Parse(TinyFont()));
  EXPECT_EQ(font.Width(), 3);
  EXPECT_EQ(font.Height(), 2);
  EXPECT_TRUE(font.Pixel('A', 0, 0) && font.Pixel('A', 2, 0) && font.Pixel('A', 1, 1));
  EXPECT_FALSE(font.Pixel('A', 1, 0) || font.Pixel('A', 3, 0) || font.Pixel('A', 0, -1));
  EXPECT_FALSE(font.Pixel('B', 0, 0));

  const auto changed = [](std::size_t at, char value) {
    std::string bytes = TinyFont();
    bytes[at] = value;
    return bytes;
  };
  for (const std::string& bad :
       {std::string(), TinyFont().substr(1), TinyFont() + "x", changed(0, 'k'), changed(4, 2),
        changed(5, 0), changed(5, 33), changed(6, 0), changed(6, 3)}) {
    EXPECT_FALSE(font.Parse(bad));
    EXPECT_TRUE(font.Empty());
  }
}

TEST(DeviceFont, TextTakesAttributesZoomAndMode) {
  constexpr TextMode kSet = TextMode::Set;
  EXPECT_EQ(Drawn({{}, kSet}), "#.##.#\n.#..#.\n......\n......\n");
  EXPECT_EQ(Drawn({{}, kSet}, 2), "..#.##\n...#..\n......\n......\n");
  EXPECT_EQ(Drawn({{}, kSet}, -4), ".#....\n#.....\n......\n......\n");
  EXPECT_EQ(Drawn({{.underline = true}, kSet}), "#.##.#\n######\n......\n......\n");
  EXPECT_EQ(Drawn({{.bold = true}, kSet}), "######\n.##.##\n......\n......\n");
  EXPECT_EQ(Drawn({{.inverse = true}, kSet}), ".#..#.\n#.##.#\n......\n......\n");
  EXPECT_EQ(Drawn({{.zoomX = 2, .zoomY = 2}, kSet}), "##..##\n##..##\n..##..\n..##..\n");
  EXPECT_EQ(Drawn({{.zoomX = 0, .zoomY = 0}, kSet}), Drawn({{}, kSet})) << "counts as 1";

  const PixelMap black = AllSet(6, 2);
  for (const auto& [mode, picture] : {std::pair(TextMode::Replace, "#.##.#\n.#..#.\n"),
                                      std::pair(TextMode::Set, "######\n######\n"),
                                      std::pair(TextMode::Clear, ".#..#.\n#.##.#\n"),
                                      std::pair(TextMode::Invert, ".#..#.\n#.##.#\n")}) {
    EXPECT_EQ(Drawn({{}, mode}, 0, black), picture);
  }
}

TEST(DeviceFont, TextReturnsWhereItEnds) {
  const DeviceFonts fonts = FolderWithTinyFont("Font0.Fnt");
  PixelMap map(4, 4);
  TextStyle style;
  style.zoomX = 3;
  EXPECT_EQ(DrawText(map, fonts, 5, 0, "AAA", style), 5 + 3 * 9);
  style.font = 12;
  EXPECT_EQ(DrawText(map, fonts, 5, 0, "AAA", style), 5);
}

class BuiltFonts : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(fonts_.Load(KELVO_FONT_FOLDER).empty()); }

  int Blackness(int font, unsigned char character) const {
    int count = 0;
    for (int y = 0; y < fonts_.Font(font).Height(); ++y) {
      for (int x = 0; x < fonts_.Font(font).Width(); ++x) {
        count += fonts_.Font(font).Pixel(character, x, y) ? 1 : 0;
      }
    }
    return count;
  }

  DeviceFonts fonts_;
};

TEST_F(BuiltFonts, HaveTheirCells) {
  constexpr int kCells[DeviceFonts::kCount][2] = {{8, 8}, {8, 10}, {8, 14}, {8, 16}, {4, 6},
                                                  {8, 8}, {8, 10}, {8, 14}, {8, 16}, {16, 32}};
  for (int i = 0; i < DeviceFonts::kCount; ++i) {
    EXPECT_EQ(fonts_.Font(i).Width(), kCells[i][0]) << i;
    EXPECT_EQ(fonts_.Font(i).Height(), kCells[i][1]) << i;
  }
}

TEST_F(BuiltFonts, HoldLatin1AndItsBoldFaces) {
  for (const int font : {0, 1, 2, 3, 5, 6, 7, 8, 9}) {
    for (int code = 0; code < 256; ++code) {
      if (code == 173) continue;  // the soft hyphen may be drawn or not
      const bool blank = code <= 32 || (code >= 127 && code <= 160);
      EXPECT_EQ(Blackness(font, static_cast<unsigned char>(code)) == 0, blank)
          << font << " " << code;
    }
  }
  for (int font = 0; font <= 3; ++font) {
    for (const int letter : {0x41, 0x67, 0x38, 0xE4}) {
      const auto code = static_cast<unsigned char>(letter);
      EXPECT_GT(Blackness(font + 5, code), Blackness(font, code));
    }
  }
}

// A serif beside a stem of one pixel breaks it, and a closed foot makes a B of a sharp s.
TEST_F(BuiltFonts, LightLettersStandOnStraightStems) {
  for (const int number : {0, 1}) {
    const DeviceFont& font = fonts_.Font(number);
    const int foot = number == 0 ? 6 : 7;  // of a capital letter
    const auto row = [&font](int letter, int y) {
      std::string pixels;
      for (int x = 0; x < 8; ++x) {
        pixels += font.Pixel(static_cast<unsigned char>(letter), x, y) ? '#' : '.';
      }
      return pixels;
    };
    for (const char letter : {'b', 'h', 'B', 'D', 'E', 'F', 'H', 'K', 'L', 'P', 'R'}) {
      for (int y = 0; y <= foot; ++y) EXPECT_TRUE(row(letter, y).starts_with(".#")) << letter << y;
    }
    for (const int round : {int{'8'}, int{'O'}, 0xDF})
      EXPECT_TRUE(row(round, 0).starts_with("..#"));
    EXPECT_NE(row('b', foot), row('h', foot));
    EXPECT_NE(row('B', foot), row(0xDF, foot));
    EXPECT_NE(row('B', foot), row('R', foot));
  }
}

TEST_F(BuiltFonts, HoldDifferentSmallDigits) {
  const std::string held = "0123456789.,-+:";
  PixelMap seen[15];
  for (std::size_t i = 0; i < held.size(); ++i) {
    seen[i] = PixelMap(4, 6);
    TextStyle style;
    style.font = 4;
    DrawText(seen[i], fonts_, 0, 0, held.substr(i, 1), style);
    EXPECT_GT(SetPixels(seen[i]), 0);
    for (std::size_t j = 0; j < i; ++j) EXPECT_NE(seen[i], seen[j]) << held[i] << held[j];
  }
  EXPECT_EQ(Blackness(4, ' '), 0);
}

}  // namespace
}  // namespace kelvo

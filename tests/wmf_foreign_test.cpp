// Shapes of other programs' metafiles for which a drawing has no kind of its own.

#include <gtest/gtest.h>

#include "graphics/painter.h"
#include "graphics/wmf.h"
#include "tests/foreign_metafile.h"
#include "tests/test_fonts.h"

namespace kelvo {
namespace {

constexpr int kScreenWidth = 240;
constexpr int kScreenHeight = 128;

// What a foreign file shows when it is read and sent.
PixelMap Shown(Foreign& file) {
  const WmfDrawing loaded = ReadWmf(file.Bytes(), kScreenWidth, kScreenHeight, TestFonts());
  EXPECT_EQ(loaded.error, "");
  EXPECT_TRUE(loaded.skipped.empty());
  PixelMap pixels(kScreenWidth, kScreenHeight);
  PaintDrawing(pixels, loaded.drawing, TestFonts(), 0x808080);
  return pixels;
}

TEST(Wmf, ForeignHolesStayOpen) {
  const U_POINT16 points[] = {{10, 10}, {60, 10}, {60, 60}, {10, 60},
                              {20, 20}, {50, 20}, {50, 50}, {20, 50}};
  const std::uint16_t counts[] = {4, 4};
  for (const bool winding : {false, true}) {
    Foreign file;
    file.Window(0, 0, 240, 128).Pen(kDark, U_PS_NULL).Brush(kDark);
    file.Add(U_WMRSETPOLYFILLMODE_set(winding ? U_WINDING : U_ALTERNATE));
    file.Add(U_WMRPOLYPOLYGON_set(2, counts, points));
    const PixelMap pixels = Shown(file);
    EXPECT_TRUE(pixels.At(15, 35) && pixels.At(55, 35) && pixels.At(35, 15));
    EXPECT_EQ(pixels.At(35, 35), winding) << "both go round the same way";
    EXPECT_FALSE(pixels.At(9, 35) || pixels.At(61, 35));
  }
}

TEST(Wmf, ForeignArcsPiesAndChordsGoCounterClockwise) {
  // Of the circle around (50, 50), from three o'clock to twelve.
  const U_POINT16 from{90, 50};
  const U_POINT16 to{50, 10};
  const U_RECT16 box{30, 30, 71, 71};
  Foreign file;
  file.Window(0, 0, 240, 128).Pen(kDark).Brush(kDark);
  const PixelMap arc = Shown(Foreign(file).Add(U_WMRARC_set(from, to, box)));
  EXPECT_TRUE(arc.At(70, 50) && arc.At(64, 36) && arc.At(50, 30));
  EXPECT_FALSE(arc.At(30, 50) || arc.At(50, 70) || arc.At(55, 45));
  const PixelMap pie = Shown(Foreign(file).Add(U_WMRPIE_set(from, to, box)));
  EXPECT_TRUE(pie.At(55, 45) && pie.At(51, 49) && pie.At(62, 40));
  EXPECT_FALSE(pie.At(45, 45) || pie.At(55, 55));
  const PixelMap chord = Shown(Foreign(file).Add(U_WMRCHORD_set(from, to, box)));
  EXPECT_TRUE(chord.At(62, 40) && chord.At(60, 40));
  EXPECT_FALSE(chord.At(55, 45)) << "on the other side of the chord";
  const PixelMap whole = Shown(Foreign(file).Add(U_WMRARC_set(from, from, box)));
  EXPECT_TRUE(whole.At(30, 50) && whole.At(50, 70) && !whole.At(50, 50));
}

TEST(Wmf, ForeignRoundCornersAreRound) {
  Foreign file;
  file.Window(0, 0, 240, 128).Pen(kDark, U_PS_NULL).Brush(kDark);
  file.Add(U_WMRROUNDRECT_set(20, 20, {10, 10, 110, 60}));
  const PixelMap pixels = Shown(file);
  EXPECT_TRUE(pixels.At(60, 11) && pixels.At(11, 30) && pixels.At(14, 14));
  EXPECT_FALSE(pixels.At(10, 10) || pixels.At(109, 58) || pixels.At(12, 11));
}

}  // namespace
}  // namespace kelvo

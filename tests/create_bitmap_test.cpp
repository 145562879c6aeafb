#include "graphics/create_bitmap.h"

#include <gtest/gtest.h>

#include "tests/drawing_samples.h"
#include "tests/pixel_picture.h"

namespace kelvo {
namespace {

TerminalTraits Traits(double version, std::int64_t threshold = 1) {
  TerminalTraits traits;
  traits.blackThreshold = threshold;
  traits.pixelWidthVersion = 2.05;
  traits.terminalVersion = version;
  return traits;
}

// A picture of one row; "#" is black.
DrawingObject Row(const std::string& dots) {
  std::vector<Colour> pixels;
  for (const char dot : dots) pixels.push_back(dot == '#' ? kBlack : kWhite);
  return PictureAt({0, 0}, Picture(static_cast<int>(dots.size()), 1, std::move(pixels)));
}

std::string Bitmap(const DrawingObject& picture, int mode = kCreateForEEProm, double version = 1,
                   std::int64_t threshold = 1) {
  TerminalTraits traits = Traits(version, threshold);
  const Box box = BoundsOf(picture);
  const Translation result = CreateBitmap(picture, box.Width(), box.Height(), mode, traits);
  EXPECT_TRUE(result.messages.empty());
  return result.text;
}

TEST(CreateBitmap, PacksPixelsFromTheLeft) {
  EXPECT_EQ(Bitmap(Row("#")), "1,1,80;");
  EXPECT_EQ(Bitmap(Row(".......#")), "1,1,01;");
  EXPECT_EQ(Bitmap(Row("....####")), "1,1,0F;");
  EXPECT_EQ(Bitmap(Row("#.#.#.##.")), "2,1,AB00;");
  EXPECT_EQ(Bitmap(Row("........#")), "2,1,0080;");
  const DrawingObject rows = PictureAt({0, 0}, Picture(2, 2, {kBlack, kWhite, kWhite, kBlack}));
  EXPECT_EQ(Bitmap(rows), "1,2,8040;");
}

TEST(CreateBitmap, GivesTheWidthInPixelsFromTheVersionThatTakesIt) {
  const DrawingObject picture = Row("#...................");  // 20 wide
  EXPECT_EQ(Bitmap(picture, kCreateForCommand, 2.04), "3,1,800000;");
  EXPECT_EQ(Bitmap(picture, kCreateForCommand, 2.05), "-20,1,800000;");
  EXPECT_EQ(Bitmap(picture, kCreateForEEProm, 2.05), "3,1,800000;");
  EXPECT_EQ(Bitmap(picture, kCreateForCommand, 0), "3,1,800000;");  // nobody to ask
}

TEST(CreateBitmap, ComparesColoursAsNumbers) {
  const DrawingObject colours =  // red, green, blue, white: 255, 65280, 16711680, 16777215
      PictureAt({0, 0}, Picture(4, 1, {0x0000ff, 0x00ff00, 0xff0000, kWhite}));
  EXPECT_EQ(Bitmap(colours, kCreateForEEProm, 1, 255), "1,1,00;");
  EXPECT_EQ(Bitmap(colours, kCreateForEEProm, 1, 256), "1,1,80;");
  EXPECT_EQ(Bitmap(colours, kCreateForEEProm, 1, 65281), "1,1,C0;");
  EXPECT_EQ(Bitmap(colours, kCreateForEEProm, 1, 16777215), "1,1,E0;");
  // Above white everything is black, the white area beside the picture too.
  EXPECT_EQ(Bitmap(colours, kCreateForEEProm, 1, 1LL << 40), "1,1,FF;");
  EXPECT_EQ(Bitmap(colours, kCreateForEEProm, 1, -1), "1,1,00;");
}

TEST(CreateBitmap, StretchesThePictureToItsBox) {
  DrawingObject picture = Row("#.");
  picture.corner1 = {7, 1};
  EXPECT_EQ(Bitmap(picture), "1,2,F0F0;");
  const PixelMap map = RenderBitmap(picture, 8, 2, 1, {2, 0, 4, 2});
  EXPECT_EQ(AsText(map), "##..\n##..\n");
}

TEST(CreateBitmap, UnknownModesAndOddSizesAreAnswered) {
  TerminalTraits traits = Traits(3);
  const Translation unknown = CreateBitmap(Row("#"), 1, 1, 3, traits);
  EXPECT_EQ(unknown.text, "");
  EXPECT_EQ(unknown.messages,
            std::vector<std::string>{"Fehler bei CreateBitmap / iCreatemode nicht def."});
  EXPECT_EQ(CreateBitmap(Row("#"), 0, 0, kCreateForEEProm, traits).text, "1,0,;");
  EXPECT_EQ(CreateBitmap(Row("#"), -3, 1, kCreateForEEProm, traits).text, "1,1,00;");
  EXPECT_EQ(CreateBitmap(DrawingObject(), 9, 1, kCreateForEEProm, traits).text, "2,1,0000;");
}

}  // namespace
}  // namespace kelvo

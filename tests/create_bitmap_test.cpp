#include "graphics/create_bitmap.h"

#include <gtest/gtest.h>

#include "graphics/bitmap_storage.h"
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
  for (const char dot : dots) pixels.push_back(dot == '#' ? Black : White);
  return PictureAt({0, 0}, Picture(static_cast<int>(dots.size()), 1, std::move(pixels)));
}

std::string Bitmap(const DrawingObject& picture, int mode = CreateForEEProm, double version = 1,
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
  const DrawingObject rows = PictureAt({0, 0}, Picture(2, 2, {Black, White, White, Black}));
  EXPECT_EQ(Bitmap(rows), "1,2,8040;");
}

TEST(CreateBitmap, GivesTheWidthInPixelsFromTheVersionThatTakesIt) {
  const DrawingObject picture = Row("#...................");  // 20 wide
  EXPECT_EQ(Bitmap(picture, CreateForCommand, 2.04), "3,1,800000;");
  EXPECT_EQ(Bitmap(picture, CreateForCommand, 2.05), "-20,1,800000;");
  EXPECT_EQ(Bitmap(picture, CreateForEEProm, 2.05), "3,1,800000;");
  EXPECT_EQ(Bitmap(picture, CreateForCommand, 0), "3,1,800000;");  // nobody to ask
}

TEST(CreateBitmap, ComparesColoursAsNumbers) {
  const DrawingObject colours =  // red, green, blue, white: 255, 65280, 16711680, 16777215
      PictureAt({0, 0}, Picture(4, 1, {0x0000ff, 0x00ff00, 0xff0000, White}));
  EXPECT_EQ(Bitmap(colours, CreateForEEProm, 1, 255), "1,1,00;");
  EXPECT_EQ(Bitmap(colours, CreateForEEProm, 1, 256), "1,1,80;");
  EXPECT_EQ(Bitmap(colours, CreateForEEProm, 1, 65281), "1,1,C0;");
  EXPECT_EQ(Bitmap(colours, CreateForEEProm, 1, 16777215), "1,1,E0;");
  // Above white everything is black, the white area beside the picture too.
  EXPECT_EQ(Bitmap(colours, CreateForEEProm, 1, 1LL << 40), "1,1,FF;");
  EXPECT_EQ(Bitmap(colours, CreateForEEProm, 1, -1), "1,1,00;");
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
  EXPECT_EQ(CreateBitmap(Row("#"), 0, 0, CreateForEEProm, traits).text, "1,0,;");
  EXPECT_EQ(CreateBitmap(Row("#"), -3, 1, CreateForEEProm, traits).text, "1,1,00;");
  EXPECT_EQ(CreateBitmap(DrawingObject(), 9, 1, CreateForEEProm, traits).text, "2,1,0000;");
  const int widths[][2] = {{-5, 1}, {0, 1}, {1, 1}, {8, 1}, {9, 2}, {16, 2}, {17, 3}};
  for (const auto& [width, bytes] : widths) EXPECT_EQ(BytesPerRow(width), bytes) << width;
}

TEST(BitmapStorage, AsksBeforeLargeBitmaps) {
  EXPECT_GT(EstimatedBitmapSize(64, 128), LargestUnaskedBitmap);
  EXPECT_LE(EstimatedBitmapSize(64, 127), LargestUnaskedBitmap);
  EXPECT_EQ(EstimatedBitmapSize(3, 5), 1);
  EXPECT_EQ(LargeBitmapQuestion(1024), "Bitmap 1024 Zeichen lang, trotzdem übertragen ?");
}

TEST(BitmapStorage, TakesNumbersFrom0To255) {
  const std::string noNumber = "nur Ziffern erlaubt";
  const std::string outOfRange = "nur Ziffern von 0 bis 255 erlaubt";
  for (const auto& [typed, number] : {std::pair("0", 0), {"255", 255}, {" 07 ", 7}, {"-0", 0}}) {
    EXPECT_EQ(std::get<int>(ParseBitmapNumber(typed)), number) << typed;
  }
  for (const char* typed : {"", " ", "x", "1x", "-", "1.5", "1 2", "&H1"}) {
    EXPECT_EQ(std::get<std::string>(ParseBitmapNumber(typed)), noNumber) << typed;
  }
  for (const char* typed : {"256", "-1", "99999999999999999999"}) {
    EXPECT_EQ(std::get<std::string>(ParseBitmapNumber(typed)), outOfRange) << typed;
  }
  EXPECT_EQ(StoreBitmapCommand(7, "1,1,80;"),
            "\x1b"
            "EWB7,1,1,80;");
  EXPECT_TRUE(FitsEEProm(980, 1000));
  EXPECT_FALSE(FitsEEProm(981, 1000));
}

TEST(BitmapStorage, PrefersTheSelectedPicture) {
  const DrawingObject first = Row("#");
  DrawingObject second = Row("##");
  EXPECT_EQ(PictureToStore({GroupOf({}), Boxed(Kind::Rectangle, {1, 1}, {0, 0})}), nullptr);
  EXPECT_EQ(*PictureToStore({GroupOf({first}), second}), first);
  second.selected = true;
  EXPECT_EQ(*PictureToStore({first, second}), second);
  DrawingObject group = GroupOf({Row("###")});
  group.selected = true;
  EXPECT_EQ(*PictureToStore({first, group}), Row("###"));
}

}  // namespace
}  // namespace kelvo

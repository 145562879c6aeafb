// What the editor shows is what a Terminal shows that is sent the commands. More of it:
// KELVO_FIRE=3000 drawings.

#include <gtest/gtest.h>

#include "graphics/create_pic.h"
#include "graphics/flood_fill.h"
#include "graphics/painter.h"
#include "graphics/transforms.h"
#include "link/commands.h"
#include "simulator/bitmap.h"
#include "simulator/terminal.h"
#include "tests/drawing_samples.h"
#include "tests/fire/fire_count.h"
#include "tests/pixel_picture.h"
#include "tests/test_fonts.h"

namespace kelvo {
namespace {

constexpr int kWidth = 240;
constexpr int kHeight = 128;
constexpr std::int64_t kThreshold = 0x808080;
constexpr int kDrawings = 500;

// Vertex shapes are never sent, but a picture made of them holds them.
void DropUnsent(Drawing& drawing) {
  std::erase_if(drawing, [](const DrawingObject& object) { return object.kind == Kind::Vertices; });
  for (DrawingObject& object : drawing) DropUnsent(object.members);
}

class OnTerminal : public testing::Test {
 protected:
  OnTerminal() {
    terminal_.emplace(sim::TerminalSetup(), TestFonts());
    terminal_->PowerOn({});
  }

  void Send(const std::string& text) {
    for (const char c : text) terminal_->Receive(static_cast<unsigned char>(c), {});
  }
  static TerminalTraits Traits(double version) {
    TerminalTraits traits;
    traits.displayHeight = kHeight;
    traits.blackThreshold = kThreshold;
    traits.pixelWidthVersion = 2;
    traits.terminalVersion = version;
    return traits;
  }
  static std::string Commands(const Drawing& drawing, double version) {
    TerminalTraits traits = Traits(version);
    return CreatePic(drawing, traits).text;
  }
  static PixelMap Shown(const Drawing& drawing) {
    PixelMap shown(kWidth, kHeight);
    PaintDrawing(shown, drawing, TestFonts(), kThreshold);
    return shown;
  }
  // What the EEPROM holds of the picture, in its place on an empty display.
  PixelMap Stored(const DrawingObject& picture) {
    const Box box = BoundsOf(picture);
    TerminalTraits traits = Traits(1.0);
    const std::string bits =
        CreateBitmap(picture, box.Width(), box.Height(), kCreateForEEProm, traits).text;
    Send(WriteBitmap(3, bits).Text());
    const PixelMap stored =
        sim::UnpackBitmap(terminal_->Memory().Read(sim::Eeprom::Kind::Bitmap, 3).value_or(""));
    PixelMap display(kWidth, kHeight);
    for (int y = 0; y < stored.Height(); ++y) {
      for (int x = 0; x < box.Width(); ++x) {
        if (stored.At(x, y)) display.Put(box.left + x, kHeight - 1 - box.top + y, Ink::Set);
      }
    }
    return display;
  }

  std::optional<sim::Terminal> terminal_;
};

// Pixel by pixel.
PixelMap Flooded(PixelMap pixels, int x, int y) {
  const bool from = pixels.At(x, y);
  std::vector<std::pair<int, int>> waiting = {{x, y}};
  while (!waiting.empty()) {
    std::tie(x, y) = waiting.back();
    waiting.pop_back();
    if (x < 0 || y < 0 || x >= kWidth || y >= kHeight || pixels.At(x, y) != from) continue;
    pixels.Put(x, y, Ink::Invert);
    for (const int step : {-1, 1}) {
      waiting.push_back({x + step, y});
      waiting.push_back({x, y + step});
    }
  }
  return pixels;
}

TEST_F(OnTerminal, AFillChangesTheAreaOfThePointAlone) {
  RandomDrawings drawings(12);
  int pictures = 0;
  for (int i = 0; i < 80; ++i) {
    Drawing drawing = drawings.Next();
    // Behind a group the pen may be another one than whoever draws next believes.
    std::erase_if(drawing, [](const DrawingObject& object) { return object.kind == Kind::Group; });
    PixelMap before(kWidth, kHeight);
    PaintDrawing(before, drawing, TestFonts(), kThreshold);
    const int x = drawings.Number(0, kWidth - 1);
    const int row = drawings.Number(0, kHeight - 1);
    const Point at{x, kHeight - 1 - row};
    const bool black = before.At(x, row);
    EXPECT_FALSE(MakeFill(before, at, black ? PenMode::Draw : PenMode::Erase)) << "no change";
    const auto fill = MakeFill(before, at, black ? PenMode::Erase : PenMode::Draw);
    ASSERT_TRUE(fill.has_value());
    pictures += fill->kind == Kind::Picture ? 1 : 0;
    drawing.push_back(*fill);
    PixelMap shown(kWidth, kHeight);
    PaintDrawing(shown, drawing, TestFonts(), kThreshold);
    ASSERT_TRUE(shown == Flooded(before, x, row)) << i << "\n" << AsText(before) << AsText(shown);
    Send("\x1bGC" + Commands(drawing, 2.1));
    ASSERT_TRUE(terminal_->Display().Pixels() == shown) << i;
  }
  EXPECT_GT(pictures, 20);
  const PixelMap blank(kWidth, kHeight);
  EXPECT_EQ(MakeFill(blank, {3, 3}, PenMode::Draw)->kind, Kind::Rectangle) << "cheap on the line";
  EXPECT_FALSE(MakeFill(blank, {-1, 3}, PenMode::Draw));
}

TEST_F(OnTerminal, RandomDrawingsLookAsInTheEditor) {
  RandomDrawings drawings(11);
  for (int i = 0; i < testing_world::FireCount(kDrawings); ++i) {
    const Drawing drawing = drawings.Next();
    const PixelMap shown = Shown(drawing);
    // As the program sends it, with the pen as the drawing before has left it, and once more.
    for (const int time : {1, 2}) {
      Send("\x1bGC" + Commands(drawing, i % 2 == 0 ? 1.0 : 2.1));
      const PixelMap& pixels = terminal_->Display().Pixels();
      ASSERT_TRUE(pixels == shown) << "drawing " << i << " time " << time << "\n"
                                   << AsText(pixels) << AsText(shown);
    }
  }
}

TEST_F(OnTerminal, ADrawingMadeAPictureIsStoredPixelForPixel) {
  RandomDrawings drawings(12);
  const int wanted = testing_world::FireCount(kDrawings);
  int stored = 0;
  for (int i = 0; stored < wanted && i < wanted * 3 / 2; ++i) {
    Drawing drawing = drawings.Next();
    DropUnsent(drawing);
    const PixelMap shown = Shown(drawing);
    for (DrawingObject& object : drawing) object.selected = true;
    MakePictureOfSelected(drawing, {kWidth, kHeight, TestFonts(), kThreshold});
    if (drawing.size() != 1 || drawing.front().kind != Kind::Picture) continue;  // nothing to see
    const PixelMap pixels = Stored(drawing.front());
    ASSERT_TRUE(pixels == shown) << "drawing " << i << "\n" << AsText(pixels) << AsText(shown);
    ++stored;
  }
  EXPECT_EQ(stored, wanted);
}

}  // namespace
}  // namespace kelvo

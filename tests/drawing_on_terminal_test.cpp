// What the editor shows is what a Terminal shows that is sent the commands.

#include <gtest/gtest.h>

#include "graphics/create_pic.h"
#include "graphics/painter.h"
#include "graphics/transforms.h"
#include "link/commands.h"
#include "simulator/bitmap.h"
#include "simulator/terminal.h"
#include "tests/drawing_samples.h"
#include "tests/pixel_picture.h"
#include "tests/test_fonts.h"

namespace kelvo {
namespace {

constexpr int kWidth = 240;
constexpr int kHeight = 128;
constexpr std::int64_t kThreshold = 0x808080;

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

TEST_F(OnTerminal, RandomDrawingsLookAsInTheEditor) {
  RandomDrawings drawings(11);
  for (int i = 0; i < 1500; ++i) {
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
  int stored = 0;
  for (int i = 0; stored < 1000 && i < 1500; ++i) {
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
  EXPECT_EQ(stored, 1000);
}

}  // namespace
}  // namespace kelvo

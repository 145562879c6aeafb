// What the editor shows is what a Terminal shows that is sent the commands.

#include <gtest/gtest.h>

#include "graphics/create_pic.h"
#include "graphics/painter.h"
#include "simulator/terminal.h"
#include "tests/drawing_samples.h"
#include "tests/pixel_picture.h"
#include "tests/test_fonts.h"

namespace kelvo {
namespace {

constexpr int kWidth = 240;
constexpr int kHeight = 128;
constexpr std::int64_t kThreshold = 0x808080;

class OnTerminal : public testing::Test {
 protected:
  OnTerminal() {
    terminal_.emplace(sim::TerminalSetup(), TestFonts());
    terminal_->PowerOn({});
  }

  void Send(const std::string& text) {
    for (const char c : text) terminal_->Receive(static_cast<unsigned char>(c), {});
  }
  std::string Commands(const Drawing& drawing, double version) {
    TerminalTraits traits;
    traits.displayHeight = kHeight;
    traits.blackThreshold = kThreshold;
    traits.pixelWidthVersion = 2;
    traits.terminalVersion = version;
    return CreatePic(drawing, traits).text;
  }

  std::optional<sim::Terminal> terminal_;
};

TEST_F(OnTerminal, RandomDrawingsLookAsInTheEditor) {
  RandomDrawings drawings(11);
  for (int i = 0; i < 1500; ++i) {
    const Drawing drawing = drawings.Next();
    PixelMap shown(kWidth, kHeight);
    PaintDrawing(shown, drawing, TestFonts(), kThreshold);
    // As the program sends it, with the pen as the drawing before has left it, and once more.
    for (const int time : {1, 2}) {
      Send("\x1bGC" + Commands(drawing, i % 2 == 0 ? 1.0 : 2.1));
      const PixelMap& pixels = terminal_->Display().Pixels();
      ASSERT_TRUE(pixels == shown) << "drawing " << i << " time " << time << "\n"
                                   << AsText(pixels) << AsText(shown);
    }
  }
}

}  // namespace
}  // namespace kelvo

#include "graphics/painter.h"

#include <algorithm>

#include "graphics/command_walk.h"
#include "graphics/create_bitmap.h"
#include "graphics/raster.h"

namespace kelvo {

namespace {

// The Terminal's part of the conversation: keeps its pen as the commands leave it.
class Painter : public CommandHandler {
 public:
  Painter(PixelMap& display, const DeviceFonts& fonts, std::int64_t blackThreshold, Unsent unsent)
      : display_(display), fonts_(fonts), blackThreshold_(blackThreshold), unsent_(unsent) {}

  void PenMode(Ink ink) override { ink_ = ink; }

  // A pen that is only set down draws nothing.
  void Lines(const std::vector<PixelPoint>& points) override {
    for (std::size_t i = 1; i < points.size(); ++i) {
      DrawLine(display_, points[i - 1].x, points[i - 1].y, points[i].x, points[i].y, ink_);
    }
  }

  void Rectangle(PixelPoint from, PixelPoint to, bool filled) override {
    DrawRectangle(display_, from.x, from.y, to.x, to.y, filled, ink_);
  }

  void Ellipse(PixelPoint centre, int radiusX, int radiusY, bool filled) override {
    DrawEllipse(display_, centre.x, centre.y, radiusX, radiusY, filled, ink_);
  }

  // Only what can be seen is rendered: the box may be far larger than the display.
  void Bitmap(PixelPoint topLeft, const DrawingObject& object, int w, int h) override {
    const int left = std::max(0, topLeft.x);
    const int top = std::max(0, topLeft.y);
    const PixelRect part{left - topLeft.x, top - topLeft.y,
                         std::min(topLeft.x + w, display_.Width()) - left,
                         std::min(topLeft.y + h, display_.Height()) - top};
    if (part.width <= 0 || part.height <= 0) return;
    DrawBitmap(display_, left, top, RenderBitmap(object, w, h, blackThreshold_, part), ink_);
  }

  void Text(PixelPoint topLeft, const TextAttributes& style, const std::string& text) override {
    DrawText(display_, fonts_, topLeft.x, topLeft.y, text, {style, GraphicTextMode(ink_)});
  }

  void Shape(const std::vector<PixelPoint>& points, bool filled) override {
    if (unsent_ == Unsent::Drawn) DrawPolygon(display_, points, filled, ink_);
  }

  void Overflow() override {}

 private:
  PixelMap& display_;
  const DeviceFonts& fonts_;
  std::int64_t blackThreshold_;
  Unsent unsent_;
  Ink ink_ = Ink::Set;
};

}  // namespace

void PaintDrawing(PixelMap& display, const Drawing& drawing, const DeviceFonts& fonts,
                  std::int64_t blackThreshold, Unsent unsent) {
  Painter painter(display, fonts, blackThreshold, unsent);
  WalkDrawing(drawing, display.Height(), painter);
}

}  // namespace kelvo

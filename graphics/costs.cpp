#include "graphics/costs.h"

#include <algorithm>

#include "link/commands.h"

namespace kelvo {

namespace {

constexpr double kBitsPerCharacter = 10;

std::size_t BitmapBytes(const Drawing& drawing, int displayWidth, int displayHeight) {
  if (drawing.empty()) return 0;
  const Box box = BoundsOf(drawing);
  const int width = std::min(box.right, displayWidth - 1) - std::max(box.left, 0) + 1;
  const int height = std::min(box.top, displayHeight - 1) - std::max(box.bottom, 0) + 1;
  if (width < 1 || height < 1) return 0;
  return static_cast<std::size_t>(BytesPerRow(width)) * static_cast<std::size_t>(height);
}

}  // namespace

DrawingCosts CostsOf(const Drawing& drawing, TerminalTraits terminal, int displayWidth,
                     int bitsPerSecond) {
  terminal.queryVersion = nullptr;
  DrawingCosts costs;
  costs.macroBytes = CreatePic(drawing, terminal).text.size();
  costs.wireBytes = costs.macroBytes + ClearDisplay().Text().size();
  if (bitsPerSecond > 0) {
    costs.seconds = static_cast<double>(costs.wireBytes) * kBitsPerCharacter / bitsPerSecond;
  }
  costs.bitmapBytes = BitmapBytes(drawing, displayWidth, terminal.displayHeight);
  return costs;
}

}  // namespace kelvo

#include "graphics/costs.h"

#include "graphics/save_bitmap.h"
#include "link/commands.h"

namespace kelvo {

namespace {

constexpr double kBitsPerCharacter = 10;

std::optional<std::size_t> BitmapBytes(const Drawing& drawing) {
  const DrawingObject* const picture = PictureToStore(drawing);
  if (picture == nullptr) return std::nullopt;
  const Box box = BoundsOf(*picture);
  return static_cast<std::size_t>(BytesPerRow(box.Width())) *
         static_cast<std::size_t>(box.Height());
}

}  // namespace

DrawingCosts CostsOf(const Drawing& drawing, TerminalTraits terminal, int bitsPerSecond) {
  terminal.queryVersion = nullptr;
  DrawingCosts costs;
  costs.macroBytes = CreatePic(drawing, terminal).text.size();
  costs.wireBytes = costs.macroBytes + ClearDisplay().Text().size();
  if (bitsPerSecond > 0) {
    costs.seconds = static_cast<double>(costs.wireBytes) * kBitsPerCharacter / bitsPerSecond;
  }
  costs.bitmapBytes = BitmapBytes(drawing);
  return costs;
}

}  // namespace kelvo

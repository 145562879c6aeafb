#include "graphics/dither.h"

#include <algorithm>
#include <utility>

namespace kelvo {

namespace {

// 0..255, with the usual weights of the three colours.
int Brightness(Colour colour) {
  const auto part = [colour](int shift) { return static_cast<int>(colour >> shift & 255U); };
  return (299 * part(0) + 587 * part(8) + 114 * part(16)) / 1000;
}

template <typename Convert>
Picture Converted(const Picture& picture, Convert convert) {
  std::vector<Colour> pixels;
  pixels.reserve(static_cast<std::size_t>(picture.Width()) *
                 static_cast<std::size_t>(picture.Height()));
  for (int y = 0; y < picture.Height(); ++y) {
    for (int x = 0; x < picture.Width(); ++x) pixels.push_back(convert(x, y, picture.At(x, y)));
  }
  return {picture.Width(), picture.Height(), std::move(pixels)};
}

// The weights of Floyd and Steinberg: 7/16 right, 3/16, 5/16 and 1/16 below.
Picture Diffused(const Picture& picture, int middle) {
  const auto width = static_cast<std::size_t>(picture.Width());
  std::vector<int> errors(width + 2, 0);
  std::vector<int> below(width + 2, 0);
  return Converted(picture, [&](int x, int, Colour colour) {
    const auto i = static_cast<std::size_t>(x) + 1;
    if (x == 0) {
      std::swap(errors, below);
      std::fill(below.begin(), below.end(), 0);
    }
    const int wanted = Brightness(colour) + errors[i] / 16;
    const bool black = wanted < middle;
    const int error = wanted - (black ? 0 : 255);
    errors[i + 1] += 7 * error;
    below[i - 1] += 3 * error;
    below[i] += 5 * error;
    below[i + 1] += error;
    return black ? kBlack : kWhite;
  });
}

// The threshold of a cell of Bayer's matrix, 0..63.
int BayerCell(int x, int y) {
  int cell = 0;
  for (int bit = 0; bit < 3; ++bit) {
    const int xBit = x >> bit & 1;
    const int yBit = y >> bit & 1;
    cell = cell << 2 | ((xBit ^ yBit) << 1 | yBit);
  }
  return cell;
}

Picture Ordered(const Picture& picture, int middle) {
  return Converted(picture, [middle](int x, int y, Colour colour) {
    const int limit = BayerCell(x, y) * 4 + 2 + middle - 128;
    return Brightness(colour) < limit ? kBlack : kWhite;
  });
}

}  // namespace

Picture MadeMonochrome(const Picture& picture, Dithering dithering, Colour threshold, int middle) {
  switch (dithering) {
    case Dithering::Diffusion:
      return Diffused(picture, middle);
    case Dithering::Ordered:
      return Ordered(picture, middle);
    case Dithering::Threshold:
      break;
  }
  return Converted(picture,
                   [threshold](int, int, Colour c) { return c < threshold ? kBlack : kWhite; });
}

Picture MadeGrey(const Picture& picture) {
  return Converted(picture, [](int, int, Colour colour) {
    return static_cast<Colour>(Brightness(colour)) * 0x010101U;
  });
}

}  // namespace kelvo

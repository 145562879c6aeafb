#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace kelvo {

/// red + 256 * green + 65536 * blue
using Colour = std::uint32_t;
constexpr Colour kWhite = 0xffffff;
constexpr Colour kBlack = 0;

/// A coloured picture, the top row first. Copies share the pixels.
class Picture {
 public:
  Picture() = default;
  /// `pixels` holds width * height colours, or the picture is empty.
  Picture(int width, int height, std::vector<Colour> pixels);

  int Width() const { return width_; }
  int Height() const { return height_; }
  /// y counts from the top; white outside.
  Colour At(int x, int y) const;
  /// Row y from the top, `Width()` colours; y must lie inside.
  const Colour* Row(int y) const;
  bool operator==(const Picture& other) const;

 private:
  int width_ = 0;
  int height_ = 0;
  std::shared_ptr<const std::vector<Colour>> pixels_;
};

}  // namespace kelvo

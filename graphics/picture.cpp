#include "graphics/picture.h"

#include <utility>

namespace kelvo {

Picture::Picture(int width, int height, std::vector<Colour> pixels) {
  const bool whole =
      width > 0 && height > 0 &&
      pixels.size() == static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  if (!whole) return;
  width_ = width;
  height_ = height;
  pixels_ = std::make_shared<const std::vector<Colour>>(std::move(pixels));
}

Colour Picture::At(int x, int y) const {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) return kWhite;
  return Row(y)[x];
}

const Colour* Picture::Row(int y) const {
  return pixels_->data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
}

bool Picture::operator==(const Picture& other) const {
  if (width_ != other.width_ || height_ != other.height_) return false;
  return pixels_ == other.pixels_ || *pixels_ == *other.pixels_;
}

}  // namespace kelvo

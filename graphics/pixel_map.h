#pragma once

#include <cstddef>
#include <cstring>
#include <vector>

namespace kelvo {

/// What drawing a pixel does to it.
enum class Ink { Set, Clear, Invert };

/// A monochrome picture: x grows to the right, y downward, (0, 0) is the top left pixel.
/// Everything outside is clipped: reading gives an unset pixel, writing does nothing.
class PixelMap {
 public:
  PixelMap() = default;
  /// width and height in pixels; negative values count as 0.
  PixelMap(int width, int height)
      : width_(width < 0 ? 0 : width),
        height_(height < 0 ? 0 : height),
        pixels_(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_)) {}

  int Width() const { return width_; }
  int Height() const { return height_; }

  bool At(int x, int y) const { return Inside(x, y) && pixels_[Index(x, y)] != 0; }
  void Put(int x, int y, Ink ink) {
    if (!Inside(x, y)) return;
    unsigned char& pixel = pixels_[Index(x, y)];
    pixel = ink == Ink::Set ? 1 : ink == Ink::Clear ? 0 : static_cast<unsigned char>(1 - pixel);
  }
  /// The pixels from x0 to x1 of one row; none where x0 > x1.
  void PutRow(int x0, int x1, int y, Ink ink) {
    if (y < 0 || y >= height_) return;
    const int first = x0 < 0 ? 0 : x0;
    const int last = x1 < width_ ? x1 : width_ - 1;
    if (first > last) return;
    if (ink == Ink::Invert) {
      for (int x = first; x <= last; ++x) Put(x, y, ink);
      return;
    }
    const unsigned char value = ink == Ink::Set ? 1 : 0;
    std::memset(&pixels_[Index(first, y)], value, static_cast<std::size_t>(last - first) + 1);
  }
  /// Unsets every pixel.
  void Clear() { pixels_.assign(pixels_.size(), 0); }

  enum class Added { Nothing, NothingNew, New };
  /// Sets what is set in a map of the same size, and tells whether that was anything, or anything
  /// new.
  Added Add(const PixelMap& other) {
    unsigned any = 0;
    unsigned fresh = 0;
    for (std::size_t i = 0; i < pixels_.size() && i < other.pixels_.size(); ++i) {
      const unsigned char set = other.pixels_[i];
      any |= set;
      fresh |= static_cast<unsigned>(set & ~pixels_[i]);
      pixels_[i] |= set;
    }
    return any == 0 ? Added::Nothing : fresh == 0 ? Added::NothingNew : Added::New;
  }

  bool operator==(const PixelMap&) const = default;

 private:
  bool Inside(int x, int y) const { return x >= 0 && y >= 0 && x < width_ && y < height_; }
  std::size_t Index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
           static_cast<std::size_t>(x);
  }

  int width_ = 0;
  int height_ = 0;
  std::vector<unsigned char> pixels_;
};

}  // namespace kelvo

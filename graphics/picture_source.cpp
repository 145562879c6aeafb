#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "graphics/prepare.h"

namespace kelvo {

namespace {

constexpr std::size_t kBytesPerPixel = 3;

// A pixel's three colours as bytes, each as its difference from the pixel on the left: what
// changes little then packs well.
std::string Differences(const Picture& picture) {
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(picture.Width()) *
                static_cast<std::size_t>(picture.Height()) * kBytesPerPixel);
  for (int y = 0; y < picture.Height(); ++y) {
    Colour before = 0;
    for (int x = 0; x < picture.Width(); ++x) {
      const Colour colour = picture.Row(y)[x];
      for (const int shift : {0, 8, 16}) {
        bytes += static_cast<char>(((colour >> shift) - (before >> shift)) & 255U);
      }
      before = colour;
    }
  }
  return bytes;
}

Picture FromDifferences(const std::string& bytes, int width, int height) {
  std::vector<Colour> pixels;
  pixels.reserve(bytes.size() / kBytesPerPixel);
  std::size_t at = 0;
  for (int y = 0; y < height; ++y) {
    Colour before = 0;
    for (int x = 0; x < width; ++x) {
      Colour colour = 0;
      for (const int shift : {0, 8, 16}) {
        colour |= (((before >> shift) + static_cast<unsigned char>(bytes[at++])) & 255U) << shift;
      }
      pixels.push_back(colour);
      before = colour;
    }
  }
  return {width, height, std::move(pixels)};
}

std::string Deflated(const std::string& bytes) {
  auto length = compressBound(bytes.size());
  std::string packed(length, '\0');
  const int result =
      compress2(reinterpret_cast<Bytef*>(packed.data()), &length,
                reinterpret_cast<const Bytef*>(bytes.data()), bytes.size(), Z_BEST_SPEED);
  packed.resize(result == Z_OK ? length : 0);
  return packed;
}

Picture Bounded(const Picture& picture) {
  const double pixels = static_cast<double>(picture.Width()) * picture.Height();
  double share = std::min(1.0, std::sqrt(static_cast<double>(PictureSource::kMaxPixels) / pixels));
  share = std::min(share, static_cast<double>(PictureSource::kMaxSide) /
                              std::max(picture.Width(), picture.Height()));
  const auto side = [share](int length) { return std::max(1, static_cast<int>(length * share)); };
  return share < 1 ? Resampled(picture, {side(picture.Width()), side(picture.Height())}) : picture;
}

}  // namespace

PictureSource::PictureSource(const Picture& picture) {
  if (picture.Width() == 0) return;
  Picture pixels = Bounded(picture);
  std::string packed = Deflated(Differences(pixels));
  contents_ = std::make_shared<const Contents>(Contents{std::move(pixels), std::move(packed)});
}

// The size is bounded before anything is built; what is packed must unpack to just that.
PictureSource PictureSource::Unpacked(std::string_view packed, int width, int height) {
  PictureSource source;
  if (width < 1 || height < 1 || width > kMaxSide || height > kMaxSide) return source;
  const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  if (pixels > kMaxPixels) return source;
  std::string bytes(pixels * kBytesPerPixel, '\0');
  uLongf length = bytes.size();
  const int result = uncompress(reinterpret_cast<Bytef*>(bytes.data()), &length,
                                reinterpret_cast<const Bytef*>(packed.data()), packed.size());
  if (result != Z_OK || length != bytes.size()) return source;
  source.contents_ = std::make_shared<const Contents>(
      Contents{FromDifferences(bytes, width, height), std::string(packed)});
  return source;
}

const Picture& PictureSource::Pixels() const {
  static const Picture none;
  return contents_ == nullptr ? none : contents_->pixels;
}

const std::string& PictureSource::Packed() const {
  static const std::string none;
  return contents_ == nullptr ? none : contents_->packed;
}

bool PictureSource::operator==(const PictureSource& other) const {
  return contents_ == other.contents_ || Pixels() == other.Pixels();
}

}  // namespace kelvo

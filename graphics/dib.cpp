#include "graphics/dib.h"

#include <cstdlib>
#include <utility>
#include <vector>

namespace kelvo {

namespace {

constexpr std::uint32_t kCoreHeaderSize = 12;
constexpr std::uint32_t kInfoHeaderSize = 40;
constexpr std::uint32_t kMaxHeaderSize = 124;
constexpr std::uint32_t kUncompressed = 0;

Colour MakeColour(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
  return red | green << 8 | blue << 16;
}

// Little-endian numbers out of bytes that end somewhere: what lies beyond the end is 0.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}

  std::uint32_t Number(std::size_t at, std::size_t length) const {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < length && at + i < bytes_.size(); ++i) {
      number |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes_[at + i])) << (8 * i);
    }
    return number;
  }
  std::size_t Size() const { return bytes_.size(); }

 private:
  std::string_view bytes_;
};

struct Layout {
  int width = 0;
  int height = 0;
  bool topDown = false;
  std::uint32_t bits = 0;
  std::vector<Colour> palette;
  std::size_t rowBytes = 0;
  std::size_t rows = 0;  // where they begin
};

bool ReadSizes(const Bytes& dib, std::uint32_t headerSize, Layout& layout) {
  std::int64_t width = 0;
  std::int64_t height = 0;
  if (headerSize == kCoreHeaderSize) {
    width = dib.Number(4, 2);
    height = dib.Number(6, 2);
    layout.bits = dib.Number(10, 2);
  } else {
    width = static_cast<std::int32_t>(dib.Number(4, 4));
    height = static_cast<std::int32_t>(dib.Number(8, 4));
    layout.bits = dib.Number(14, 2);
    if (dib.Number(16, 4) != kUncompressed) return false;
  }
  layout.topDown = height < 0;
  constexpr std::int64_t kMaxSide = 32767;
  if (width < 1 || width > kMaxSide || height == 0 || std::abs(height) > kMaxSide) return false;
  layout.width = static_cast<int>(width);
  layout.height = static_cast<int>(std::abs(height));
  return true;
}

std::size_t PaletteLength(const Bytes& dib, std::uint32_t headerSize, std::uint32_t bits) {
  const std::size_t whole = bits <= 8 ? std::size_t{1} << bits : 0;
  if (headerSize == kCoreHeaderSize) return whole;
  const std::size_t used = dib.Number(32, 4);
  return used != 0 && (used < whole || whole == 0) ? used : whole;
}

bool ReadPalette(const Bytes& dib, std::uint32_t headerSize, Layout& layout) {
  const std::size_t entryBytes = headerSize == kCoreHeaderSize ? 3 : 4;
  const std::size_t length = PaletteLength(dib, headerSize, layout.bits);
  if (length > dib.Size()) return false;
  layout.rows = headerSize + length * entryBytes;
  if (layout.bits > 8) return true;  // a palette is only a hint for others there
  for (std::size_t i = 0; i < length; ++i) {
    const std::size_t at = headerSize + i * entryBytes;
    layout.palette.push_back(
        MakeColour(dib.Number(at + 2, 1), dib.Number(at + 1, 1), dib.Number(at, 1)));
  }
  return true;
}

std::optional<Layout> ReadLayout(const Bytes& dib, std::size_t maxPixels) {
  const std::uint32_t headerSize = dib.Number(0, 4);
  const bool known = headerSize == kCoreHeaderSize ||
                     (headerSize >= kInfoHeaderSize && headerSize <= kMaxHeaderSize);
  if (!known || dib.Size() < headerSize) return std::nullopt;
  Layout layout;
  if (!ReadSizes(dib, headerSize, layout)) return std::nullopt;
  const std::uint32_t bits = layout.bits;
  if (bits != 1 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32) {
    return std::nullopt;
  }
  if (!ReadPalette(dib, headerSize, layout)) return std::nullopt;
  const auto width = static_cast<std::size_t>(layout.width);
  const auto height = static_cast<std::size_t>(layout.height);
  layout.rowBytes = (width * bits + 31) / 32 * 4;
  if (width * height > maxPixels || layout.rows + layout.rowBytes * height > dib.Size()) {
    return std::nullopt;
  }
  return layout;
}

Colour PixelAt(const Bytes& dib, const Layout& layout, std::size_t row, std::size_t x) {
  if (layout.bits <= 8) {
    const std::size_t bit = x * layout.bits;
    const std::uint32_t byte = dib.Number(row + bit / 8, 1);
    const std::uint32_t index = byte >> (8 - layout.bits - bit % 8) & ((1U << layout.bits) - 1);
    return index < layout.palette.size() ? layout.palette[index] : kBlack;
  }
  const std::size_t bytes = layout.bits / 8;
  const std::uint32_t value = dib.Number(row + x * bytes, bytes);
  if (layout.bits == 16) {  // five bits each
    const auto widen = [](std::uint32_t five) { return (five & 31U) * 255 / 31; };
    return MakeColour(widen(value >> 10), widen(value >> 5), widen(value));
  }
  return MakeColour(value >> 16 & 255U, value >> 8 & 255U, value & 255U);
}

}  // namespace

std::optional<Picture> ReadDib(std::string_view bytes, std::size_t maxPixels) {
  const Bytes dib(bytes);
  const std::optional<Layout> layout = ReadLayout(dib, maxPixels);
  if (!layout) return std::nullopt;
  std::vector<Colour> pixels;
  const auto width = static_cast<std::size_t>(layout->width);
  const auto height = static_cast<std::size_t>(layout->height);
  pixels.reserve(width * height);
  for (std::size_t y = 0; y < height; ++y) {
    const std::size_t stored = layout->topDown ? y : height - 1 - y;
    const std::size_t row = layout->rows + stored * layout->rowBytes;
    for (std::size_t x = 0; x < width; ++x) pixels.push_back(PixelAt(dib, *layout, row, x));
  }
  return Picture(layout->width, layout->height, std::move(pixels));
}

std::string MakeDibRows(const Picture& picture) {
  const auto width = static_cast<std::size_t>(picture.Width());
  const std::size_t padding = (4 - width * 3 % 4) % 4;
  std::string rows;
  rows.reserve((width * 3 + padding) * static_cast<std::size_t>(picture.Height()));
  for (int y = picture.Height() - 1; y >= 0; --y) {
    const Colour* row = picture.Row(y);
    for (std::size_t x = 0; x < width; ++x) {
      for (const int shift : {16, 8, 0}) rows += static_cast<char>(row[x] >> shift & 255U);
    }
    rows.append(padding, '\0');
  }
  return rows;
}

Picture Cropped(const Picture& picture, int left, int top, int width, int height) {
  std::vector<Colour> pixels;
  pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) pixels.push_back(picture.At(left + x, top + y));
  }
  return {width, height, std::move(pixels)};
}

}  // namespace kelvo

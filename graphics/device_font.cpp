#include "graphics/device_font.h"

#include <fstream>
#include <sstream>

namespace kelvo {

namespace {

constexpr std::string_view kMagic = "KFNT";
constexpr std::size_t kHeaderSize = 7;
constexpr unsigned char kVersion = 1;
constexpr int kMaxCell = 32;
constexpr int kGlyphCount = 256;
constexpr unsigned char kHardBlank = 160;

unsigned char ByteAt(std::string_view bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

// One row of a glyph, the left pixel in bit width - 1.
std::uint32_t ReadRow(std::string_view bytes, std::size_t at, int width) {
  const int rowBytes = (width + 7) / 8;
  std::uint32_t row = 0;
  for (int i = 0; i < rowBytes; ++i) {
    row = row << 8 | ByteAt(bytes, at + static_cast<std::size_t>(i));
  }
  return row >> (8 * rowBytes - width);
}

}  // namespace

bool DeviceFont::Parse(std::string_view bytes) {
  *this = DeviceFont();
  if (bytes.size() < kHeaderSize || !bytes.starts_with(kMagic) || ByteAt(bytes, 4) != kVersion) {
    return false;
  }
  const int width = ByteAt(bytes, 5);
  const int height = ByteAt(bytes, 6);
  if (width < 1 || width > kMaxCell || height < 1 || height > kMaxCell) return false;
  const auto rowBytes = static_cast<std::size_t>((width + 7) / 8);
  const auto rowCount = static_cast<std::size_t>(kGlyphCount) * static_cast<std::size_t>(height);
  if (bytes.size() != kHeaderSize + rowCount * rowBytes) return false;

  width_ = width;
  height_ = height;
  rows_.reserve(rowCount);
  for (std::size_t row = 0; row < rowCount; ++row) {
    rows_.push_back(ReadRow(bytes, kHeaderSize + row * rowBytes, width));
  }
  return true;
}

bool DeviceFont::HasGlyph(unsigned char character) const {
  if (Empty() || character == ' ' || character == kHardBlank) return true;
  for (int y = 0; y < height_; ++y) {
    if (Row(character, y) != 0) return true;
  }
  return false;
}

bool DeviceFont::Pixel(unsigned char character, int x, int y) const {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) return false;
  return (Row(character, y) >> (width_ - 1 - x) & 1U) != 0;
}

std::vector<int> DeviceFonts::Load(const std::string& folder) {
  std::vector<int> unusable;
  for (int number = 0; number < kCount; ++number) {
    std::ifstream file(folder + "/Font" + std::to_string(number) + ".Fnt", std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    if (!fonts_[static_cast<std::size_t>(number)].Parse(bytes.str())) unusable.push_back(number);
  }
  return unusable;
}

const DeviceFont& DeviceFonts::Font(int number) const {
  static const DeviceFont empty;
  if (number < 0 || number >= kCount) return empty;
  return fonts_[static_cast<std::size_t>(number)];
}

}  // namespace kelvo

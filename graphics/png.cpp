#include "graphics/png.h"

#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

// The signature, the head, the rows packed by zlib, and the end: each part but the first stands
// between its length and a checksum.

namespace kelvo {
namespace {

constexpr std::string_view kSignature = "\x89PNG\r\n\x1a\n";
// One bit a pixel, grey, packed, without filters that adapt, not interlaced.
constexpr std::string_view kForm("\x01\x00\x00\x00\x00", 5);

void AppendNumber(std::string& bytes, std::size_t number) {
  for (const int shift : {24, 16, 8, 0}) bytes += static_cast<char>(number >> shift & 255U);
}

void AppendPart(std::string& bytes, std::string_view kind, std::string_view content) {
  AppendNumber(bytes, content.size());
  const std::string part = std::string(kind) + std::string(content);
  bytes += part;
  const auto* const data = reinterpret_cast<const Bytef*>(part.data());
  AppendNumber(bytes, crc32(0, data, static_cast<uInt>(part.size())));
}

// A row begins with the filter's number, 0 for none; a set bit is white.
std::string RowOf(const PixelMap& pixels, int y, int scale) {
  const int width = pixels.Width() * scale;
  const auto bytes = (static_cast<std::size_t>(width) + 7) / 8;
  std::string row(bytes + 1, '\0');
  for (int x = 0; x < width; ++x) {
    if (pixels.At(x / scale, y)) continue;
    char& byte = row[static_cast<std::size_t>(x) / 8 + 1];
    byte = static_cast<char>(static_cast<unsigned char>(byte) | 0x80U >> (x % 8));
  }
  return row;
}

std::string Packed(const std::string& rows) {
  auto length = compressBound(rows.size());
  std::string packed(length, '\0');
  const int result =
      compress2(reinterpret_cast<Bytef*>(packed.data()), &length,
                reinterpret_cast<const Bytef*>(rows.data()), rows.size(), Z_BEST_COMPRESSION);
  packed.resize(result == Z_OK ? length : 0);
  return packed;
}

}  // namespace

std::string PngOf(const PixelMap& pixels, int scale) {
  if (pixels.Width() == 0 || pixels.Height() == 0 || scale < 1) return {};
  std::string rows;
  for (int y = 0; y < pixels.Height(); ++y) {
    const std::string row = RowOf(pixels, y, scale);
    for (int i = 0; i < scale; ++i) rows += row;
  }
  const std::string packed = Packed(rows);
  if (packed.empty()) return {};
  std::string head;
  AppendNumber(head, static_cast<std::size_t>(pixels.Width()) * static_cast<std::size_t>(scale));
  AppendNumber(head, static_cast<std::size_t>(pixels.Height()) * static_cast<std::size_t>(scale));
  std::string bytes(kSignature);
  AppendPart(bytes, "IHDR", head + std::string(kForm));
  AppendPart(bytes, "IDAT", packed);
  AppendPart(bytes, "IEND", {});
  return bytes;
}

}  // namespace kelvo

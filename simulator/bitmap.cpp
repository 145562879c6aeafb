#include "simulator/bitmap.h"

#include <cstddef>

namespace kelvo::sim {
namespace {

constexpr std::size_t kBitmapHead = 3;

int ByteAt(std::string_view bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

}  // namespace

std::optional<std::string> PackBitmap(const Parameters& parameters) {
  const int given = parameters.Number(1);
  const int rowBytes = given < 0 ? (7 - given) / 8 : given;
  const int height = parameters.Number(2);
  const std::optional<std::string> rows = HexBytes(parameters.Rest(3));
  if (!rows || rowBytes < 1 || rowBytes > 255 || height < 1 || height > 0xFFFF) {
    return std::nullopt;
  }
  if (rows->size() != static_cast<std::size_t>(rowBytes) * static_cast<std::size_t>(height)) {
    return std::nullopt;
  }
  const std::string head = {static_cast<char>(rowBytes), static_cast<char>(height & 0xFF),
                            static_cast<char>(height >> 8)};
  return head + *rows;
}

PixelMap UnpackBitmap(std::string_view record) {
  if (record.size() < kBitmapHead) return {};
  const int rowBytes = ByteAt(record, 0);
  const int height = ByteAt(record, 1) + 256 * ByteAt(record, 2);
  const std::string_view rows = record.substr(kBitmapHead);
  if (rows.size() != static_cast<std::size_t>(rowBytes) * static_cast<std::size_t>(height)) {
    return {};
  }
  PixelMap picture(rowBytes * 8, height);
  for (int i = 0; i < rowBytes * height; ++i) {
    for (int bit = 0; bit < 8; ++bit) {
      if ((ByteAt(rows, static_cast<std::size_t>(i)) & 0x80 >> bit) == 0) continue;
      picture.Put(i % rowBytes * 8 + bit, i / rowBytes, Ink::Set);
    }
  }
  return picture;
}

}  // namespace kelvo::sim

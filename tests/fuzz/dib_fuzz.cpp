// A bitmap is refused or becomes a picture that can be sent and shown in any size.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "graphics/create_bitmap.h"
#include "graphics/dib.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvo;
  if (size < 3) return 0;
  DrawingObject object;
  object.kind = Kind::Picture;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 3, size - 3);
  const auto picture = ReadDib(bytes, 100'000);
  if (!picture) return 0;
  object.picture = *picture;
  TerminalTraits terminal;
  terminal.blackThreshold = std::int64_t{data[2]} << 16;
  const int w = data[0];
  const int h = data[1];
  const Translation bitmap = CreateBitmap(object, w, h, kCreateForEEProm, terminal);
  const std::string header = std::to_string(BytesPerRow(w)) + "," + std::to_string(h) + ",";
  const auto digits = static_cast<std::size_t>(2 * BytesPerRow(w) * h);
  if (bitmap.text.size() != header.size() + digits + 1) std::abort();
  RenderBitmap(object, w, h, terminal.blackThreshold, {0, 0, w, h});
  return 0;
}

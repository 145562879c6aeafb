// Whatever is read, is either refused whole or can be saved, sent and drawn.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "graphics/create_pic.h"
#include "graphics/painter.h"
#include "graphics/wmf.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvo;
  WmfLimits limits;
  limits.objects = 2000;
  limits.vertices = 20'000;
  limits.pixels = 100'000;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  static const DeviceFonts fonts;
  const WmfDrawing read = ReadWmf(bytes, 240, 128, fonts, limits);
  if (!read.error.empty() && !read.drawing.empty()) std::abort();

  PixelMap display(240, 128);
  PaintDrawing(display, read.drawing, fonts, 0x808080);
  const WmfFile file = WriteWmf(read.drawing, 240, 128);
  if (file.error.empty() && ReadWmf(file.bytes, 240, 128, fonts).drawing != read.drawing) {
    std::abort();
  }
  return 0;
}

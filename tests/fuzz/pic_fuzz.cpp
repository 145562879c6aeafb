// Whatever commands are read give a drawing that can be sent, and that looks as they would.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "graphics/create_pic.h"
#include "graphics/painter.h"
#include "graphics/pic_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvo;
  WmfLimits limits;
  limits.objects = 2000;
  limits.vertices = 20'000;
  limits.pixels = 100'000;
  static const DeviceFonts fonts;
  const auto read = [&limits](std::string_view commands) {
    return ReadPic(commands, 128, fonts, limits);
  };
  const LoadedDrawing first = read({reinterpret_cast<const char*>(data), size});
  if (!first.error.empty() && !first.drawing.empty()) std::abort();

  TerminalTraits traits;
  traits.displayHeight = 128;
  traits.blackThreshold = 0x808080;
  traits.pixelWidthVersion = 2;
  traits.terminalVersion = 2.1;
  const auto commands = [&traits](const LoadedDrawing& loaded) {
    return CreatePic(loaded.drawing, traits);
  };
  const auto sent = commands(first);
  if (!sent.failed && commands(read(sent.text)).text != sent.text) std::abort();
  return 0;
}

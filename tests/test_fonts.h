#pragma once

#include "graphics/device_font.h"

namespace kelvo {

/// The delivered fonts.
inline const DeviceFonts& TestFonts() {
  static const DeviceFonts fonts = [] {
    DeviceFonts loaded;
    loaded.Load(KELVO_FONT_FOLDER);
    return loaded;
  }();
  return fonts;
}

}  // namespace kelvo

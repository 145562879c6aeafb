#pragma once

#include <string_view>

#include "graphics/device_font.h"
#include "graphics/wmf.h"

namespace kelvo {

/// Reads drawing commands back into a drawing that looks the same and gives the same commands
/// again; what stood in groups comes back without them. The pen, the position and the text's looks
/// are followed as the Terminal does, so that commands written by hand can be read as well.
///
/// What is no drawing is skipped and named with the place (counted from 1) where it first stands. A
/// text that holds other things alone is an error, an empty one is an empty drawing.
/// `displayHeight` turns y round.
LoadedDrawing ReadPic(std::string_view commands, int displayHeight, const DeviceFonts& fonts,
                      const WmfLimits& limits = {});

/// Whether a text begins as drawing commands do.
bool LooksLikePic(std::string_view text);

}  // namespace kelvo

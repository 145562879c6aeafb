#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "graphics/drawing.h"

// Device independent bitmaps, the pictures inside of metafiles.

namespace kelvo {

/// Reads an uncompressed bitmap of 1, 4, 8, 16, 24 or 32 bits a pixel, its header in front. Nothing
/// when it is damaged, of another kind, or larger than `maxPixels`.
std::optional<Picture> ReadDib(std::string_view bytes, std::size_t maxPixels);

/// The rows of a bitmap of 24 bits a pixel without its header: from the bottom, each padded to a
/// multiple of 4 bytes.
std::string MakeDibRows(const Picture& picture);

/// A part of a picture, white where it leaves it; sizes must be positive.
Picture Cropped(const Picture& picture, int left, int top, int width, int height);

}  // namespace kelvo

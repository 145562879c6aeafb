#include "graphics/create_bitmap.h"

#include <algorithm>
#include <new>
#include <string_view>
#include <utility>

namespace kelvo {

namespace {

// The rows of a picture stretched to a box of w by h pixels: each pixel takes the colour of the
// picture's pixel that lies under its centre. Right of the picture the area is white.
class StretchedRows {
 public:
  StretchedRows(const Picture& picture, int w, int h, int areaWidth)
      : picture_(picture), height_(h), row_(static_cast<std::size_t>(areaWidth), kWhite) {
    if (picture.Width() == 0) return;
    columns_.reserve(static_cast<std::size_t>(std::max(w, 0)));
    for (int x = 0; x < w; ++x) columns_.push_back(SourceIndex(x, w, picture.Width()));
  }

  const std::vector<Colour>& At(int y) {
    if (columns_.empty()) return row_;
    const Colour* source = picture_.Row(SourceIndex(y, height_, picture_.Height()));
    if (static_cast<int>(columns_.size()) == picture_.Width()) {
      std::copy(source, source + columns_.size(), row_.begin());
    } else {
      std::transform(columns_.begin(), columns_.end(), row_.begin(),
                     [source](int x) { return source[x]; });
    }
    return row_;
  }

 private:
  static int SourceIndex(int index, int length, int sourceLength) {
    const std::int64_t centre = (2 * std::int64_t{index} + 1) * sourceLength;
    return static_cast<int>(centre / (2 * std::int64_t{length}));
  }

  const Picture& picture_;
  int height_;
  std::vector<int> columns_;
  std::vector<Colour> row_;
};

// Compared as colours, so that the comparison stays in 32 bits: above all colours everything is
// black, below all colours nothing.
Colour AsColour(std::int64_t threshold) {
  return static_cast<Colour>(std::clamp<std::int64_t>(threshold, 0, std::int64_t{kWhite} + 1));
}

unsigned PackByte(const Colour* pixels, Colour threshold) {
  unsigned byte = 0;
  for (int i = 0; i < 8; ++i) byte = byte << 1 | (pixels[i] < threshold ? 1U : 0U);
  return byte;
}

void AppendRow(std::string& text, const std::vector<Colour>& row, Colour threshold) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  for (std::size_t x = 0; x < row.size(); x += 8) {
    const unsigned byte = PackByte(row.data() + x, threshold);
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15U];
  }
}

void AppendRows(std::string& text, const Picture& picture, int w, int h, std::int64_t threshold) {
  const int areaWidth = 8 * BytesPerRow(w);
  const auto height = static_cast<std::size_t>(std::max(h, 0));
  text.reserve(text.size() + static_cast<std::size_t>(areaWidth / 4) * height + 1);
  StretchedRows rows(picture, w, h, areaWidth);
  for (int y = 0; y < h; ++y) AppendRow(text, rows.At(y), AsColour(threshold));
}

double KnownVersion(TerminalTraits& terminal) {
  if (terminal.terminalVersion == 0 && terminal.queryVersion) {
    terminal.terminalVersion = terminal.queryVersion();
  }
  return terminal.terminalVersion;
}

}  // namespace

int BytesPerRow(int w) { return w < 1 ? 1 : (w - 1) / 8 + 1; }

Translation CreateBitmap(const DrawingObject& picture, int w, int h, int iCreatemode,
                         TerminalTraits& terminal) {
  if (iCreatemode != kCreateForCommand && iCreatemode != kCreateForEEProm) {
    return {{}, {"Fehler bei CreateBitmap / iCreatemode nicht def."}, true};
  }
  const bool inPixels =
      iCreatemode == kCreateForCommand && !(KnownVersion(terminal) < terminal.pixelWidthVersion);
  const int bytes = BytesPerRow(w);
  std::string text(inPixels ? "-" : "");
  text.append(std::to_string(inPixels ? w : bytes)).append(",");
  text.append(std::to_string(h)).append(",");
  try {
    AppendRows(text, picture.picture, w, h, terminal.blackThreshold);
  } catch (const std::bad_alloc&) {
    // No separator before the name: deliberate, unlike everywhere else.
    return {{}, {"Nicht genügend SpeicherCreateBitmap"}, true};
  }
  text += ';';
  return {std::move(text), {}, false};
}

PixelMap RenderBitmap(const DrawingObject& picture, int w, int h, std::int64_t blackThreshold,
                      const PixelRect& part) {
  PixelMap map(part.width, part.height);
  StretchedRows rows(picture.picture, w, h, std::max(w, 0));
  const Colour threshold = AsColour(blackThreshold);
  for (int y = 0; y < part.height; ++y) {
    const std::vector<Colour>& row = rows.At(part.y + y);
    for (int x = 0; x < part.width; ++x) {
      if (row[static_cast<std::size_t>(part.x) + static_cast<std::size_t>(x)] < threshold)
        map.Put(x, y, Ink::Set);
    }
  }
  return map;
}

}  // namespace kelvo

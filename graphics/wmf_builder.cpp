#include "graphics/wmf_builder.h"

#include <algorithm>
#include <cmath>

namespace kelvo::wmf {

void Builder::CountObject() {
  if (++objects_ > limits_.objects) {
    throw BadFile("Die Datei enthält mehr als " + std::to_string(limits_.objects) + " Objekte.");
  }
}

void Builder::Add(DrawingObject object) {
  CountObject();
  levels_.back().push_back(std::move(object));
}

void Builder::CountVertices(std::size_t count) {
  vertices_ += count;
  if (vertices_ > limits_.vertices) {
    throw BadFile("Die Datei enthält mehr als " + std::to_string(limits_.vertices) + " Punkte.");
  }
}

void Builder::BeginGroup(PenMode penMode) {
  if (levels_.size() > limits_.groupDepth) {
    throw BadFile("Die Gruppen der Datei sind zu tief verschachtelt.");
  }
  groupPenModes_.push_back(penMode);
  levels_.emplace_back();
}

void Builder::EndGroup() {
  if (levels_.size() < 2) ThrowDamaged();
  DrawingObject group;
  group.penMode = groupPenModes_.back();
  group.members = std::move(levels_.back());
  groupPenModes_.pop_back();
  levels_.pop_back();
  Add(std::move(group));
}

Drawing Builder::Take() {
  if (levels_.size() != 1) ThrowDamaged();
  return std::move(levels_.front());
}

namespace {

// Windows has characters of its own between 128 and 159.
char Latin1Character(char character) {
  switch (static_cast<unsigned char>(character)) {
    case 0x80:
      return 'E';
    case 0x82:
    case 0x91:
    case 0x92:
      return '\'';
    case 0x84:
    case 0x93:
    case 0x94:
      return '"';
    case 0x96:
    case 0x97:
      return '-';
    default:
      break;
  }
  const auto code = static_cast<unsigned char>(character);
  const bool printable = (code >= 32 && code < 127) || code >= 160;
  return printable ? character : '?';
}

}  // namespace

TextAttributes NearestStyle(const DeviceFonts& fonts, const Font& font, double height,
                            double width) {
  constexpr int kTallFonts = 4;  // 8 x 8 to 8 x 16; the bold ones stand 5 further on
  TextAttributes best;
  double bestMiss = HUGE_VAL;
  for (int zoom = 1; zoom <= kMaxZoomY; ++zoom) {
    for (int number = 0; number < kTallFonts; ++number) {
      const double miss = std::abs(fonts.Font(number).Height() * zoom - height);
      if (miss >= bestMiss) continue;
      bestMiss = miss;
      best.font = number;
      best.zoomY = zoom;
    }
  }
  const double wanted = width > 0 ? width : height / 2;
  const double cell = std::max(1, fonts.Font(best.font).Width());
  best.zoomX = static_cast<int>(std::clamp(std::round(wanted / cell), 1.0, double{kMaxZoomX}));
  if (font.bold) best.font += 5;
  best.underline = font.underline;
  return best;
}

std::string ToLatin1(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), Latin1Character);
  return text;
}

}  // namespace kelvo::wmf

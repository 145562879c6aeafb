#include "graphics/text_prefix.h"

#include <algorithm>

namespace kelvo {

namespace {

constexpr std::size_t kPrefixLength = 6;

char Digit(int number) { return static_cast<char>('0' + (number < 0 || number > 9 ? 0 : number)); }

char Flag(bool on) { return on ? '1' : '0'; }

}  // namespace

std::string MakePrefixedText(const DrawingObject& object) {
  if (!object.style) return {};
  const TextAttributes& style = *object.style;
  return std::string{Digit(style.font), Digit(style.zoomX),  Digit(style.zoomY),
                     Flag(style.bold),  Flag(style.inverse), Flag(style.underline)} +
         object.text;
}

bool HasPrefix(std::string_view text) {
  const auto within = [text](std::size_t at, char low, char high) {
    return text[at] >= low && text[at] <= high;
  };
  return text.size() > kPrefixLength && within(0, '0', '9') && within(1, '1', '0' + kMaxZoomX) &&
         within(2, '1', '0' + kMaxZoomY) && within(3, '0', '1') && within(4, '0', '1') &&
         within(5, '0', '1');
}

void TakePrefixedText(DrawingObject& object, std::string_view prefixedText) {
  if (prefixedText.empty()) return;
  const auto at = [&](std::size_t i) { return i < prefixedText.size() ? prefixedText[i] : '0'; };
  const auto digit = [&](std::size_t i) { return at(i) >= '0' && at(i) <= '9' ? at(i) - '0' : 0; };
  object.style = {digit(0), digit(1), digit(2), at(3) == '1', at(4) == '1', at(5) == '1'};
  object.text = prefixedText.substr(std::min(kPrefixLength, prefixedText.size()));
}

}  // namespace kelvo

#include "graphics/text_prefix.h"

#include <algorithm>

namespace kelvo {

namespace {

char Digit(int number) { return static_cast<char>('0' + (number < 0 || number > 9 ? 0 : number)); }

char Flag(bool on) { return on ? '1' : '0'; }

}  // namespace

std::string MakePrefixedText(const TextAttributes& attributes, std::string_view text) {
  std::string prefixed{Digit(attributes.font),   Digit(attributes.zoomX),
                       Digit(attributes.zoomY),  Flag(attributes.bold),
                       Flag(attributes.inverse), Flag(attributes.underline)};
  return prefixed.append(text);
}

TextAttributes AttributesOf(std::string_view prefixedText) {
  const auto at = [&](std::size_t i) { return i < prefixedText.size() ? prefixedText[i] : '0'; };
  const auto digit = [&](std::size_t i) { return at(i) >= '0' && at(i) <= '9' ? at(i) - '0' : 0; };
  return {digit(0), digit(1), digit(2), at(3) == '1', at(4) == '1', at(5) == '1'};
}

std::string_view ShownText(std::string_view prefixedText) {
  return prefixedText.size() > TextPrefixLength ? prefixedText.substr(TextPrefixLength)
                                                : std::string_view();
}

int AttributeValue(const TextAttributes& attributes) {
  return (attributes.bold ? 2 : 0) + (attributes.inverse ? 4 : 0) + (attributes.underline ? 1 : 0);
}

TextStyle StyleOf(const TextAttributes& attributes, Ink ink) {
  TextStyle style;
  style.font = attributes.font;
  style.zoomX = attributes.zoomX;
  style.zoomY = attributes.zoomY;
  style.bold = attributes.bold;
  style.inverse = attributes.inverse;
  style.underline = attributes.underline;
  style.mode = GraphicTextMode(ink);
  return style;
}

Box TextBox(const DeviceFonts& fonts, Point topLeft, std::string_view prefixedText) {
  const TextAttributes attributes = AttributesOf(prefixedText);
  const DeviceFont& font = fonts.Font(attributes.font);
  const int cells = static_cast<int>(std::max<std::size_t>(1, ShownText(prefixedText).size()));
  const int width = cells * std::max(1, font.Width()) * std::clamp(attributes.zoomX, 1, MaxZoomX);
  const int height = std::max(1, font.Height()) * std::clamp(attributes.zoomY, 1, MaxZoomY);
  return {topLeft.x, topLeft.y - height + 1, topLeft.x + width - 1, topLeft.y};
}

}  // namespace kelvo

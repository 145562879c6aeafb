#include "graphics/bitmap_storage.h"

#include <charconv>
#include <string_view>

namespace kelvo {

namespace {

const DrawingObject* FindPicture(const std::vector<DrawingObject>& objects, bool wanted,
                                 bool groupSelected) {
  for (const DrawingObject& object : objects) {
    const bool selected = groupSelected || object.selected;
    if (object.kind == Kind::Picture && (selected || !wanted)) return &object;
    if (const auto* found = FindPicture(object.members, wanted, selected)) return found;
  }
  return nullptr;
}

std::string_view Trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

const DrawingObject* PictureToStore(const Drawing& drawing) {
  const DrawingObject* selected = FindPicture(drawing, true, false);
  return selected != nullptr ? selected : FindPicture(drawing, false, false);
}

std::int64_t EstimatedBitmapSize(int w, int h) { return std::int64_t{w} * h / 8; }

std::string LargeBitmapQuestion(std::int64_t size) {
  return "Bitmap " + std::to_string(size) + " Zeichen lang, trotzdem übertragen ?";
}

std::variant<int, std::string> ParseBitmapNumber(const std::string& typed) {
  std::string_view digits = Trimmed(typed);
  const bool negative = digits.starts_with('-');
  if (negative || digits.starts_with('+')) digits.remove_prefix(1);
  const bool isNumber =
      !digits.empty() && digits.find_first_not_of("0123456789") == std::string_view::npos;
  if (!isNumber) return std::string("nur Ziffern erlaubt");
  int number = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (read.ec != std::errc() || number > 255 || (negative && number != 0)) {
    return std::string("nur Ziffern von 0 bis 255 erlaubt");
  }
  return number;
}

std::string StoreBitmapCommand(int number, const std::string& bitmapText) {
  return "\x1b"
         "EWB" +
         std::to_string(number) + "," + bitmapText;
}

}  // namespace kelvo

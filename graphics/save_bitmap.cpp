#include "graphics/save_bitmap.h"

#include <charconv>
#include <cstdint>
#include <string_view>
#include <variant>

namespace kelvo {

namespace {

constexpr std::int64_t kLargestUnaskedBitmap = 1023;

const DrawingObject* FindPicture(const std::vector<DrawingObject>& objects, bool wanted,
                                 bool groupSelected) {
  for (const DrawingObject& object : objects) {
    const bool selected = groupSelected || object.selected;
    if (object.kind == Kind::Picture && (selected || !wanted)) return &object;
    if (const auto* found = FindPicture(object.members, wanted, selected)) return found;
  }
  return nullptr;
}

bool MayBeSoLarge(std::int64_t size, Operator& person) {
  return size <= kLargestUnaskedBitmap ||
         person.Ask("Bitmap " + std::to_string(size) + " Zeichen lang, trotzdem übertragen ?");
}

std::string_view Trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The number, or the message that refuses what was typed.
std::variant<int, std::string> ParseNumber(const std::string& typed) {
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

void AskNumberAndSend(const std::string& bitmap, Operator& person, const EEPromAccess& eeprom) {
  const auto tell = [&eeprom](const std::string& text) {
    const auto number = ParseNumber(text);
    const int* const valid = std::get_if<int>(&number);
    if (eeprom.typed) eeprom.typed(valid != nullptr ? std::optional(*valid) : std::nullopt);
  };
  const auto typed = person.Input("Nr dieser Bitmap im EEProm :", {}, tell);
  if (!typed) return;
  const auto number = ParseNumber(*typed);
  if (const auto* refusal = std::get_if<std::string>(&number)) return person.Message(*refusal);
  eeprom.write(WriteBitmap(std::get<int>(number), bitmap), " / cmdSaveBMPinEEprom");
}

}  // namespace

const DrawingObject* PictureToStore(const Drawing& drawing) {
  const DrawingObject* selected = FindPicture(drawing, true, false);
  return selected != nullptr ? selected : FindPicture(drawing, false, false);
}

void SaveBMPinEEProm(const Drawing& drawing, TerminalTraits terminal, Operator& person,
                     const EEPromAccess& eeprom) {
  const DrawingObject* picture = PictureToStore(drawing);
  if (picture == nullptr) return person.Message("Die Zeichnung enthält kein Bild.");
  const int w = picture->corner1.x - picture->corner2.x + 1;
  const int h = picture->corner1.y - picture->corner2.y + 1;
  if (!MayBeSoLarge(std::int64_t{w} * h / 8, person)) return;

  const Translation bitmap = CreateBitmap(*picture, w, h, kCreateForEEProm, terminal);
  for (const std::string& message : bitmap.messages) person.Message(message);
  if (bitmap.failed) return;
  if (!eeprom.hasRoom(bitmap.text.size())) return;
  AskNumberAndSend(bitmap.text, person, eeprom);
}

}  // namespace kelvo

#include "graphics/save_bitmap.h"

#include <variant>

#include "graphics/bitmap_storage.h"

namespace kelvo {

namespace {

void AskNumberAndSend(const std::string& bitmap, Operator& person, const EEPromAccess& eeprom) {
  const auto typed = person.Input("Nr dieser Bitmap im EEProm :", {});
  if (!typed) return;
  const auto number = ParseBitmapNumber(*typed);
  if (const auto* refusal = std::get_if<std::string>(&number)) return person.Message(*refusal);
  const std::string error = eeprom.send(StoreBitmapCommand(std::get<int>(number), bitmap));
  if (error.empty()) return;
  person.Message(error == "EEPROM" ? "Fehler beim EEPROM" : error + " / cmdSaveBMPinEEprom",
                 Icon::Exclamation);
}

}  // namespace

void SaveBMPinEEProm(const Drawing& drawing, TerminalTraits terminal, Operator& person,
                     const EEPromAccess& eeprom) {
  const DrawingObject* picture = PictureToStore(drawing);
  if (picture == nullptr) return person.Message("Die Zeichnung enthält kein Bild.");
  const int w = picture->corner1.x - picture->corner2.x + 1;
  const int h = picture->corner1.y - picture->corner2.y + 1;
  const std::int64_t size = EstimatedBitmapSize(w, h);
  if (size > LargestUnaskedBitmap && !person.Ask(LargeBitmapQuestion(size))) return;

  const Translation bitmap = CreateBitmap(*picture, w, h, CreateForEEProm, terminal);
  for (const std::string& message : bitmap.messages) person.Message(message);
  if (bitmap.failed) return;
  if (!FitsEEProm(bitmap.text.size(), eeprom.freeBytes())) {
    return person.Message("nicht genügend Platz im EEprom", Icon::Exclamation);
  }
  AskNumberAndSend(bitmap.text, person, eeprom);
}

}  // namespace kelvo

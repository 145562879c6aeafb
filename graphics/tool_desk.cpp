#include "graphics/tool_desk.h"

#include "graphics/pixel_image.h"

namespace kelvo {

// Asks again, with what was typed, until the Terminal can show it.
std::optional<std::string> ToolDesk::AskText(const std::string& proposed) {
  std::string typed =
      QString::fromLatin1(proposed.data(), static_cast<int>(proposed.size())).toStdString();
  while (true) {
    const std::optional<std::string> answer = person_.Input("Bitte Text eingeben :", typed);
    if (!answer) return std::nullopt;
    if (auto wire = ToWireText(QString::fromStdString(*answer))) return wire;
    typed = *answer;
    person_.Beep();
    person_.Message("Der Text enthält Zeichen, die das Terminal nicht darstellen kann.",
                    Icon::Exclamation);
  }
}

}  // namespace kelvo

#include "graphics/tool_desk.h"

#include "graphics/pixel_image.h"

namespace kelvo {

// Asks again, with what was typed, until the Terminal can show it.
std::optional<std::string> ToolDesk::AskText(const std::string& proposed,
                                             const std::function<void(const std::string&)>& typed) {
  std::string box =
      QString::fromLatin1(proposed.data(), static_cast<int>(proposed.size())).toStdString();
  const auto showTyped = [&typed](const std::string& text) {
    if (const auto wire = ToWireText(QString::fromStdString(text))) typed(*wire);
  };
  while (true) {
    const std::optional<std::string> answer =
        person_.Input("Bitte Text eingeben :", box, showTyped);
    if (!answer) return std::nullopt;
    if (auto wire = ToWireText(QString::fromStdString(*answer))) return wire;
    box = *answer;
    person_.Beep();
    person_.Message("Der Text enthält Zeichen, die das Terminal nicht darstellen kann.",
                    Icon::Exclamation);
  }
}

}  // namespace kelvo

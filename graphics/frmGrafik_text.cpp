#include <utility>

#include "graphics/frmGrafik.h"
#include "graphics/pixel_image.h"

namespace kelvo {

// The selected text in an input box, or a new one.
void frmGrafik::mnuGrafikText_Click() {
  const Drawing before = document_.Current();
  Drawing drawing = before;
  auto index = OnlySelected(drawing);
  if (!index || drawing[*index].kind != Kind::Text) {
    Paste(drawing, {MakeText(VisibleMiddle(), style_->Style().text, {}, fonts_)}, 0, 0);
    index = drawing.size() - 1;
  }
  const auto withText = [&](const std::string& text) {
    SetText(drawing[*index], text, fonts_);
    return drawing;
  };
  const auto text = AskText(drawing[*index].text,
                            [&](const std::string& typed) { document_.Show(withText(typed)); });
  document_.GiveUp();
  // The drawing may have become another one while the operator was asked.
  if (text && !text->empty() && document_.Current() == before) document_.Commit(withText(*text));
}

// Asks again, with what was typed, until the Terminal can show it.
std::optional<std::string> frmGrafik::AskText(
    const std::string& proposed, const std::function<void(const std::string&)>& typed) {
  std::string box = QString::fromLatin1(proposed).toStdString();
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

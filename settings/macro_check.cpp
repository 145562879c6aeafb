#include "settings/macro_check.h"

#include <algorithm>
#include <set>

#include "base/wire_text.h"
#include "link/control_characters.h"
#include "settings/macro_text.h"
#include "settings/macros.h"
#include "settings/parameter_check.h"

namespace kelvo {
namespace {

using enum Severity;
using Close = PlacedCommand::Close;

std::string Letters(const PlacedCommand& command) {
  return "„" + std::string(command.row->letters) + "“";
}

std::string CharacterName(unsigned char character) {
  return "„" + ReadableText(std::string(1, static_cast<char>(character))) + "“ (Code " +
         std::to_string(character) + ")";
}

// The macros that a text runs, by their numbers.
std::vector<int> Calls(std::string_view text) {
  std::vector<int> calls;
  for (const PlacedCommand& command : PlacedCommands(text)) {
    if (command.row == nullptr || command.row->name != CommandName::RunMakro) continue;
    if (const auto number = DecimalNumber(command.Parameters(text))) calls.push_back(*number);
  }
  return calls;
}

// Looks for a way from a macro back to one that is already on the way to it.
class RingSearch {
 public:
  explicit RingSearch(const MacroContext& context) : context_(context) {}

  /// "3 → 5 → 3", or nothing when everything that macro `number` runs comes to an end. `way` holds
  /// the numbers that led there.
  std::string From(int number, std::vector<int> way) {
    const auto met = std::find(way.begin(), way.end(), number);
    if (met != way.end()) return Words({met, way.end()}) + " → " + std::to_string(number);
    way.push_back(number);
    if (!seen_.insert(number).second) return {};
    const std::optional<std::string> text = context_.macroText(number);
    if (!text) return {};
    for (const int next : Calls(*text)) {
      if (std::string found = From(next, way); !found.empty()) return found;
    }
    return {};
  }

 private:
  static std::string Words(const std::vector<int>& way) {
    std::string words;
    for (const int number : way) words += (words.empty() ? "" : " → ") + std::to_string(number);
    return words;
  }

  const MacroContext& context_;
  std::set<int> seen_;
};

class MacroCheck {
 public:
  MacroCheck(std::string_view text, const MacroContext& context) : text_(text), context_(context) {}

  std::vector<Remark> Run() {
    std::size_t at = 0;
    for (const PlacedCommand& command : PlacedCommands(text_)) {
      CheckText(at, command.begin);
      CheckCommand(command);
      at = command.next;
    }
    CheckText(at, text_.size());
    if (context_.isMacro) CheckWhole();
    std::stable_sort(remarks_.begin(), remarks_.end(),
                     [](const Remark& a, const Remark& b) { return a.position < b.position; });
    return std::move(remarks_);
  }

 private:
  void Add(Severity severity, std::size_t position, std::size_t length, std::string sentence) {
    remarks_.push_back({severity, position, length, std::move(sentence)});
  }
  void Add(Severity severity, const PlacedCommand& command, std::string sentence) {
    Add(severity, command.begin, command.parameters - command.begin, std::move(sentence));
  }

  void CheckWhole() {
    if (text_.size() > kLongestMakro) {
      Add(Error, kLongestMakro, text_.size() - kLongestMakro,
          "Ein Makro hat höchstens " + std::to_string(kLongestMakro) + " Zeichen.");
    }
    if (const std::size_t etx = EtxPosition(text_); etx > 0) {
      Add(Error, etx - 1, 1, "♥ (Code 3) beendet das Makro und kann nicht darin stehen.");
    }
  }

  void CheckCommand(const PlacedCommand& command) {
    if (command.row == nullptr) return CheckUnknown(command);
    CheckClose(command);
    lastAtOnce_ = command.row->ending == Ending::AtOnce ? command.row : nullptr;
    if (command.row->ending == Ending::Eot) {
      CheckGlyphs(command.parameters, command.end, graphicFont_, false);
    } else if (command.row->ending != Ending::Etx && command.close == Close::Closed) {
      CheckParameters(remarks_, text_, command, context_.display);
    }
    NoteFont(command);
    if (context_.isMacro) CheckEffect(command);
  }

  void CheckUnknown(const PlacedCommand& command) {
    lastAtOnce_ = nullptr;
    const bool begun =
        command.end == text_.size() && !CompletionAt(text_, text_.size()).rows.empty();
    Add(Hint, command,
        begun ? "Der Befehl ist noch nicht vollständig."
              : "Dieser Befehl ist hier nicht bekannt; das Terminal übergeht ihn, wenn es ihn auch "
                "nicht kennt.");
  }

  // A graphic text may also end where the next command begins.
  void CheckClose(const PlacedCommand& command) {
    const Ending ending = command.row->ending;
    if (command.close == Close::Closed) return;
    if (ending == Ending::Eot) {
      if (command.close == Close::ByEsc) return;
      return Add(Warning, command,
                 "Dem Grafiktext fehlt das Textende ♦ (Code 4); was nach dem Makro kommt, "
                 "schreibt das Terminal noch dazu.");
    }
    if (ending == Ending::Etx) return;  // that it stands here at all is said elsewhere
    Add(Error, command.begin, command.end - command.begin,
        "Nach " + Letters(command) + " fehlt „;“; " +
            (command.close == Close::ByEsc
                 ? "das Terminal übergeht den Befehl."
                 : "was nach dem Makro kommt, hält das Terminal für Parameter."));
  }

  void CheckEffect(const PlacedCommand& command) {
    const CommandRow& row = *command.row;
    if (row.ending == Ending::Etx) {
      return Add(Error, command,
                 Letters(command) +
                     " kann nicht in einem Makro stehen: sein Ende ♥ (Code 3) würde das Makro "
                     "selbst beenden.");
    }
    if (row.answer == Answer::Acknowledge || row.answer == Answer::CountDown) {
      Add(Warning, command,
          Letters(command) +
              " ändert das EEPROM bei jedem Ausführen; das nutzt es ab, und die Bestätigung kommt "
              "ungefragt.");
    } else if (row.answer != Answer::None) {
      Add(Hint, command,
          Letters(command) + " antwortet bei jedem Ausführen, auch wenn niemand zuhört.");
    }
    if (row.name == CommandName::Restart) CheckRestart(command);
    if (row.name == CommandName::RunMakro) CheckRun(command);
  }

  void CheckRestart(const PlacedCommand& command) {
    if (context_.number == 0) {
      return Add(Error, command,
                 "Das Autostart-Makro startet das Terminal neu, und beim Start läuft es wieder.");
    }
    Add(Warning, command,
        "Das Terminal startet neu; was im Makro danach steht, führt es nicht mehr aus.");
  }

  void CheckRun(const PlacedCommand& command) {
    const std::optional<int> number = DecimalNumber(command.Parameters(text_));
    if (!number || *number < 0 || *number > 255 || !context_.macroText) return;
    const std::size_t length = command.next - command.begin;
    const std::string name = "Makro " + std::to_string(*number);
    if (number != context_.number && !context_.macroText(*number)) {
      return Add(Hint, command.begin, length,
                 "Zu " + name + " ist hier kein Satz gespeichert; was es tut, ist nicht bekannt.");
    }
    std::vector<int> way;
    if (context_.number) way.push_back(*context_.number);
    const std::string ring = RingSearch(context_).From(*number, way);
    if (!ring.empty())
      Add(Error, command.begin, length, "Es kommt nie zum Ende: Makro " + ring + ".");
  }

  void NoteFont(const PlacedCommand& command) {
    const CommandName name = command.row->name;
    if (name != CommandName::SetTextFont && name != CommandName::SetGraphicFont) return;
    const int font = DecimalNumber(command.Parameters(text_)).value_or(0);
    (name == CommandName::SetTextFont ? textFont_ : graphicFont_) = font;
  }

  void CheckText(std::size_t begin, std::size_t end) {
    if (begin < end && text_[begin] == ';' && lastAtOnce_ != nullptr) {
      Add(Warning, begin, 1,
          "„" + std::string(lastAtOnce_->letters) +
              "“ braucht kein „;“; hier erscheint es als Text auf dem Display.");
    }
    CheckGlyphs(begin, end, textFont_, true);
  }

  // The first of a kind is enough: a text in a font of digits would have a remark at each letter.
  void CheckGlyphs(std::size_t begin, std::size_t end, int font, bool layer) {
    bool missing = false;
    bool control = false;
    for (std::size_t at = begin; at < end; ++at) {
      const auto character = static_cast<unsigned char>(text_[at]);
      if (character == static_cast<unsigned char>(kEot)) {
        Add(Warning, at, 1, "♦ (Code 4) steht außerhalb eines Grafiktexts und bewirkt nichts.");
      } else if (IsControl(character)) {
        if (!control && !(layer && MovesCursor(character))) AddControl(at, character);
        control = true;
      } else if (!missing && context_.hasGlyph && !context_.hasGlyph(font, character)) {
        missing = true;
        Add(Hint, at, 1,
            CharacterName(character) + " hat in Schrift " + std::to_string(font) +
                " kein Zeichenbild.");
      }
    }
  }

  static bool IsControl(unsigned char character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
  }
  // Of the text layer: CR, LF and backspace.
  static bool MovesCursor(unsigned char character) {
    return character == '\r' || character == '\n' || character == '\b';
  }
  void AddControl(std::size_t at, unsigned char character) {
    if (character == static_cast<unsigned char>(kEtx)) return;  // is said of the whole
    Add(Hint, at, 1, CharacterName(character) + " ist kein gewöhnliches Zeichen eines Textes.");
  }

  const std::string_view text_;
  const MacroContext& context_;
  std::vector<Remark> remarks_;
  const CommandRow* lastAtOnce_ = nullptr;
  int textFont_ = 0;
  int graphicFont_ = 0;
};

}  // namespace

std::vector<Remark> CheckMacro(std::string_view text, const MacroContext& context) {
  return MacroCheck(text, context).Run();
}

}  // namespace kelvo

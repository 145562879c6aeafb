#include "sheet/macro_chapters.h"

#include <algorithm>
#include <limits>

#include "inventory/line_text.h"
#include "link/command_table.h"
#include "link/command_words.h"
#include "link/control_characters.h"
#include "sheet/characters.h"
#include "twin/preview.h"
#include "twin/preview_words.h"

namespace kelvo {
namespace {

// What the Terminal's display has at most.
constexpr int kWidest = 640;
constexpr int kHighest = 480;
constexpr int kBitsOfByte = 8;

std::string Size(int width, int height) {
  return std::to_string(width) + " x " + std::to_string(height) + " Punkte";
}

// Where a command begins in the text that it is part of.
std::size_t BeginOf(std::string_view wire, const SentCommand& command) {
  const auto at = static_cast<std::size_t>(command.parameters.data() - wire.data());
  const std::size_t letters = command.row == nullptr ? 0 : command.row->letters.size();
  return at - letters - 1;
}

SheetTable CommandTableOf(std::string_view wire) {
  SheetTable table{{{"", 2}, {"Zeichen", 14, true}, {"Bedeutung", 22}}, {}};
  for (const std::string_view command : CommandsOf(wire)) {
    const std::string words = CommandWords(command, std::numeric_limits<int>::max());
    table.rows.push_back(
        {std::to_string(table.rows.size() + 1), PrintedText(command), PrintedWords(words)});
  }
  return table;
}

struct BitmapSize {
  int width = 0;  // pixels
  int height = 0;
};

// The width counts bytes, or pixels where it is negative.
std::optional<BitmapSize> SizeOf(std::string_view text) {
  const std::size_t first = text.find(',');
  const std::size_t second = first == std::string_view::npos ? first : text.find(',', first + 1);
  const auto width = NumberIn<int>(text.substr(0, first));
  if (second == std::string_view::npos || !width) return std::nullopt;
  const auto height = NumberIn<int>(text.substr(first + 1, second - first - 1));
  if (!height || *width < -kWidest || *width > kWidest / kBitsOfByte) return std::nullopt;
  const int pixels = *width < 0 ? -*width : *width * kBitsOfByte;
  if (pixels < 1 || *height < 1 || *height > kHighest) return std::nullopt;
  return BitmapSize{pixels, *height};
}

}  // namespace

std::vector<std::string_view> CommandsOf(std::string_view wire) {
  std::vector<std::size_t> begins;
  if (!wire.empty() && wire.front() != kEsc) begins.push_back(0);
  WalkCommands(wire, [&](const SentCommand& command) {
    begins.push_back(BeginOf(wire, command));
    return true;
  });
  begins.push_back(wire.size());
  std::vector<std::string_view> commands;
  for (std::size_t i = 0; i + 1 < begins.size(); ++i) {
    commands.push_back(wire.substr(begins[i], begins[i + 1] - begins[i]));
  }
  return commands;
}

MacroTexts TextsIn(const Inventory& inventory) {
  return [&inventory](int number) -> std::optional<std::string> {
    const Held* const held = inventory.At({ItemKind::Macro, number});
    if (held == nullptr || !inventory.Trusts(*held)) return std::nullopt;
    return std::string(ItemContent(held->item));
  };
}

SheetPicture TextPrinter::Picture(const std::string& text, const MacroTexts& macros) const {
  const PreviewStart start{.width = sources_.width, .height = sources_.height, .makro = macros};
  const PreviewResult result = Preview(fonts_).Run(text, start);
  std::string caption =
      "Auf leerem Display mit " + Size(sources_.width, sources_.height) + " (errechnet).";
  for (const std::string& remark : PreviewRemarks(result)) caption += " " + remark;
  return {result.picture, std::move(caption)};
}

std::vector<SheetBlock> TextPrinter::Macro(const std::string& text,
                                           const MacroTexts& macros) const {
  if (text.empty()) return {SheetText{"Der Text ist leer."}};
  return {Picture(text, macros), CommandTableOf(text)};
}

std::vector<SheetBlock> TextPrinter::Drawing(const std::string& text,
                                             const MacroTexts& macros) const {
  if (text.empty()) return {SheetText{"Der Text ist leer."}};
  const std::size_t commands = CommandsOf(text).size();
  return {SheetText{std::to_string(commands) + (commands == 1 ? " Befehl, " : " Befehle, ") +
                        std::to_string(text.size()) + " Zeichen.",
                    true},
          Picture(text, macros)};
}

std::vector<SheetBlock> TextPrinter::Bitmap(std::string_view text) const {
  const std::optional<BitmapSize> size = SizeOf(text);
  if (!size) {
    return {SheetText{"Es lässt sich nicht zeichnen; der Text ist „" + PrintedText(text) + "“."}};
  }
  // The Terminal's own way of drawing it, on a display that it just fills.
  const std::string wire = "\x1BGB0,0," + std::string(text) + ";";
  const PreviewStart start{.width = std::max(size->width, 20),
                           .height = std::max(size->height, 20)};
  const PixelMap drawn = Preview(fonts_).Run(wire, start).picture;
  PixelMap pixels(size->width, size->height);
  for (int y = 0; y < size->height; ++y) {
    for (int x = 0; x < size->width; ++x) {
      if (drawn.At(x, y)) pixels.Put(x, y, Ink::Set);
    }
  }
  return {SheetPicture{std::move(pixels), Size(size->width, size->height) + "."}};
}

}  // namespace kelvo

#include "inventory/setting_check.h"

#include <algorithm>

#include "base/val.h"
#include "base/whole_val.h"
#include "settings/text_mode.h"

namespace kelvo {
namespace {

using enum CommandName;

std::optional<CommandName> SetBy(CommandName query) {
  switch (query) {
    case AskCursor:
      return SwitchCursor;
    case AskCursorShape:
      return DefineCursor;
    case AskTextFont:
      return SetTextFont;
    case AskTextAttribute:
      return SetTextAttribute;
    case AskTextMode:
      return SetTextMode;
    case AskTextZoom:
      return SetTextZoom;
    default:
      return std::nullopt;
  }
}

// "1,2", without blanks and what closes the command.
std::string ValueOf(const std::string& command, CommandName name) {
  std::string value = command.substr(1 + RowOf(name).letters.size());
  std::erase_if(value, [](char c) { return c == ' ' || c == ';'; });
  return value;
}

std::string_view Second(std::string_view value) {
  const std::size_t comma = value.find(',');
  return comma == std::string_view::npos ? std::string_view() : value.substr(comma + 1);
}

bool Agrees(CommandName query, std::string_view value, std::string_view reply, int cursorKind) {
  if (query == AskTextZoom) {
    const Zoom zoom = ReadZoom(reply);
    return zoom.x == Val(value) && zoom.y == Val(Second(value));
  }
  if (query != AskCursorShape) return ReadDigit(reply) == Val(value);
  if (IsCross(cursorKind)) return ReadCursorSize(reply) == Val(Second(value));
  return ReadCursorShape(cursorKind, reply) == WholeVal(Second(value));
}

}  // namespace

std::optional<SettingSent> LastSet(const Settings& settings, CommandName query,
                                   std::string_view reply, int cursorKind) {
  const std::optional<CommandName> name = SetBy(query);
  if (!name || (query == AskCursorShape && !HasShape(cursorKind) && !IsCross(cursorKind))) {
    return std::nullopt;
  }
  std::string letters(RowOf(*name).letters);
  if (query == AskCursorShape) letters += std::to_string(cursorKind);
  const Settings::Setting* const set = settings.Find(letters);
  if (set == nullptr) return std::nullopt;
  const std::string value = ValueOf(set->command, *name);
  return SettingSent{value, set->time, Agrees(query, value, reply, cursorKind)};
}

}  // namespace kelvo

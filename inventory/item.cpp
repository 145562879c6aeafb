#include "inventory/item.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace kelvo {
namespace {

using enum CommandName;

constexpr int kHighestNumber = 255;
// A matrix table begins with a row of the keypad and holds whole rows of eight keys.
constexpr int kStartOfMatrix = 0x80;
constexpr int kMatrixLine = 8;
constexpr int kMatrixLines = 8;

std::optional<SentCommand> FirstCommand(std::string_view wire) {
  std::optional<SentCommand> first;
  WalkCommands(wire, [&first](const SentCommand& command) {
    first = command;
    return false;
  });
  if (first && first->row == nullptr) first.reset();
  return first;
}

std::optional<int> NumberOf(std::string_view parameters) {
  int number = -1;
  const char* const end = parameters.data() + parameters.size();
  const auto read = std::from_chars(parameters.data(), end, number);
  const bool whole = read.ec == std::errc() && (read.ptr == end || *read.ptr == ',');
  if (!whole || number < 0 || number > kHighestNumber) return std::nullopt;
  return number;
}

std::string_view BehindComma(std::string_view text) {
  const std::size_t comma = text.find(',');
  return comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
}

ItemKind KeyboardOf(std::string_view parameters) {
  const std::string_view table = BehindComma(parameters);
  int start = 0;
  std::from_chars(table.data(), table.data() + table.size(), start, 16);
  const int line = (start - kStartOfMatrix) / kMatrixLine;
  const auto codes = static_cast<int>(std::count(table.begin(), table.end(), ','));
  const bool isMatrix = start >= kStartOfMatrix && start % kMatrixLine == 0 &&
                        codes % kMatrixLine == 0 && line + codes / kMatrixLine <= kMatrixLines &&
                        line < kMatrixLines;
  return isMatrix ? ItemKind::MatrixTable : ItemKind::AtTable;
}

std::optional<ItemChange> Numbered(ItemChange::Kind kind, ItemKind item,
                                   std::string_view parameters) {
  const auto number = NumberOf(parameters);
  if (!number) return std::nullopt;
  return ItemChange{kind, {item, *number}};
}

}  // namespace

std::string ItemKindText(ItemKind kind) {
  switch (kind) {
    case ItemKind::Config:
      return "Konfiguration";
    case ItemKind::Macro:
      return "Makro";
    case ItemKind::MatrixTable:
      return "Matrix-Tabelle";
    case ItemKind::AtTable:
      return "AT-Tabelle";
    case ItemKind::Bitmap:
      break;
  }
  return "Bitmap";
}

std::string ItemText(const ItemKey& key) {
  const std::string kind = ItemKindText(key.kind);
  return key.kind == ItemKind::Config ? kind : kind + " " + std::to_string(key.number);
}

std::string_view ItemContent(const Item& item) {
  if (item.key.kind == ItemKind::Config) return {};
  const auto command = FirstCommand(item.command);
  return command ? BehindComma(command->parameters) : std::string_view();
}

std::size_t ItemBytes(const Item& item) { return ItemContent(item).size(); }

bool SamePlace(const ItemKey& one, const ItemKey& other) {
  return one.number == other.number &&
         (one.kind == other.kind || (IsTable(one.kind) && IsTable(other.kind)));
}

std::string RecordTyp(ItemKind kind) {
  switch (kind) {
    case ItemKind::Macro:
      return "Makro";
    case ItemKind::MatrixTable:
      return "MatrixTab";
    case ItemKind::AtTable:
      return "ATTab";
    default:
      return {};
  }
}

std::optional<ItemKind> KindOfRecord(std::string_view typ) {
  for (const ItemKind kind : {ItemKind::Macro, ItemKind::MatrixTable, ItemKind::AtTable}) {
    if (typ == RecordTyp(kind)) return kind;
  }
  return std::nullopt;
}

std::optional<ItemChange> ChangeOf(std::string_view command) {
  const auto sent = FirstCommand(command);
  return sent ? ChangeOf(*sent) : std::nullopt;
}

std::optional<ItemChange> ChangeOf(const SentCommand& command) {
  using enum ItemChange::Kind;
  if (command.row == nullptr) return std::nullopt;
  const std::string_view parameters = command.parameters;
  switch (command.row->name) {
    case WriteConfig:
      return ItemChange{Written, {ItemKind::Config, 0}};
    case DeleteConfig:
      return ItemChange{Deleted, {ItemKind::Config, 0}};
    case EraseEEprom:
    case EraseEEpromCounting:
      return ItemChange{Erased, {}};
    case WriteMakro:
      return Numbered(Written, ItemKind::Macro, parameters);
    case DeleteMakro:
      return Numbered(Deleted, ItemKind::Macro, parameters);
    case WriteKeyTable:
      return Numbered(Written, KeyboardOf(parameters), parameters);
    case DeleteKeyTable:
      return Numbered(Deleted, ItemKind::MatrixTable, parameters);
    case WriteBitmap:
      return Numbered(Written, ItemKind::Bitmap, parameters);
    default:
      return std::nullopt;
  }
}

std::optional<Item> ItemOf(std::string_view command, std::string name,
                           std::optional<ItemKind> kind) {
  const auto change = ChangeOf(command);
  if (!change || change->kind != ItemChange::Kind::Written) return std::nullopt;
  Item item{change->key, std::string(command), std::move(name)};
  if (kind && IsTable(*kind) && IsTable(item.key.kind)) item.key.kind = *kind;
  return item;
}

}  // namespace kelvo

#include "keyboards/table_order.h"

namespace kelvo {

std::optional<WriteOrder> TableOrder(ItemKind kind, const Command& table, std::string name,
                                     Operator& person, WriteFrame frame) {
  std::optional<Item> item = ItemOf(table.Text(), std::move(name), kind);
  if (item) return WriteOrder{*std::move(item), std::move(frame)};
  person.Message("Keine gültige Tabellen-Nummer (0 bis 255); es wurde nichts gesendet.",
                 Icon::Exclamation);
  return std::nullopt;
}

}  // namespace kelvo

#include "inventory/macro_effects.h"

#include "inventory/item.h"

namespace kelvo {

bool ChangesWhenRun(std::string_view command) {
  const auto item = ItemOf(command);
  if (!item || item->key.kind != ItemKind::Macro) return false;
  bool changes = false;
  WalkCommands(ItemContent(*item), [&changes](const SentCommand& sent) {
    changes = sent.row != nullptr &&
              (sent.row->name == CommandName::RunMakro || ChangeOf(sent).has_value());
    return !changes;
  });
  return changes;
}

}  // namespace kelvo

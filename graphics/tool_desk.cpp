#include "graphics/tool_desk.h"

#include <QScopedValueRollback>

namespace kelvo {

void ToolDesk::Commit(Drawing drawing) {
  const QScopedValueRollback<bool> commits(commits_, true);
  document_.Commit(std::move(drawing));
}

void ToolDesk::EnterGroup(std::size_t index) {
  const QScopedValueRollback<bool> commits(commits_, true);
  document_.Enter(index);
}

bool ToolDesk::LeaveGroup() {
  const QScopedValueRollback<bool> commits(commits_, true);
  return document_.Leave();
}

}  // namespace kelvo

#include "graphics/tool_desk.h"

#include <QScopedValueRollback>

#include "graphics/painter.h"

namespace kelvo {

PixelMap ToolDesk::Pixels() const {
  PixelMap pixels(canvas_.DisplayWidth(), canvas_.DisplayHeight());
  PaintDrawing(pixels, document_.Whole(), fonts_, canvas_.BlackThreshold());
  return pixels;
}

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

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

ObjectStyle ToolDesk::Style() const {
  ObjectStyle style = style_.Style();
  style.curve = curve_.Style();
  return style;
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

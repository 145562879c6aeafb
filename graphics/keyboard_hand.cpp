#include "graphics/keyboard_hand.h"

#include <utility>

namespace kelvo {

void KeyboardHand::Take(Tool* tool) {
  tool_ = tool;
  held_ = false;
}

void KeyboardHand::MoveTo(Point at) {
  at_ = at;
  shown_ = true;
  if (tool_ == nullptr) return;
  Holding() ? tool_->Drag({at}) : tool_->Hover({at});
}

void KeyboardHand::Enter(bool shift, bool control) {
  if (tool_ == nullptr || !at_) return;
  shown_ = true;
  const ToolEvent event{*at_, shift, control};
  if (Holding()) {
    held_ = false;
    return tool_->Release(event);
  }
  const ToolUse use = tool_->Use();
  if (tool_->Begun() && use != ToolUse::Clicks) return;  // the mouse is at it
  if (tool_->EndsAt(event)) return tool_->Finish();
  tool_->Press(event);
  held_ = use == ToolUse::Stroke;
  if (!held_) tool_->Release(event);
}

void KeyboardHand::MouseMoved(Point at) {
  if (Draws()) return;
  at_ = at;
  shown_ = false;
}

void KeyboardHand::MousePressed(Point at) {
  if (tool_ != nullptr && Holding()) tool_->Release({*at_});
  held_ = false;
  at_ = at;
  shown_ = false;
}

}  // namespace kelvo

#pragma once

#include <optional>

#include "graphics/tool.h"

namespace kelvo {

/// The hand of an operator without a mouse: a cross on the drawing that keys move, and a key that
/// is its button. What it does reaches the tool through the same calls as the mouse.
class KeyboardHand {
 public:
  /// Another tool is in hand, or none; nothing is held.
  void Take(Tool* tool);
  /// The cross is shown from its first use until the mouse is used.
  bool Shown() const { return shown_; }
  void Hide() { shown_ = false; }
  /// Nothing where neither hand nor mouse has been on the drawing.
  std::optional<Point> At() const { return at_; }
  /// Something is being drawn, which a push at the mouse must not disturb.
  bool Draws() const { return shown_ && tool_ != nullptr && tool_->Begun(); }

  void MoveTo(Point at);
  /// The button at the cross: a click or, for tools that draw while it is down, down and up in
  /// turn. A line that grows ends where its last point is put a second time.
  void Enter(bool shift, bool control);
  /// The mouse is moved.
  void MouseMoved(Point at);
  /// The mouse is pressed: what is being drawn is complete.
  void MousePressed(Point at);

 private:
  /// The button is down.
  bool Holding() const { return held_ && tool_->Begun(); }

  Tool* tool_ = nullptr;
  std::optional<Point> at_;
  bool shown_ = false;
  bool held_ = false;
};

}  // namespace kelvo

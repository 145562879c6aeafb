#pragma once

#include "graphics/grips.h"
#include "graphics/tool.h"

namespace kelvo {

/// Selects, moves and resizes.
class SelectTool : public Tool {
 public:
  using Tool::Tool;
  void Press(const ToolEvent& event) override;
  void Drag(const ToolEvent& event) override;
  void Release(const ToolEvent& event) override;
  void DoubleClick(const ToolEvent& event) override;
  void Cancel() override;
  void Escape() override;  ///< with nothing begun: selects nothing any more

 private:
  enum class State { Idle, Pressed, Moving, Resizing, RubberBand };

  void PressOnObject(std::size_t index, bool add);
  Drawing Moved(const ToolEvent& event) const;
  Box Band(Point to) const;

  State state_ = State::Idle;
  std::optional<std::size_t> unselectOnRelease_;  // a drag of the selection may begin here as well
  Point start_;
  Grip grip_;
};

}  // namespace kelvo

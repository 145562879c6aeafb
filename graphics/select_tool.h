#pragma once

#include "graphics/grips.h"
#include "graphics/tool.h"

namespace kelvo {

/// Selects, moves and resizes; a double click opens a text or a group, or puts a point into a line.
class SelectTool : public Tool {
 public:
  using Tool::Tool;
  ToolUse Use() const override { return ToolUse::Choose; }
  HoldKind HoldAt(Point p) const override;
  void Press(const ToolEvent& event) override;
  void Drag(const ToolEvent& event) override;
  void Release(const ToolEvent& event) override;
  void DoubleClick(const ToolEvent& event) override;
  /// A text: it is typed on, behind its last letter; a group: its members; a line: its first point
  /// is picked; a picture: its preparation.
  bool Open() override;
  void Cancel() override;
  bool Begun() const override { return state_ != State::Idle; }
  /// With nothing begun: lets go of a point, leaves the open group, then selects nothing any more.
  bool Escape() override;

 private:
  enum class State { Idle, Pressed, Moving, Resizing, RubberBand };

  Drawing Resized(const ToolEvent& event) const;
  bool IsBeside(Point p) const;
  bool OpenObject(std::size_t index, Point at);
  void InsertPointAt(std::size_t index, Point at);
  void PressOnObject(std::size_t index, bool add);
  bool PressBelow(Point at);
  void SelectOnly(std::size_t index);
  Drawing Moved(const ToolEvent& event) const;
  Box Band(Point to) const;

  State state_ = State::Idle;
  // A click may unselect one object, or all, but a drag of the selection may begin here as well.
  std::optional<std::size_t> unselectOnRelease_;
  bool unselectAllOnRelease_ = false;
  std::optional<std::size_t> selectOnRelease_;  // the one below
  Point start_;
  Grip grip_;
};

}  // namespace kelvo

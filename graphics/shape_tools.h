#pragma once

#include "graphics/tool.h"

namespace kelvo {

/// Lines, rectangles and ellipses: pressed at one end, released at the other.
class DragTool : public Tool {
 public:
  DragTool(ToolSurface& surface, Kind kind) : Tool(surface), kind_(kind) {}
  ToolUse Use() const override { return ToolUse::Stroke; }
  void Press(const ToolEvent& event) override;
  void Drag(const ToolEvent& event) override;
  void Release(const ToolEvent& event) override;
  void Cancel() override;
  bool Begun() const override { return state_ != State::Idle; }

 private:
  enum class State { Idle, Dragging };
  DrawingObject ObjectTo(const ToolEvent& event) const;
  virtual DrawingObject ObjectIn(const Box& box) const;

  State state_ = State::Idle;
  Kind kind_;
  Point start_;
};

/// Rounded rectangles and arcs: polylines, made anew in each box that they are dragged to.
class CurveTool : public DragTool {
 public:
  CurveTool(ToolSurface& surface, bool arc) : DragTool(surface, Kind::Polyline), arc_(arc) {}

 private:
  DrawingObject ObjectIn(const Box& box) const override;

  bool arc_;
};

/// A point for each click, until Finish.
class PolylineTool : public Tool {
 public:
  using Tool::Tool;
  ToolUse Use() const override { return ToolUse::Clicks; }
  void Press(const ToolEvent& event) override;
  void Hover(const ToolEvent& event) override;
  void Drag(const ToolEvent& event) override { Hover(event); }
  void DoubleClick(const ToolEvent& event) override;
  bool EndsAt(const ToolEvent& event) const override;
  void Finish() override;
  void Cancel() override;
  bool Begun() const override { return !points_.empty(); }
  void Leave() override { Finish(); }  ///< what was drawn stays
  bool StepBack() override;            ///< the last point
  bool Escape() override;              ///< as Leave

 private:
  Point Next(const ToolEvent& event) const;
  DrawingObject ObjectOf(std::vector<Point> points) const;

  std::vector<Point> points_;  // empty: nothing begun
};

/// Draws or erases the pixels that the pointer goes over, as one object; a click is one pixel.
class FreehandTool : public Tool {
 public:
  FreehandTool(ToolSurface& surface, PenMode penMode) : Tool(surface), penMode_(penMode) {}
  ToolUse Use() const override { return ToolUse::Stroke; }
  void Press(const ToolEvent& event) override;
  void Drag(const ToolEvent& event) override;
  void Release(const ToolEvent& event) override;
  void Cancel() override;
  bool Begun() const override { return !points_.empty(); }

 private:
  DrawingObject Object() const;

  PenMode penMode_;
  std::vector<Point> points_;  // empty: nothing begun
};

/// Fills the area that is clicked, in the colour that is drawn with.
class FillTool : public Tool {
 public:
  using Tool::Tool;
  ToolUse Use() const override { return ToolUse::Clicks; }
  void Press(const ToolEvent& event) override;
  void Cancel() override {}
};

/// A text begins where it is clicked; a click on a text changes that one.
class TextTool : public Tool {
 public:
  using Tool::Tool;
  ToolUse Use() const override { return ToolUse::Clicks; }
  void Press(const ToolEvent&) override {}
  void Release(const ToolEvent& event) override;
  void Cancel() override {}
};

}  // namespace kelvo

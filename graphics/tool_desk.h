#pragma once

#include "base/operator.h"
#include "graphics/drawing_canvas.h"
#include "graphics/drawing_document.h"
#include "graphics/style_panel.h"
#include "graphics/tool.h"

namespace kelvo {

/// The window's side of the tools.
class ToolDesk : public ToolSurface {
 public:
  ToolDesk(DrawingDocument& document, DrawingCanvas& canvas, StylePanel& style,
           const DeviceFonts& fonts, Operator& person)
      : document_(document), canvas_(canvas), style_(style), fonts_(fonts), person_(person) {}

  const Drawing& Current() const override { return document_.Current(); }
  void Show(Drawing preview) override { document_.Show(std::move(preview)); }
  void GiveUp() override { document_.GiveUp(); }
  void Commit(Drawing drawing) override { document_.Commit(std::move(drawing)); }
  void Select(Drawing drawing) override { document_.Commit(std::move(drawing)); }
  void ShowRubberBand(std::optional<Box> box) override { canvas_.SetRubberBand(box); }
  ObjectStyle Style() const override { return style_.Style(); }
  int GridStep() const override { return gridStep_; }
  int Tolerance() const override { return canvas_.Tolerance(); }
  const DeviceFonts& Fonts() const override { return fonts_; }
  std::optional<std::string> AskText(const std::string& proposed,
                                     const std::function<void(const std::string&)>& typed) override;

  /// 1: no grid.
  void SetGridStep(int step) { gridStep_ = step; }

 private:
  DrawingDocument& document_;
  DrawingCanvas& canvas_;
  StylePanel& style_;
  const DeviceFonts& fonts_;
  Operator& person_;
  int gridStep_ = 1;
};

}  // namespace kelvo

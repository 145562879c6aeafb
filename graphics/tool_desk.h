#pragma once

#include <functional>
#include <utility>

#include "graphics/curve_panel.h"
#include "graphics/drawing_canvas.h"
#include "graphics/drawing_document.h"
#include "graphics/style_panel.h"
#include "graphics/text_typing.h"
#include "graphics/tool.h"

namespace kelvo {

/// The window's side of the tools.
class ToolDesk : public ToolSurface {
 public:
  ToolDesk(DrawingDocument& document, DrawingCanvas& canvas, StylePanel& style, CurvePanel& curve,
           const DeviceFonts& fonts, TextTyping& typing, std::function<void()> changePicture)
      : document_(document),
        canvas_(canvas),
        style_(style),
        curve_(curve),
        fonts_(fonts),
        typing_(typing),
        changePicture_(std::move(changePicture)) {}

  const Drawing& Current() const override { return document_.Current(); }
  void Show(Drawing preview) override { document_.Show(std::move(preview)); }
  void GiveUp() override { document_.GiveUp(); }
  void Commit(Drawing drawing) override;
  void Select(Drawing drawing) override { Commit(std::move(drawing)); }
  void EnterGroup(std::size_t index) override;
  bool LeaveGroup() override;
  bool InGroup() const override { return document_.InGroup(); }
  void PickPoint(std::optional<std::size_t> point) override { document_.Pick(point); }
  std::optional<std::size_t> PickedPoint() const override { return document_.Picked(); }
  void ShowRubberBand(std::optional<Box> box) override { canvas_.SetRubberBand(box); }
  ObjectStyle Style() const override;
  int GridStep() const override { return gridStep_; }
  std::optional<double> SnapReach() const override {
    return snaps_ ? std::optional(canvas_.SnapReach()) : std::nullopt;
  }
  Box Display() const override {
    return {0, 0, canvas_.DisplayWidth() - 1, canvas_.DisplayHeight() - 1};
  }
  void ShowSnapPlaces(const SnapPlaces& places) override { canvas_.SetSnapPlaces(places); }
  double Tolerance() const override { return canvas_.Tolerance(); }
  const DeviceFonts& Fonts() const override { return fonts_; }
  PixelMap Pixels() const override;
  void TypeText(Drawing drawing, std::size_t index, Point at) override {
    typing_.Begin(std::move(drawing), index, at);
  }

  void ChangePicture() override { changePicture_(); }

  /// A change of the drawing is the tool's own.
  bool Commits() const { return commits_; }
  /// 1: no grid.
  void SetGridStep(int step) { gridStep_ = step; }
  /// Whether what is dragged snaps to other objects.
  void SetSnaps(bool on) { snaps_ = on; }

 private:
  DrawingDocument& document_;
  DrawingCanvas& canvas_;
  StylePanel& style_;
  CurvePanel& curve_;
  const DeviceFonts& fonts_;
  TextTyping& typing_;
  std::function<void()> changePicture_;
  int gridStep_ = 1;
  bool snaps_ = false;
  bool commits_ = false;
};

}  // namespace kelvo

#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "graphics/wmf.h"
#include "graphics/wmf_context.h"

namespace kelvo::wmf {

/// Collects the objects of a metafile, group by group, and keeps the limits.
class Builder {
 public:
  explicit Builder(const WmfLimits& limits) : limits_(limits), levels_(1) {}

  void Add(DrawingObject object);
  /// Called before vertices and pixels are made, so that nothing large is ever built.
  void CountVertices(std::size_t count);
  std::size_t PixelsLeft() const { return limits_.pixels - pixels_; }
  void CountPixels(std::size_t count) { pixels_ += count; }

  void BeginGroup(PenMode penMode);
  void EndGroup();
  /// The whole drawing; groups must be closed.
  Drawing Take();

 private:
  void CountObject();

  const WmfLimits& limits_;
  std::size_t objects_ = 0;
  std::size_t vertices_ = 0;
  std::size_t pixels_ = 0;
  std::vector<std::vector<DrawingObject>> levels_;
  std::vector<PenMode> groupPenModes_;
};

/// Text of other programs: the attributes whose cells come nearest to `height` and `width` pixels
/// (width 0: as wide as the font is), and its characters as far as Latin-1 has something like them.
TextAttributes NearestStyle(const DeviceFonts& fonts, const Font& font, double height,
                            double width);
std::string ToLatin1(std::string text);

}  // namespace kelvo::wmf

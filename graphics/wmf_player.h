#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "graphics/wmf_canvas.h"
#include "graphics/wmf_sources.h"

namespace kelvo::wmf {

/// Plays a metafile's records on a canvas, one at a time.
class Player {
 public:
  Player(Placement placement, const DeviceFonts& fonts, const WmfLimits& limits);

  /// `record` is one whole record, as long as its header says. False after the last one.
  bool Play(std::string_view record);
  Drawing Take();
  bool Foreign() { return canvas_.Place().foreign; }
  Point WindowExtent() const { return canvas_.FirstExtent(); }
  const std::map<std::string, int>& Skipped() const { return skipped_; }

 private:
  struct Row;
  static const Row kRows[];
  static const Row* FindRow(std::uint8_t type);
  using Action = void (Player::*)();

  // What is read from the current record; beyond its end it is damaged.
  int Number(std::size_t parameter) const;
  unsigned Unsigned(std::size_t parameter) const;
  Point PointAt(std::size_t parameter) const;        // x first
  Point TurnedPointAt(std::size_t parameter) const;  // y first, as most parameters stand
  std::vector<Point> PointsAt(std::size_t parameter, std::size_t count);
  std::string_view BytesAt(std::size_t parameter, std::size_t count) const;
  U_COLORREF ColourAt(std::size_t parameter) const;

  void Ignore() {}
  void SkipRecord();
  void Report(bool done) {
    if (!done) SkipRecord();
  }
  void Skip(const std::string& name) { ++skipped_[name]; }
  void FinishPath();

  void SetBkColor();
  void SetBkMode();
  void SetRop2();
  void SetTextColor();
  void SetTextAlign();
  void SetPolyFillMode();
  void SetWindowOrigin();
  void SetWindowExtent();
  void SaveContext();
  void RestoreContext();
  void SelectTool();
  void DeleteTool();
  void CreatePen();
  void CreateBrush();
  void CreatePatternBrush();
  void CreateFont();
  void CreateOther();

  void MoveTo();
  void LineTo();
  void DrawPolyline();
  void DrawPolygon();
  void DrawPolyPolygon();
  void DrawRectangle();
  void DrawRoundRectangle();
  void DrawArc(ArcKind kind);
  void DrawArc() { DrawArc(ArcKind::Arc); }
  void DrawPie() { DrawArc(ArcKind::Pie); }
  void DrawChord() { DrawArc(ArcKind::Chord); }
  void DrawEllipse();
  void DrawPixel();
  void PaintBox();
  void DrawTextOut();
  void DrawExtTextOut();
  void StretchDib();
  void DibStretchBlt();
  void DibBitBlt();
  void SetDibToDevice();
  void DrawDib(Point destination, Point size, Point source, Point sourceSize,
               std::size_t dibParameter);
  void ReadEscape();
  void ReadComment(std::string_view comment);
  void ReadMark(std::string_view payload);
  void ReadOwnText(std::string_view payload);

  const WmfLimits& limits_;
  Builder builder_;
  Canvas canvas_;
  ToolTable tools_;
  SourceReader sources_;
  std::vector<Context> saved_;
  std::vector<Point> path_;
  bool drawn_ = false;  // something besides set-up has been played
  std::string_view record_;
  const Row* row_ = nullptr;
  std::map<std::string, int> skipped_;
};

}  // namespace kelvo::wmf

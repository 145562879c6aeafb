#pragma once

#include <QScrollArea>
#include <cstdint>

#include "sheet_page/sheet_painter.h"

namespace kelvo {

/// Shows one page of a sheet as it will be on paper.
class SheetView : public QScrollArea {
  Q_OBJECT

 public:
  enum class Zoom : std::uint8_t { Page, Width, Life };
  explicit SheetView(QWidget* parent = nullptr);

  /// The sheet must outlive the view, or be replaced; null for none.
  void Show(const SheetPages* sheet);
  void SetPage(std::size_t page);
  std::size_t ShownPage() const { return page_; }
  void SetZoom(Zoom zoom);

 Q_SIGNALS:
  /// The operator turns the page: by so many.
  void Turned(int pages);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  class Paper;
  void Fit();

  Paper* paper_;
  const SheetPages* sheet_ = nullptr;
  std::size_t page_ = 0;
  Zoom zoom_ = Zoom::Page;
  int wheel_ = 0;  // turned at the paper's end, in eighths of a degree
};

}  // namespace kelvo

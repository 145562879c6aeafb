#include "sheet_page/sheet_view.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>

namespace kelvo {
namespace {

constexpr int kBeside = 8;  // pixels of ground around the paper

}  // namespace

class SheetView::Paper : public QWidget {
 public:
  void Show(const SheetPages* sheet, std::size_t page) {
    sheet_ = sheet;
    page_ = page;
    update();
  }

 protected:
  // White in a dark theme, too: it is paper.
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    if (sheet_ == nullptr || page_ >= sheet_->pages.size()) return;
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.scale(width() / kPageWidth, height() / kPageHeight);
    PaintSheetPage(painter, *sheet_, page_);
  }

 private:
  const SheetPages* sheet_ = nullptr;
  std::size_t page_ = 0;
};

SheetView::SheetView(QWidget* parent) : QScrollArea(parent), paper_(new Paper) {
  setWidget(paper_);
  setAlignment(Qt::AlignCenter);
  setBackgroundRole(QPalette::Mid);
  setFocusPolicy(Qt::StrongFocus);
  Fit();
}

void SheetView::Show(const SheetPages* sheet) {
  sheet_ = sheet;
  SetPage(page_);
}

void SheetView::SetPage(std::size_t page) {
  const std::size_t count = sheet_ == nullptr ? 0 : sheet_->pages.size();
  const std::size_t before = page_;
  page_ = std::min(page, count == 0 ? 0 : count - 1);
  paper_->Show(sheet_, page_);
  if (page_ != before) verticalScrollBar()->setValue(0);
}

void SheetView::SetZoom(Zoom zoom) {
  zoom_ = zoom;
  Fit();
}

void SheetView::Fit() {
  const double ratio = kPageHeight / kPageWidth;
  double width = viewport()->width() - 2 * kBeside;
  if (zoom_ == Zoom::Width) width -= verticalScrollBar()->sizeHint().width();
  if (zoom_ == Zoom::Page) width = std::min(width, (viewport()->height() - 2 * kBeside) / ratio);
  if (zoom_ == Zoom::Life) width = kPageWidth / kUnitsPerInch * logicalDpiX();
  const int whole = std::max(1, static_cast<int>(width));
  paper_->resize(whole, std::max(1, static_cast<int>(whole * ratio)));
}

void SheetView::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  Fit();
}

// Where there is nothing to scroll any more, the page is turned.
void SheetView::keyPressEvent(QKeyEvent* event) {
  const QScrollBar& bar = *verticalScrollBar();
  const bool next = event->key() == Qt::Key_PageDown && bar.value() >= bar.maximum();
  const bool before = event->key() == Qt::Key_PageUp && bar.value() <= bar.minimum();
  if (next || before) {
    Q_EMIT Turned(next ? 1 : -1);
    return;
  }
  QScrollArea::keyPressEvent(event);
}

void SheetView::wheelEvent(QWheelEvent* event) {
  const QScrollBar& bar = *verticalScrollBar();
  const int delta = event->angleDelta().y();
  const bool atEnd = delta < 0 ? bar.value() >= bar.maximum() : bar.value() <= bar.minimum();
  if (!atEnd) {
    wheel_ = 0;
    return QScrollArea::wheelEvent(event);
  }
  event->accept();
  wheel_ += delta;
  const int notches = wheel_ / QWheelEvent::DefaultDeltasPerStep;
  wheel_ %= QWheelEvent::DefaultDeltasPerStep;
  if (notches != 0) Q_EMIT Turned(-notches);
}

}  // namespace kelvo

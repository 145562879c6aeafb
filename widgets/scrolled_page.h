#pragma once

#include <QScrollArea>

namespace kelvo {

/// A page of a tab strip that can be scrolled where the window is too small for it. It wants to be
/// as large as the page, but does not have to. The control that has the focus is in view.
class ScrolledPage : public QScrollArea {
  Q_OBJECT

 public:
  explicit ScrolledPage(QWidget* page);

  QSize sizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Fit();
};

}  // namespace kelvo

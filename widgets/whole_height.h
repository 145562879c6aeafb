#pragma once

#include <QWidget>

class QLayout;

namespace kelvo {

/// Never lower than what it holds needs at its width: what stands below a text that wraps is not
/// squeezed for that, as the toolkit would; the page around it scrolls.
class WholeHeight : public QWidget {
  Q_OBJECT

 public:
  explicit WholeHeight(QLayout* content, QWidget* parent = nullptr);

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Fit();
};

}  // namespace kelvo

#pragma once

#include <QObject>
#include <QPointer>
#include <memory>
#include <utility>
#include <vector>

class QEvent;
class QWindow;

namespace kelvo {

/// As long as this lives keys and the mouse wait; what they did is done afterwards, in its order.
/// Closing a window and Escape get through at once. So does everything when a window opens over the
/// others meanwhile: that can only be a question about the closing.
class HeldInput : public QObject {
 public:
  HeldInput();
  ~HeldInput() override;

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  QWindow* modal_;
  std::vector<std::pair<QPointer<QObject>, std::unique_ptr<QEvent>>> held_;
};

}  // namespace kelvo

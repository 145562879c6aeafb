#pragma once

#include <QObject>

namespace kelvo {

/// As long as it lives, the mouse wheel changes no list and no number that has not the focus,
/// anywhere in the program; the page below scrolls instead.
class WheelGuard : public QObject {
  Q_OBJECT

 public:
  WheelGuard();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace kelvo

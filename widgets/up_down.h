#pragma once

#include <QWidget>

namespace kelvo {

/// A pair of arrow buttons that raise and lower a number shown elsewhere.
class UpDown : public QWidget {
  Q_OBJECT

 public:
  /// `name` is the objectName, its buttons are `name`_Up and `name`_Down; `what` tells a screen
  /// reader which number it is.
  UpDown(const QString& name, const QString& what, QWidget* parent = nullptr);

 Q_SIGNALS:
  void Up();
  void Down();
};

}  // namespace kelvo

#pragma once

#include <QWidget>

namespace kelvo {

/// The welcome and help page: what an operator does first.
class WelcomePage : public QWidget {
  Q_OBJECT

 public:
  explicit WelcomePage(QWidget* parent = nullptr);

 Q_SIGNALS:
  void SimulatorWanted();
};

}  // namespace kelvo

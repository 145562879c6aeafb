#pragma once

#include <QSplashScreen>

namespace kelvo {

/// The small window "Programm wird geladen" that stands until the main window is painted.
class Splash : public QSplashScreen {
  Q_OBJECT

 public:
  Splash();

 Q_SIGNALS:
  /// The splash window is on the screen; once.
  void Active();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool active_ = false;
};

}  // namespace kelvo

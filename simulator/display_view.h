#pragma once

#include <QImage>
#include <QWidget>

#include "graphics/pixel_map.h"

namespace kelvo::sim {

/// A Terminal's display, every pixel as a square of whole screen pixels, as large as the room
/// allows. With the keyboard focus it takes what is typed for the PC keyboard at the Terminal.
class DisplayView : public QWidget {
  Q_OBJECT

 public:
  explicit DisplayView(QWidget* parent = nullptr);
  void Show(const PixelMap& picture, bool powered);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// Latin-1 character codes, as the keyboard has made them.
  void Typed(const QByteArray& characters);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QSize SizeAt(double scale) const;
  int Scale() const;

  PixelMap picture_;
  bool powered_ = false;
  QImage image_;
  int imageScale_ = 0;  // 0: the image is out of date
};

}  // namespace kelvo::sim

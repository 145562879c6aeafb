#pragma once

#include <QImage>
#include <QWidget>

#include "twin/twins.h"

namespace kelvo {

/// The model's display with its cursor, a screen pixel for each; hatched in grey where it is only
/// what was known last. Null: nothing is known, an empty ground.
QImage TwinImage(const Twin* twin);

/// A model's display, every pixel as a square of whole screen pixels, as large as the
/// room allows.
class TwinPicture : public QWidget {
  Q_OBJECT

 public:
  explicit TwinPicture(QWidget* parent = nullptr);
  /// Null: nobody has been spoken with.
  void Show(const Twin* twin);
  const QImage& Image() const { return image_; }
  /// It is no higher than this, unless a pixel would be smaller than one of the screen.
  void SetRoomHeight(int height);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double Scale(int width) const;

  QImage image_;
  bool doubted_ = true;
  int roomHeight_ = QWIDGETSIZE_MAX;
};

/// Grey hatching over a picture that is not certain.
void PaintDoubt(QPainter& painter, const QRect& place);

}  // namespace kelvo

#pragma once

#include <QImage>
#include <QWidget>

#include "graphics/pixel_map.h"

class QPainter;

namespace kelvo {

enum class Certainty { Certain, Doubted };

/// A reckoned display in the colours in which the simulator shows it, a screen pixel for each; dull
/// where it is only what was known last.
QImage DisplayImage(const PixelMap& pixels, Certainty certainty = Certainty::Certain);
/// Grey hatching over a picture that is not certain.
void PaintDoubt(QPainter& painter, const QRect& place);

/// A reckoned display, every pixel as a square of whole screen pixels, as large as the room allows.
class DisplayPicture : public QWidget {
  Q_OBJECT

 public:
  /// What becomes of a display that is larger than its room.
  enum class TooLarge { Claims, Shrinks };
  explicit DisplayPicture(TooLarge tooLarge, QWidget* parent = nullptr);

  void Show(const PixelMap& pixels, Certainty certainty = Certainty::Certain);
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
  double Scale(QSize room) const;
  QSize SizeAt(double scale) const;

  const TooLarge tooLarge_;
  QImage image_;
  Certainty certainty_ = Certainty::Certain;
  int roomHeight_ = QWIDGETSIZE_MAX;
};

}  // namespace kelvo

#pragma once

#include <QImage>
#include <QWidget>

#include "graphics/pixel_map.h"

namespace kelvo {

/// A reckoned display, every pixel as a square of whole screen pixels, as large as the room allows.
class MacroPicture : public QWidget {
  Q_OBJECT

 public:
  explicit MacroPicture(QWidget* parent = nullptr);
  void Show(const PixelMap& pixels);
  const QImage& Image() const { return image_; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double Scale(QSizeF room) const;

  QImage image_;
};

}  // namespace kelvo

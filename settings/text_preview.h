#pragma once

#include <QWidget>
#include <string>

#include "graphics/raster.h"

namespace kelvo {

/// A piece of the Terminal's display that shows a text as the Terminal would draw it: on the left
/// on an empty display, on the right on a filled one, so that the drawing modes can be told apart.
class TextPreview : public QWidget {
  Q_OBJECT

 public:
  /// The fonts must outlive the widget.
  explicit TextPreview(const DeviceFonts& fonts, QWidget* parent = nullptr);

  /// Wire text; line ends start a new row. An empty text shows an example.
  void Show(const std::string& text, const TextStyle& style);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  PixelMap Picture(int width, int height) const;
  int Scale() const;
  int RowHeight() const;
  void DrawRows(PixelMap& map) const;

  const DeviceFonts& fonts_;
  std::string text_;
  TextStyle style_;
};

}  // namespace kelvo

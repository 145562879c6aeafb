#pragma once

#include <QGroupBox>

#include "graphics/drawing.h"

class QSpinBox;

namespace kelvo {

/// Place and size of what is selected, typed as numbers: the lower left corner, width and height in
/// Terminal pixels.
class GeometryPanel : public QGroupBox {
  Q_OBJECT

 public:
  explicit GeometryPanel(QWidget* parent = nullptr);

  /// Without a signal; switched off without a selection.
  void ShowBox(const Box& box, bool selected);

 Q_SIGNALS:
  /// A number was ended with Return.
  void Complete();
  void BoxTyped(const Box& box);

 private:
  QSpinBox* MakeField(const char* name, int min);

  QSpinBox* txtPosX = nullptr;
  QSpinBox* txtPosY = nullptr;
  QSpinBox* txtBreite = nullptr;
  QSpinBox* txtHoehe = nullptr;
};

}  // namespace kelvo

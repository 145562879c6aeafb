#pragma once

#include <QGroupBox>
#include <string>

#include "graphics/counting.h"
#include "graphics/drawing.h"

class QSpinBox;

namespace kelvo {

/// Place and size of what is selected, typed as numbers: the corner where counting begins, width
/// and height in Terminal pixels.
class GeometryPanel : public QGroupBox {
  Q_OBJECT

 public:
  /// The counting must outlive the panel.
  explicit GeometryPanel(const Counting& counting, QWidget* parent = nullptr);

  /// Without a signal; switched off without a selection.
  void ShowBox(const Box& box, bool selected);

 Q_SIGNALS:
  /// A number was ended with Return.
  void Complete();
  /// `mergeKey`: of a step of one field that follows others of it; empty for a typed number.
  void BoxTyped(const Box& box, const std::string& mergeKey);

 private:
  QSpinBox* MakeField(const char* name, int min);

  const Counting& counting_;

  QSpinBox* txtPosX = nullptr;
  QSpinBox* txtPosY = nullptr;
  QSpinBox* txtBreite = nullptr;
  QSpinBox* txtHoehe = nullptr;
};

}  // namespace kelvo

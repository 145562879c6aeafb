#pragma once

#include "keyboards/key_display.h"
#include "widgets/wire_field.h"

namespace kelvo {

/// The box of one key in the matrix key grid: a field like every other, and blue while the key is
/// pressed.
class KeyCell : public WireField {
  Q_OBJECT

 public:
  explicit KeyCell(QWidget* parent = nullptr);

  void Paint(KeyColour colour);

 Q_SIGNALS:
  /// The operator went to another control, or began an action with what is in this one. A change to
  /// another window or a menu is none.
  void Left();
  /// An arrow key asks for the box so many rows and columns further on.
  void NeighbourWanted(int rows, int columns);

 protected:
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  KeyColour colour_ = KeyColour::LightBlue;
  bool checked_ = false;  // for an action; being left afterwards is no second time
};

}  // namespace kelvo

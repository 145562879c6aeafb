#pragma once

#include <QWidget>

#include "graphics/tool.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QRadioButton;
class QSpinBox;

namespace kelvo {

/// How objects are drawn: drawing or erasing, filled or not, and the text attributes. The choices
/// hold for new objects, and change the selected ones.
class StylePanel : public QWidget {
  Q_OBJECT

 public:
  explicit StylePanel(QWidget* parent = nullptr);

  ObjectStyle Style() const;
  /// Shows the style of what is selected, without a signal.
  void ShowStyle(const ObjectStyle& style);

 Q_SIGNALS:
  void PenModeChosen(PenMode penMode);
  void FilledChosen(bool filled);
  void TextChosen(const TextAttributes& attributes);

 private:
  QWidget* MakeDrawingGroup();
  QWidget* MakeTextGroup();
  void ShowZoom();
  void TextChanged();

  QRadioButton* optZeichnen = nullptr;
  QRadioButton* optLoeschen = nullptr;
  QCheckBox* chkGefuellt = nullptr;
  QComboBox* cboTextStyle = nullptr;
  QSpinBox* txtTextZoomX = nullptr;
  QSpinBox* txtTextZoomY = nullptr;
  QLabel* lblTextZoom = nullptr;
  QCheckBox* ctlFontBold = nullptr;
  QCheckBox* ctlFontInvers = nullptr;
  QCheckBox* ctlFontUdrline = nullptr;
};

}  // namespace kelvo

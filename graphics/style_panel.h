#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "graphics/tool.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QRadioButton;
class QSpinBox;

namespace kelvo {

/// The style that what is selected has in common: an attribute in which the objects differ, or that
/// none of them has, is not known.
struct CommonStyle {
  struct Attribute {
    bool mixed = false;
    std::optional<int> value;
    /// One more object has this value.
    void Meet(int other);
  };
  Attribute penMode, filled, font, zoomX, zoomY, bold, inverse, underline;
};
CommonStyle CommonStyleOf(const Drawing& drawing);

/// A change of one attribute of a text alone.
using TextChange = std::function<void(TextAttributes&)>;

/// How objects are drawn: drawing or erasing, filled or not, and the text attributes. The choices
/// hold for new objects, and change the selected ones, each its own attribute alone. Where selected
/// objects differ that is shown; choosing what is shown gives it to all.
class StylePanel : public QWidget {
  Q_OBJECT

 public:
  explicit StylePanel(QWidget* parent = nullptr);

  /// Of new objects: what was chosen or shown last.
  const ObjectStyle& Style() const { return style_; }
  /// Shows the style of what is selected, without a signal.
  void ShowStyle(const CommonStyle& style);

  /// The text attributes' controls take the keys when they are clicked (as at first), or leave them
  /// where they are.
  void TakeFocusByClick(bool on);
  /// Gives the keys to the first of the text attributes.
  void FocusText();

 Q_SIGNALS:
  void PenModeChosen(PenMode penMode);
  void FilledChosen(bool filled);
  void TextChosen(const TextChange& change);

 private:
  QWidget* MakeDrawingGroup();
  QWidget* MakeTextGroup();
  QCheckBox* MakeTextBox(const char* name, const QString& caption, bool TextAttributes::*attribute);
  QSpinBox* MakeZoomBox(const char* name, int max, int TextAttributes::*zoom);
  void ShowZoom();
  void Choose(const TextChange& change);
  void ChoosePenMode(PenMode penMode);

  ObjectStyle style_;

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

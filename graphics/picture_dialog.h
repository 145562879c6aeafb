#pragma once

#include <QDialog>
#include <QImage>

#include "graphics/dither.h"
#include "graphics/drawing.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QSlider;
class QSpinBox;

namespace kelvo {

/// Scales a picture for the display and shows beside it which of its pixels the Terminal will show
/// black.
class PictureDialog : public QDialog {
  Q_OBJECT

 public:
  /// The picture is proposed in its own size, or as large as fits into the display.
  PictureDialog(QImage image, QSize display, Colour threshold, QWidget* parent = nullptr);

  /// The picture as it goes into the drawing. As long as neither threshold nor dithering were
  /// changed its colours stay; otherwise it is made black and white.
  Picture Result() const;

 private:
  void MakeControls(QSize display);
  QWidget* MakeSizeGroup();
  QWidget* MakeBlackGroup();
  QWidget* MakeButtons();
  QWidget* MakePreview(QSize display);
  void ConnectControls();
  void ChangeWidth(int width);
  void ChangeHeight(int height);
  void Rescale();
  void ShowPreview();
  Colour Threshold() const;
  Picture Monochrome() const;
  Dithering ChosenDithering() const;
  Picture Shown() const;

  QImage image_;
  Picture scaled_;  // to the size that is chosen, in its colours
  Colour optionThreshold_;
  QSpinBox* txtBildBreite = nullptr;
  QSpinBox* txtBildHoehe = nullptr;
  QCheckBox* chkSeitenverhaeltnis = nullptr;
  QCheckBox* chkGraustufen = nullptr;
  QComboBox* cboRasterung = nullptr;
  QSlider* ctlSchwelle = nullptr;
  QLabel* lblSchwelle = nullptr;
  QLabel* lblVorschau = nullptr;
  QLabel* lblErklaerung = nullptr;
  bool thresholdMoved_ = false;
};

}  // namespace kelvo

#pragma once

#include <QDialog>

#include "graphics/drawing.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QSlider;
class QSpinBox;

namespace kelvo {

/// Prepares a picture for the display: cuts, turns and scales it, and shows beside it which of its
/// pixels the Terminal will show black.
class PictureDialog : public QDialog {
  Q_OBJECT

 public:
  /// Of a picture that is to be inserted: proposed in its own size, or as large as fits into the
  /// display. `threshold` is the option's.
  PictureDialog(PictureSource source, QSize display, Colour threshold, QWidget* parent = nullptr);
  /// Of one that stands in the drawing and has a source.
  PictureDialog(const DrawingObject& picture, QSize display, Colour threshold,
                QWidget* parent = nullptr);

  /// The picture as it goes into the drawing, with its source, its lower left corner at (0, 0). As
  /// long as neither threshold nor dithering were chosen its colours stay; otherwise it is black
  /// and white.
  DrawingObject Result() const;

 private:
  void MakeControls(QSize display);
  QWidget* MakeSizeGroup();
  QWidget* MakeCutGroup();
  QWidget* MakeToneGroup();
  QWidget* MakeBlackGroup();
  QWidget* MakeButtons();
  QWidget* MakePreview(QSize display);
  QSlider* MakeSlider(const char* name, int low, int high);
  void ConnectControls();
  void ConnectCut();
  void ConnectTone();

  void TypeSize(int width, int height);
  void TypeMargins();
  void Turn();
  void Mirror();
  void Reset();
  void Rescale();
  void ShowFields();
  void ShowMargins();
  void ShowSize();
  void ShowPreview();
  QSize Size() const;

  PictureSource source_;
  Preparation preparation_;
  double scaleX_ = 1;  // pixels of the display for one of the source, as it is shown
  double scaleY_ = 1;
  bool inserts_ = true;
  Colour optionThreshold_;
  Picture scaled_;  // what is cut, in the size that is chosen, in its colours

  QSpinBox* txtBildBreite = nullptr;
  QSpinBox* txtBildHoehe = nullptr;
  QCheckBox* chkSeitenverhaeltnis = nullptr;
  QSpinBox* txtRandLinks = nullptr;
  QSpinBox* txtRandOben = nullptr;
  QSpinBox* txtRandRechts = nullptr;
  QSpinBox* txtRandUnten = nullptr;
  QPushButton* cmdBildDrehen = nullptr;
  QPushButton* cmdBildSpiegeln = nullptr;
  QSlider* ctlHelligkeit = nullptr;
  QSlider* ctlKontrast = nullptr;
  QCheckBox* chkInvertieren = nullptr;
  QCheckBox* chkGraustufen = nullptr;
  QComboBox* cboRasterung = nullptr;
  QSlider* ctlSchwelle = nullptr;
  QLabel* lblSchwelle = nullptr;
  QLabel* lblVorschau = nullptr;
  QLabel* lblErklaerung = nullptr;
};

}  // namespace kelvo

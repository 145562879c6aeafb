#pragma once

#include <QLabel>
#include <QWidget>

#include "graphics/frmGrafik.h"

namespace kelvo {

/// The drawing as the Terminal shows it, as large as whole enlarged pixels allow.
class DrawingPreview : public QWidget {
  Q_OBJECT

 public:
  explicit DrawingPreview(QWidget* parent = nullptr);
  void Show(const QImage& pixels);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QImage pixels_;
};

/// The drawing's page of the main window: what is drawn, what it costs, and the ways to the editor,
/// to the Terminal and into files.
class DrawingPage : public QWidget {
  Q_OBJECT

 public:
  /// All must outlive the page.
  DrawingPage(frmGrafik& editor, GraphicsHost& host, Operator& person, QWidget* parent = nullptr);

  /// Shows the editor's window in front of the others.
  void cmdGrafik_Click();
  /// The options may have changed; the page has been shown.
  void ShowDrawing();

 private:
  QWidget* MakeButtons();

  frmGrafik& editor_;
  GraphicsHost& host_;
  Operator& person_;
  DrawingPreview* ctlVorschau = nullptr;
  QLabel* lblKosten = nullptr;
};

}  // namespace kelvo

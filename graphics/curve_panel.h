#pragma once

#include <QWidget>

#include "graphics/tool.h"

class QCheckBox;
class QFormLayout;
class QGroupBox;
class QSpinBox;

namespace kelvo {

/// What the tools for rounded rectangles and arcs draw; shown while one of them is in hand.
class CurvePanel : public QWidget {
  Q_OBJECT

 public:
  explicit CurvePanel(QWidget* parent = nullptr);

  CurveStyle Style() const;
  void ShowFor(ToolKind kind);

 Q_SIGNALS:
  /// A number was ended with Return.
  void Complete();

 private:
  QSpinBox* AddField(QFormLayout* form, const char* name, const QString& caption, int max,
                     const QString& unit);

  QGroupBox* corners_ = nullptr;
  QGroupBox* arc_ = nullptr;
  QSpinBox* txtRadius = nullptr;
  QSpinBox* txtBogenAnfang = nullptr;
  QSpinBox* txtBogenEnde = nullptr;
  QCheckBox* chkSektor = nullptr;
};

}  // namespace kelvo

#pragma once

#include <QDialog>
#include <QImage>
#include <functional>
#include <vector>

#include "graphics/loaded_drawing.h"

class QLabel;
class QListWidget;

namespace kelvo {

/// Chooses one of the stored drawings; beside the names stands what the Terminal would show.
class StoredDialog : public QDialog {
  Q_OBJECT

 public:
  struct Choice {
    QString name;
    LoadedDrawing drawing;
  };
  using Render = std::function<QImage(const Drawing& drawing)>;

  /// At least one choice. `render` is called during the dialog's life.
  StoredDialog(std::vector<Choice> choices, Render render, QWidget* parent = nullptr);

  const LoadedDrawing& Chosen() const;

 private:
  void ShowPreview();

  std::vector<Choice> choices_;
  Render render_;
  QListWidget* lstGespeichert = nullptr;
  QLabel* lblGespeichert = nullptr;
};

}  // namespace kelvo

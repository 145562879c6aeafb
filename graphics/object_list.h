#pragma once

#include <QDockWidget>
#include <QListView>
#include <QTimer>
#include <cstddef>
#include <vector>

#include "graphics/object_model.h"

namespace kelvo {

/// The list of the objects, in which what is selected is selected, too. It follows the drawing only
/// while it is to be seen.
class ObjectList : public QListView {
  Q_OBJECT

 public:
  /// Document and model must outlive the list.
  ObjectList(const DrawingDocument& document, ObjectModel& model, QWidget* parent = nullptr);

  /// The drawing, or what it is called, has changed.
  void Follow();

 Q_SIGNALS:
  /// The operator has selected these rows, and no others.
  void Chosen(const std::vector<std::size_t>& rows);
  /// Enter, or a double click.
  void OpenWanted(std::size_t row);
  /// Escape.
  void LeaveWanted();

 protected:
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void FollowNow();
  void ShowSelection();
  void TakeSelection();
  void Open(const QModelIndex& index);

  const DrawingDocument& document_;
  ObjectModel& model_;
  QTimer following_;  // many changes are followed at once
  bool showing_ = false;
};

}  // namespace kelvo

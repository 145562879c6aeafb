#pragma once

#include <QObject>
#include <optional>
#include <string>

#include "graphics/drawing.h"
#include "graphics/history.h"

namespace kelvo {

/// The editor's drawing: its value, what is shown of it while a tool is at work, and the way back.
class DrawingDocument : public QObject {
  Q_OBJECT

 public:
  const Drawing& Current() const { return drawing_; }
  /// The current drawing, or the preview that stands in for it.
  const Drawing& Shown() const { return preview_ ? *preview_ : drawing_; }

  void Show(Drawing preview);
  void GiveUp();
  /// Makes a drawing the current one. Steps with the same key that follow each other are undone
  /// together; an empty key never merges.
  void Commit(Drawing drawing, const std::string& mergeKey = {});

  bool CanUndo() const { return history_.CanUndo(); }
  bool CanRedo() const { return history_.CanRedo(); }
  void Undo();
  void Redo();

  /// Whether the drawing differs from the one last saved or loaded.
  bool Unsaved() const { return history_.Revision() != savedRevision_; }
  void MarkSaved();
  /// What was never saved at all, as a draft that was taken up again.
  void MarkUnsaved();

 Q_SIGNALS:
  /// What is to be seen has changed: the drawing, its selection or the preview.
  void Changed();
  /// The current drawing has changed by more than its selection.
  void Edited();

 private:
  void Step(void (History::*way)(Drawing&));

  Drawing drawing_;
  std::optional<Drawing> preview_;
  History history_;
  std::optional<std::size_t> savedRevision_ = 0;
};

}  // namespace kelvo

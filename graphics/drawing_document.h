#pragma once

#include <QObject>
#include <optional>
#include <string>
#include <vector>

#include "graphics/drawing.h"
#include "graphics/history.h"

namespace kelvo {

/// The editor's drawing: its value, what is shown of it while a tool is at work, and the way back.
/// A group can be open, even within another one: then its members are what is edited.
class DrawingDocument : public QObject {
  Q_OBJECT

 public:
  /// All of it, whichever group is open.
  const Drawing& Whole() const { return drawing_; }
  /// What is edited: the members of the open group, or the whole drawing.
  const Drawing& Current() const;
  /// The current drawing, or the preview that stands in for it.
  const Drawing& Shown() const { return preview_ ? *preview_ : Current(); }
  Drawing ShownWhole() const;
  /// What is drawn after the open group, on whatever level; the order is not that of drawing.
  Drawing Above() const;

  bool InGroup() const { return !path_.empty(); }
  /// Opens a group of the current drawing; another object stays as it is.
  void Enter(std::size_t index);
  /// Closes the open group, which is selected then; false where none is open.
  bool Leave();

  /// A point of the one object that is selected, by its index; it is let go at every change.
  void Pick(std::optional<std::size_t> point);
  std::optional<std::size_t> Picked() const { return picked_; }

  void Show(Drawing preview);
  void GiveUp();
  /// Makes a drawing the current one. Steps with the same key that follow each other are undone
  /// together; an empty key never merges.
  /// A group that has lost its last member goes, too.
  void Commit(Drawing drawing, const std::string& mergeKey = {});
  /// The same for another whole drawing; no group is open then.
  void Replace(Drawing whole);

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
  /// The current drawing is another one, if only in its selection.
  void Replaced();
  /// The current drawing has changed by more than its selection.
  void Edited();

 private:
  void Record(Drawing whole, const std::string& mergeKey);
  void Step(void (History::*way)(Drawing&));
  void ShowLevel();

  Drawing drawing_;
  std::vector<std::size_t> path_;  // the open group's place on each level, the outermost first
  std::optional<std::size_t> picked_;
  std::optional<Drawing> preview_;  // of the current level
  History history_;
  std::optional<std::size_t> savedRevision_ = 0;
};

}  // namespace kelvo

#include "graphics/drawing_document.h"

#include <utility>

namespace kelvo {

void DrawingDocument::Show(Drawing preview) {
  preview_ = std::move(preview);
  Q_EMIT Changed();
}

void DrawingDocument::GiveUp() {
  if (!preview_) return;
  preview_.reset();
  Q_EMIT Changed();
}

void DrawingDocument::Commit(Drawing drawing, const std::string& mergeKey) {
  const std::size_t before = history_.Revision();
  history_.Record(drawing_, drawing, mergeKey);
  drawing_ = std::move(drawing);
  preview_.reset();
  Q_EMIT Changed();
  if (history_.Revision() != before) Q_EMIT Edited();
}

void DrawingDocument::Undo() {
  if (CanUndo()) Step(&History::Undo);
}

void DrawingDocument::Redo() {
  if (CanRedo()) Step(&History::Redo);
}

void DrawingDocument::Step(void (History::*way)(Drawing&)) {
  preview_.reset();
  (history_.*way)(drawing_);
  Q_EMIT Changed();
  Q_EMIT Edited();
}

void DrawingDocument::MarkSaved() {
  savedRevision_ = history_.Revision();
  Q_EMIT Changed();
}

void DrawingDocument::MarkUnsaved() {
  savedRevision_.reset();
  Q_EMIT Changed();
}

}  // namespace kelvo

#pragma once

#include <QLineEdit>
#include <string_view>

#include "graphics/drawing_canvas.h"
#include "graphics/style_panel.h"

namespace kelvo {

/// A text that is typed on the canvas itself. The field over its cells has the keys, the caret and
/// the marking; the letters are the drawing's own, in the Terminal's font. Nothing is part of the
/// drawing before the typing ends, and then as one step.
class TextTyping : public QLineEdit {
  Q_OBJECT

 public:
  /// What is handed over must outlive the field. While the style panel has the keys the typing goes
  /// on.
  TextTyping(DrawingDocument& document, DrawingCanvas& canvas, StylePanel& panel,
             const DeviceFonts& fonts);

  /// Begins with the text `index` of a drawing that is to become the current one; the caret stands
  /// where `at` is nearest. What was being typed before ends.
  void Begin(Drawing drawing, std::size_t index, Point at);
  bool Active() const { return active_; }
  /// The text becomes part of the drawing; one without letters leaves it.
  void End();
  /// The drawing stays as it was.
  void GiveUp();
  /// Changes the attributes of what is being typed.
  void Change(const TextChange& change);
  /// An entry of the menus, by its name: true where it acts on the letters alone.
  bool TakeCommand(std::string_view name);

 Q_SIGNALS:
  /// The caret has moved there, in positions of the canvas.
  void CaretMoved(QPoint at);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

 private:
  void Stop();
  void ShowTyped();
  void Place();
  void FollowFocus(const QWidget* now);
  int LetterAt(int x) const;
  int CellWidth() const;
  QRect Caret() const;
  void Undo();

  DrawingDocument& document_;
  DrawingCanvas& canvas_;
  StylePanel& panel_;
  const DeviceFonts& fonts_;
  bool active_ = false;
  Drawing drawing_;  // with the text as it is now
  std::size_t index_ = 0;
  int anchor_ = 0;  // where marking by the mouse began
};

}  // namespace kelvo

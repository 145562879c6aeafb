#include "graphics/text_typing.h"

#include <QApplication>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QValidator>
#include <algorithm>
#include <utility>

#include "graphics/editing.h"
#include "graphics/pixel_image.h"

namespace kelvo {

namespace {

const QColor kCaretColour(0x1e, 0x6f, 0xd9);  // seen on black cells and on white ones

// Lets through what the Terminal can show; finer type becomes plain.
class DeviceText : public QValidator {
 public:
  using QValidator::QValidator;
  State validate(QString& text, int& caret) const override {
    if (FirstForeign(text).isEmpty()) return Acceptable;
    const qsizetype before = text.size();
    text.remove(u'\r').replace(u'\n', u' ');
    text = PlainForms(text);
    caret += static_cast<int>(text.size() - before);
    return FirstForeign(text).isEmpty() ? Acceptable : Invalid;
  }
};

bool LiesIn(const QWidget* widget, const QWidget* around) {
  while (widget != nullptr && widget != around) widget = widget->parentWidget();
  return widget != nullptr;
}

}  // namespace

TextTyping::TextTyping(DrawingDocument& document, DrawingCanvas& canvas, StylePanel& panel,
                       const DeviceFonts& fonts)
    : QLineEdit(&canvas), document_(document), canvas_(canvas), panel_(panel), fonts_(fonts) {
  setObjectName(QStringLiteral("txtZeichnungText"));
  setAccessibleName(tr("Text auf der Zeichenfläche"));
  setValidator(new DeviceText(this));
  setAttribute(Qt::WA_NoSystemBackground);
  hide();
  canvas_.installEventFilter(this);
  connect(this, &QLineEdit::textChanged, this, &TextTyping::ShowTyped);
  connect(this, &QLineEdit::cursorPositionChanged, this, [this] {
    if (active_) Q_EMIT CaretMoved(geometry().topLeft() + Caret().center());
  });
  connect(this, &QLineEdit::selectionChanged, this, qOverload<>(&QWidget::update));
  // Another drawing takes the place of the one that the text is meant for.
  connect(&document_, &DrawingDocument::Replaced, this, &TextTyping::Stop);
  connect(qApp, &QApplication::focusChanged, this,
          [this](const QWidget*, const QWidget* now) { FollowFocus(now); });
}

void TextTyping::Begin(Drawing drawing, std::size_t index, Point at) {
  End();
  drawing_ = std::move(drawing);
  index_ = index;
  const Box box = BoundsOf(drawing_[index_]);
  setText(QString::fromLatin1(drawing_[index_].text));
  active_ = true;
  canvas_.ShowGrips(false);
  panel_.TakeFocusByClick(false);
  ShowTyped();
  show();
  setFocus();
  deselect();
  setCursorPosition(LetterAt((at.x - box.left) * canvas_.Zoom() + canvas_.Zoom() / 2));
}

void TextTyping::Stop() {
  if (!std::exchange(active_, false)) return;
  canvas_.ShowGrips(true);
  panel_.TakeFocusByClick(true);
  if (hasFocus()) canvas_.setFocus();
  hide();
}

void TextTyping::End() {
  if (!active_) return;
  Stop();
  Drawing drawing = std::exchange(drawing_, {});
  if (drawing[index_].text.empty()) {
    drawing.erase(drawing.begin() + static_cast<std::ptrdiff_t>(index_));
  }
  document_.Commit(std::move(drawing));
}

void TextTyping::GiveUp() {
  if (!active_) return;
  Stop();
  document_.GiveUp();
}

void TextTyping::Change(const TextChange& change) {
  ChangeTexts(drawing_, change, fonts_);
  ShowTyped();
}

void TextTyping::ShowTyped() {
  if (!active_) return;
  SetText(drawing_[index_], text().toLatin1().toStdString(), fonts_);
  document_.Show(drawing_);
  Place();
}

bool TextTyping::TakeCommand(std::string_view name) {
  static const std::pair<std::string_view, void (*)(TextTyping&)> own[] = {
      {"mnuGrafikRueckgaengig", [](TextTyping& typing) { typing.Undo(); }},
      {"mnuGrafikWiederholen", [](TextTyping& typing) { typing.redo(); }},
      {"mnuGrafikAusschneiden", [](TextTyping& typing) { typing.cut(); }},
      {"mnuGrafikKopieren", [](TextTyping& typing) { typing.copy(); }},
      {"mnuGrafikEinfuegen", [](TextTyping& typing) { typing.paste(); }},
      {"mnuGrafikLoeschen", [](TextTyping& typing) { typing.del(); }},
      {"mnuGrafikAlles", [](TextTyping& typing) { typing.selectAll(); }}};
  const auto* const found =
      std::find_if(std::begin(own), std::end(own), [name](auto& row) { return row.first == name; });
  if (!active_ || found == std::end(own)) return false;
  found->second(*this);
  return true;
}

// With nothing typed the text itself is taken back.
void TextTyping::Undo() { isUndoAvailable() ? undo() : GiveUp(); }

// ---- Keys and focus ----

// What the field has no use for must not reach the canvas, which would move objects.
void TextTyping::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    GiveUp();
  } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    End();
  } else if (event->matches(QKeySequence::Undo)) {
    Undo();
  } else {
    QLineEdit::keyPressEvent(event);
  }
  event->accept();
}

// Tab leads to the attributes.
bool TextTyping::focusNextPrevChild(bool) {
  panel_.FocusText();
  return true;
}

void TextTyping::FollowFocus(const QWidget* now) {
  const bool stays =
      LiesIn(now, this) || LiesIn(now, &panel_) || qobject_cast<const QMenuBar*>(now);
  if (!stays) End();
}

// ---- Where it stands, and how it looks ----

bool TextTyping::eventFilter(QObject* watched, QEvent* event) {
  if (active_ && event->type() == QEvent::Resize) Place();
  return QLineEdit::eventFilter(watched, event);
}

int TextTyping::CellWidth() const {
  const DrawingObject& typed = drawing_[index_];
  return BoundsOf(typed).Width() / std::max(1, static_cast<int>(typed.text.size())) *
         canvas_.Zoom();
}

void TextTyping::Place() {
  const QRect cells = canvas_.RectOf(BoundsOf(drawing_[index_]));
  setGeometry(cells.adjusted(0, -1, CellWidth(), 1));  // room for the caret behind the last letter
  update();
}

QRect TextTyping::Caret() const { return {cursorPosition() * CellWidth(), 0, 2, height()}; }

int TextTyping::LetterAt(int x) const {
  return std::clamp(qRound(static_cast<double>(x) / CellWidth()), 0,
                    static_cast<int>(text().size()));
}

void TextTyping::paintEvent(QPaintEvent*) {
  if (!active_) return;
  QPainter painter(this);
  QColor marking = kCaretColour;
  marking.setAlpha(90);
  const int cell = CellWidth();
  const auto marked = static_cast<int>(selectedText().size());
  painter.fillRect(std::max(0, selectionStart()) * cell, 0, marked * cell, height(), marking);
  painter.fillRect(Caret(), kCaretColour);
}

QVariant TextTyping::inputMethodQuery(Qt::InputMethodQuery query) const {
  if (active_ && query == Qt::ImCursorRectangle) return Caret();
  return QLineEdit::inputMethodQuery(query);
}

void TextTyping::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  if (!event->modifiers().testFlag(Qt::ShiftModifier)) {
    anchor_ = LetterAt(event->position().toPoint().x());
  }
  mouseMoveEvent(event);
}

void TextTyping::mouseMoveEvent(QMouseEvent* event) {
  if (!event->buttons().testFlag(Qt::LeftButton)) return event->ignore();
  const int to = LetterAt(event->position().toPoint().x());
  setCursorPosition(anchor_);
  if (to != anchor_) setSelection(anchor_, to - anchor_);
}

void TextTyping::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) event->ignore();
}

void TextTyping::mouseDoubleClickEvent(QMouseEvent*) { selectAll(); }

}  // namespace kelvo

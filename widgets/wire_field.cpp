#include "widgets/wire_field.h"

#include <QFontDatabase>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QValidator>
#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "base/wire_text.h"

namespace kelvo {
namespace {

constexpr int kReceivedKept = 20000;
constexpr int kReceivedMost = kReceivedKept + kReceivedKept / 2;
constexpr std::size_t kCarriageReturn = 13;
const QString kWireMime = QStringLiteral("application/x-kelvo-wire");

// The code whose glyph this is, or -1.
int ControlCode(char16_t glyph) {
  if (glyph == kDeleteGlyph) return 0x7F;
  const auto* const found = std::find(std::begin(kControlGlyphs), std::end(kControlGlyphs), glyph);
  return found == std::end(kControlGlyphs) ? -1 : static_cast<int>(found - kControlGlyphs);
}

bool IsWire(const QString& text) {
  return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 256; });
}

bool LeavesUndo(const QEvent& event, bool available) {
  return event.type() == QEvent::ShortcutOverride && !available &&
         static_cast<const QKeyEvent&>(event).matches(QKeySequence::Undo);
}

class WireValidator : public QValidator {
 public:
  using QValidator::QValidator;
  State validate(QString& text, int&) const override { return IsWire(text) ? Acceptable : Invalid; }
};

}  // namespace

WireField::WireField(QWidget* parent) : QLineEdit(parent) {
  setValidator(new WireValidator(this));
  connect(this, &QLineEdit::inputRejected, this, &WireField::Refused);
}

// A field with nothing to undo leaves the key to the window.
bool WireField::event(QEvent* event) {
  if (!LeavesUndo(*event, isUndoAvailable())) return QLineEdit::event(event);
  event->ignore();
  return false;
}

std::string WireField::Wire() const { return text().toLatin1().toStdString(); }

void WireField::SetWire(const std::string& wire) { setText(QString::fromLatin1(wire)); }

QFont WireFont() { return QFontDatabase::systemFont(QFontDatabase::FixedFont); }

QString GlyphText(const std::string& wire) {
  QString text;
  text.reserve(static_cast<qsizetype>(wire.size()));
  for (std::size_t i = 0; i < wire.size(); ++i) {
    const auto code = static_cast<unsigned char>(wire[i]);
    if (code == '\r' && i + 1 < wire.size() && wire[i + 1] == '\n') {
      text += u'\n';
      ++i;
    } else if (code < 0x20) {
      text += QChar(kControlGlyphs[code]);
    } else {
      text += code == 0x7F ? QChar(kDeleteGlyph) : QChar(code);
    }
  }
  return text;
}

std::optional<std::string> WireOfGlyphs(const QString& glyphs) {
  std::string wire;
  for (const QChar c : glyphs) {
    const char16_t code = c.unicode();
    if (c == u'\n' || code == QChar::ParagraphSeparator || code == QChar::LineSeparator) {
      wire += "\r\n";
    } else if (const int control = ControlCode(code); control >= 0) {
      wire += static_cast<char>(control);
    } else if (code < 256) {
      wire += static_cast<char>(code);
    } else {
      return std::nullopt;
    }
  }
  return wire;
}

WireEdit::WireEdit(QWidget* parent) : QPlainTextEdit(parent) {
  setTabChangesFocus(true);
  setFont(WireFont());
  connect(document(), &QTextDocument::contentsChange, this, &WireEdit::NoteChange);
}

// Nothing else can get in: every way of entering text is filtered below. Not toPlainText(), which
// makes a blank of character 160.
std::string WireEdit::Wire() const {
  return WireOfGlyphs(document()->toRawText()).value_or(std::string());
}

std::string WireEdit::WireStart(int length) const {
  QTextCursor start(document());
  start.setPosition(std::min(length, document()->characterCount() - 1), QTextCursor::KeepAnchor);
  return WireOfGlyphs(start.selectedText()).value_or(std::string());
}

void WireEdit::SetWire(const std::string& wire) { setPlainText(GlyphText(wire)); }

void WireEdit::InsertWire(const std::string& wire) { insertPlainText(GlyphText(wire)); }

void WireEdit::AppendWire(const std::string& wire) {
  // What would go again at once must not be laid out first.
  if (wire.size() > kReceivedKept) return AppendWire(wire.substr(wire.size() - kReceivedKept));
  QScrollBar* const bar = verticalScrollBar();
  const bool atEnd = bar->value() == bar->maximum();
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  const bool endsLine =
      wire.starts_with('\n') && ReceivedLast() &&
      document()->characterAt(end.position() - 1) == kControlGlyphs[kCarriageReturn];
  if (endsLine) end.deletePreviousChar();
  const int begin = end.position();
  end.insertText(GlyphText(endsLine ? "\r" + wire : wire));
  NoteReceived(begin, end.position());
  if (ReceivedCount() > kReceivedMost) DropReceived(ReceivedCount() - kReceivedKept);
  if (atEnd) bar->setValue(bar->maximum());
}

// Keeps in mind what of the text was received. A part that changes belongs to who changes it.
void WireEdit::NoteChange(int position, int removed, int added) {
  std::vector<Run> runs;
  for (const Run& run : std::exchange(received_, {})) {
    const int past = position + removed;
    runs.push_back({run.begin, std::min(run.end, position)});
    runs.push_back({std::max(run.begin, past) - removed + added, run.end - removed + added});
  }
  for (const Run& run : runs) NoteReceived(run.begin, run.end);
}

// Never in front of what is noted already: what is received comes to the end of the text.
void WireEdit::NoteReceived(int begin, int end) {
  if (begin >= end) return;
  if (!received_.empty() && received_.back().end >= begin) {
    received_.back().end = end;
  } else {
    received_.push_back({begin, end});
  }
}

int WireEdit::ReceivedCount() const {
  int count = 0;
  for (const Run& run : received_) count += run.end - run.begin;
  return count;
}

bool WireEdit::ReceivedLast() const {
  return !received_.empty() && received_.back().end >= document()->characterCount() - 1;
}

// The oldest go.
void WireEdit::DropReceived(int count) {
  while (count > 0 && !received_.empty()) {
    const Run first = received_.front();
    const int dropped = std::min(count, first.end - first.begin);
    QTextCursor older(document());
    older.setPosition(first.begin);
    older.setPosition(first.begin + dropped, QTextCursor::KeepAnchor);
    older.removeSelectedText();
    count -= dropped;
  }
  document()->clearUndoRedoStacks();
}

bool WireEdit::event(QEvent* event) {
  if (!LeavesUndo(*event, document()->isUndoAvailable())) return QPlainTextEdit::event(event);
  event->ignore();
  return false;
}

void WireEdit::keyPressEvent(QKeyEvent* event) {
  // Also what is no character of its own: half an emoji, a combining accent, a mark without width.
  if (!IsWire(event->text())) return Q_EMIT Refused();
  QPlainTextEdit::keyPressEvent(event);
}

void WireEdit::inputMethodEvent(QInputMethodEvent* event) {
  if (IsWire(event->commitString())) return QPlainTextEdit::inputMethodEvent(event);
  QInputMethodEvent nothing;
  QPlainTextEdit::inputMethodEvent(&nothing);
  Q_EMIT Refused();
}

bool WireEdit::canInsertFromMimeData(const QMimeData* source) const {
  return source->hasFormat(kWireMime) || QPlainTextEdit::canInsertFromMimeData(source);
}

void WireEdit::insertFromMimeData(const QMimeData* source) {
  if (source->hasFormat(kWireMime)) return InsertWire(source->data(kWireMime).toStdString());
  QString text = source->text();
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  const std::optional<std::string> wire = WireOfGlyphs(text);
  if (!wire) return Q_EMIT Refused();
  InsertWire(*wire);
}

// Other programs get the characters themselves, not their glyphs. Their texts know one line end,
// the wire several.
QMimeData* WireEdit::createMimeDataFromSelection() const {
  auto copied = std::make_unique<QMimeData>();
  const std::string wire = WireOfGlyphs(textCursor().selectedText()).value_or(std::string());
  QString text = QString::fromLatin1(wire);
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  copied->setText(text);
  copied->setData(kWireMime, QByteArray::fromStdString(wire));
  return copied.release();
}

}  // namespace kelvo

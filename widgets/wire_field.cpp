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

#include "base/wire_text.h"

namespace kelvo {
namespace {

constexpr int kCharactersKept = 20000;
constexpr std::size_t kCarriageReturn = 13;

// The code whose glyph this is, or -1.
int ControlCode(char16_t glyph) {
  if (glyph == kDeleteGlyph) return 0x7F;
  const auto* const found = std::find(std::begin(kControlGlyphs), std::end(kControlGlyphs), glyph);
  return found == std::end(kControlGlyphs) ? -1 : static_cast<int>(found - kControlGlyphs);
}

bool IsWire(const QString& text) {
  return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 256; });
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
    if (c == u'\n' || code == QChar::ParagraphSeparator) {
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
}

// Nothing else can get in: every way of entering text is filtered below.
std::string WireEdit::Wire() const { return WireOfGlyphs(toPlainText()).value_or(std::string()); }

std::string WireEdit::WireStart(int length) const {
  QTextCursor start(document());
  start.setPosition(std::min(length, document()->characterCount() - 1), QTextCursor::KeepAnchor);
  return WireOfGlyphs(start.selectedText()).value_or(std::string());
}

void WireEdit::SetWire(const std::string& wire) { setPlainText(GlyphText(wire)); }

void WireEdit::InsertWire(const std::string& wire) { insertPlainText(GlyphText(wire)); }

void WireEdit::AppendWire(const std::string& wire) {
  QScrollBar* const bar = verticalScrollBar();
  const bool atEnd = bar->value() == bar->maximum();
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  // Behind the last character the document counts one more, which ends its paragraph.
  const QChar last = document()->characterAt(document()->characterCount() - 2);
  const bool endsLine = wire.starts_with('\n') && last == kControlGlyphs[kCarriageReturn];
  if (endsLine) end.deletePreviousChar();
  end.insertText(GlyphText(endsLine ? "\r" + wire : wire));
  if (document()->characterCount() > kCharactersKept) DropOlderHalf();
  if (atEnd) bar->setValue(bar->maximum());
}

void WireEdit::DropOlderHalf() {
  QTextCursor older(document());
  older.setPosition(kCharactersKept / 2, QTextCursor::KeepAnchor);
  older.removeSelectedText();
  document()->clearUndoRedoStacks();
}

void WireEdit::keyPressEvent(QKeyEvent* event) {
  const QString text = event->text();
  const bool types = !text.isEmpty() && text.front().isPrint();
  if (types && !IsWire(text)) return Q_EMIT Refused();
  QPlainTextEdit::keyPressEvent(event);
}

void WireEdit::inputMethodEvent(QInputMethodEvent* event) {
  if (IsWire(event->commitString())) return QPlainTextEdit::inputMethodEvent(event);
  QInputMethodEvent nothing;
  QPlainTextEdit::inputMethodEvent(&nothing);
  Q_EMIT Refused();
}

void WireEdit::insertFromMimeData(const QMimeData* source) {
  QString text = source->text();
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  const std::optional<std::string> wire = WireOfGlyphs(text);
  if (!wire) return Q_EMIT Refused();
  InsertWire(*wire);
}

// Other programs get the characters themselves, not their glyphs.
QMimeData* WireEdit::createMimeDataFromSelection() const {
  auto copied = std::make_unique<QMimeData>();
  const std::string wire = WireOfGlyphs(textCursor().selectedText()).value_or(std::string());
  QString text = QString::fromLatin1(wire);
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  copied->setText(text);
  return copied.release();
}

}  // namespace kelvo

#include "widgets/wire_field.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QValidator>
#include <memory>
#include <optional>

namespace kelvo {
namespace {

constexpr char16_t controlPictures = 0x2400;
constexpr char16_t deletePicture = 0x2421;

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

QString GlyphText(const std::string& wire) {
  QString text;
  text.reserve(static_cast<qsizetype>(wire.size()));
  for (std::size_t i = 0; i < wire.size(); ++i) {
    const auto code = static_cast<unsigned char>(wire[i]);
    if (code == '\r' && i + 1 < wire.size() && wire[i + 1] == '\n') {
      text += u'\n';
      ++i;
    } else if (code < 0x20) {
      text += QChar(static_cast<char16_t>(controlPictures + code));
    } else {
      text += code == 0x7F ? QChar(deletePicture) : QChar(code);
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
    } else if (code == deletePicture) {
      wire += '\x7F';
    } else if (code >= controlPictures && code < controlPictures + 0x20) {
      wire += static_cast<char>(code - controlPictures);
    } else if (code < 256) {
      wire += static_cast<char>(code);
    } else {
      return std::nullopt;
    }
  }
  return wire;
}

WireEdit::WireEdit(QWidget* parent) : QPlainTextEdit(parent) { setTabChangesFocus(true); }

// Nothing else can get in: every way of entering text is filtered below.
std::string WireEdit::Wire() const { return WireOfGlyphs(toPlainText()).value_or(std::string()); }

void WireEdit::SetWire(const std::string& wire) { setPlainText(GlyphText(wire)); }

void WireEdit::InsertWire(const std::string& wire) { insertPlainText(GlyphText(wire)); }

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

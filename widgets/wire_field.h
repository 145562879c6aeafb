#pragma once

#include <QFont>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <optional>
#include <string>

namespace kelvo {

/// A one-line field whose text goes on the wire: characters beyond code 255 are refused as they are
/// typed or pasted.
class WireField : public QLineEdit {
  Q_OBJECT

 public:
  explicit WireField(QWidget* parent = nullptr);

  std::string Wire() const;
  void SetWire(const std::string& wire);

 Q_SIGNALS:
  /// Something was refused; the window beeps.
  void Refused();
};

/// A text of several lines that goes on the wire. Control characters show as their visible glyphs
/// (ESC as an arrow to the left); the line end is CR LF, anything else is kept byte for byte.
class WireEdit : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit WireEdit(QWidget* parent = nullptr);

  std::string Wire() const;
  /// The first `length` characters at most; a line end counts as one.
  std::string WireStart(int length) const;
  void SetWire(const std::string& wire);
  /// Replaces the selection, or inserts at the caret; one undo step.
  void InsertWire(const std::string& wire);
  /// Adds what was received to the end. Who looks at the end goes on seeing it. CR and LF may come
  /// one by one. An unattended line must not fill the memory: of more than 20000 characters the
  /// older half goes.
  void AppendWire(const std::string& wire);

 Q_SIGNALS:
  void Refused();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void insertFromMimeData(const QMimeData* source) override;
  QMimeData* createMimeDataFromSelection() const override;

 private:
  void DropOlderHalf();
};

/// The font of wire texts.
QFont WireFont();

/// A wire text as WireEdit shows it, and back; nothing for a text that cannot go on the wire.
QString GlyphText(const std::string& wire);
std::optional<std::string> WireOfGlyphs(const QString& glyphs);

}  // namespace kelvo

#pragma once

#include <QFont>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <optional>
#include <string>
#include <vector>

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

 protected:
  bool event(QEvent* event) override;
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
  /// one by one. An unattended line must not fill the memory: of what was received the newest 20000
  /// characters stay, or up to half as many more; what the operator has typed or loaded stays.
  void AppendWire(const std::string& wire);

 Q_SIGNALS:
  void Refused();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;
  QMimeData* createMimeDataFromSelection() const override;

 private:
  struct Run {
    int begin, end;
  };

  void NoteChange(int position, int removed, int added);
  void NoteReceived(int begin, int end);
  int ReceivedCount() const;
  bool ReceivedLast() const;
  void DropReceived(int count);

  std::vector<Run> received_;  // where received characters stand, in order
};

/// The font of wire texts.
QFont WireFont();

/// A wire text as WireEdit shows it, and back; nothing for a text that cannot go on the wire.
QString GlyphText(const std::string& wire);
std::optional<std::string> WireOfGlyphs(const QString& glyphs);

}  // namespace kelvo

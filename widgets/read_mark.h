#pragma once

#include <QLabel>
#include <string>

namespace kelvo {

/// Stands beside a value that the Terminal is asked for and says how the value came about: not at
/// all yet, read when, or what came in place of a good answer. What the field shows is not told by
/// it. It has room for any of these words from the start, so that nothing moves when they change;
/// where the window is too narrow for that, it shortens them, and its tool tip has them all.
class ReadMark : public QLabel {
 public:
  explicit ReadMark(const char* name, const QString& unread = {});

  /// Hides the label's, so that only a time that it shows itself can become another Terminal's.
  void setText(const QString& text) {
    time_.clear();
    why_.clear();
    Put(text);
  }
  void clear() { setText({}); }
  /// Somebody else listens now: a time that is shown is that of `who`.
  void Outdate(const QString& who);

  void ShowRead() { ShowTime(tr("gelesen %1")); }
  /// Nobody confirms what is set.
  void ShowSent() { ShowTime(tr("gesendet %1")); }
  /// What came in place of a good answer, UTF-8; empty when it was one.
  void Show(const std::string& failure) {
    failure.empty() ? ShowRead() : setText(QString::fromStdString(failure));
  }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void ShowTime(const QString& text);
  void Put(const QString& text);

  QString why_;   // what more the tool tip tells
  QString time_;  // that the text tells, of the Terminal that listens
};

}  // namespace kelvo

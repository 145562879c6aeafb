#pragma once

#include <QLabel>

namespace kelvo {

/// Stands beside a value that the Terminal is asked for and says how the value came about: not at
/// all yet, read when, or that nothing was answered. What the field shows is not told by it.
class ReadMark : public QLabel {
 public:
  explicit ReadMark(const char* name, const QString& unread = {});

  void ShowRead() { ShowTime(tr("gelesen %1")); }
  void ShowSet() { ShowTime(tr("gesetzt %1")); }
  void ShowSilent() { setText(tr("keine Antwort")); }
  /// By whether an answer came.
  void Show(bool answered) { answered ? ShowRead() : ShowSilent(); }

 private:
  void ShowTime(const QString& text);
};

}  // namespace kelvo

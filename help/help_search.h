#pragma once

#include <QString>
#include <QWidget>

class QHelpSearchEngine;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QUrl;

namespace kelvo {

/// The full-text search: a field, and the chapters that hold its words.
class HelpSearch : public QWidget {
  Q_OBJECT

 public:
  explicit HelpSearch(QHelpSearchEngine& engine, QWidget* parent = nullptr);

  /// Puts the cursor into the field.
  void Focus();

 Q_SIGNALS:
  /// A chapter was chosen; `word` is the first that was looked for.
  void Chosen(const QUrl& address, const QString& word);

 private:
  void Search();
  void Ask();
  void ShowResults(int count);

  QHelpSearchEngine& engine_;
  QString asked_;
  bool searching_ = false;
  bool waits_ = false;    // what was asked meanwhile is looked for next
  bool indexing_ = true;  // the index is made anew for each window
  QLineEdit* txtSuche = nullptr;
  QPushButton* cmdSuchen = nullptr;
  QListWidget* ctlTreffer = nullptr;
  QLabel* lblTreffer = nullptr;
};

}  // namespace kelvo

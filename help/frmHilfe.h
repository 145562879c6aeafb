#pragma once

#include <QMainWindow>
#include <memory>

#include "help/help_file.h"

class QAction;
class QHelpContentWidget;
class QHelpIndexWidget;
class QLineEdit;
class QTabWidget;

namespace kelvo {

class HelpBrowser;
class HelpSearch;

/// The help window: contents, keywords and full-text search on the left, the chapter on the right.
class frmHilfe : public QMainWindow {
  Q_OBJECT

 public:
  explicit frmHilfe(std::unique_ptr<HelpFile> file, QWidget* parent = nullptr);
  ~frmHilfe() override;

  void ShowContents();
  /// Ready to find something by its keyword.
  void ShowIndex();
  /// A chapter's file name, perhaps with an anchor; one that is not there changes nothing.
  void ShowChapter(const QString& chapter);
  /// Marks the row of the chapter shown that is about this message, and keeps it in view.
  void ShowMessage(const QString& message);

 private:
  QWidget* MakeContents();
  QWidget* MakeIndex();
  QWidget* MakeSearch();
  void MakeToolbar();
  QAction* AddCommand(const char* name, const QString& text, const QList<QKeySequence>& keys);
  void MarkInContents(const QUrl& address);
  void ShowPage(const QUrl& address, const QString& passage);
  void Turn(QWidget* page);

  std::unique_ptr<HelpFile> file_;
  QTabWidget* cmdHilfeTab = nullptr;
  QHelpContentWidget* ctlInhalt = nullptr;
  QWidget* indexPage_ = nullptr;
  QLineEdit* txtStichwort = nullptr;
  QHelpIndexWidget* ctlStichwoerter = nullptr;
  HelpSearch* search_ = nullptr;
  HelpBrowser* ctlSeite = nullptr;
};

}  // namespace kelvo

#pragma once

#include <QDialog>
#include <QSortFilterProxyModel>
#include <optional>

#include "project_page/import_model.h"
#include "project_page/project_desk.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

namespace kelvo {

class SideBySide;

/// Shows what an import would do, lets the operator decide, and does it.
class ImportDialog : public QDialog {
  Q_OBJECT

 public:
  explicit ImportDialog(ProjectServices services, QWidget* parent = nullptr);

  /// Compares a project with the database and shows the dialog.
  void Present(const QString& file, Project project);

 Q_SIGNALS:
  void Imported(const QString& file, const ImportDone& done);

 private:
  /// Rows that are not worth a look, unless the operator wants to see all.
  class Filter : public QSortFilterProxyModel {
   public:
    using QSortFilterProxyModel::QSortFilterProxyModel;
    void ShowAll(bool all);

   protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

   private:
    bool all_ = false;
  };

  QLayout* MakeTop();
  void MakeTable();
  QLayout* MakeChoices();
  QLayout* MakeExtras();
  QLayout* MakeButtons();
  void Compare();
  void ShowCurrent();
  void ShowSummary();
  void ShowExtras();
  int FirstRow() const;
  bool IsOpen(int shownRow) const;
  std::optional<int> CurrentRow() const;
  std::vector<int> SelectedRows() const;
  void ChooseSelected(ImportChoice choice);
  void TypeName(const QString& name);
  QString CountsText() const;
  QString FaultText() const;

  void cmdImportStand_Click();
  void cmdImportUebernehmen_Click() { ChooseSelected(ImportChoice::Take); }
  void cmdImportLassen_Click() { ChooseSelected(ImportChoice::Leave); }
  void cmdImportDaneben_Click() { ChooseSelected(ImportChoice::Beside); }
  void cmdImportOffene_Click();
  void cmdImportZeichnungen_Click();
  void cmdImportAusfuehren_Click();

  ProjectServices services_;
  QString file_;
  Project there_;
  std::optional<Project> base_;
  ImportModel model_;
  Filter shown_;
  QLabel* lblImportDatei;
  QLabel* lblImportStand;
  QCheckBox* chkImportGleiche;
  QTableView* ctlImport;
  QPushButton* cmdImportUebernehmen;
  QPushButton* cmdImportLassen;
  QPushButton* cmdImportDaneben;
  QPushButton* cmdImportOffene;
  QLineEdit* txtImportName;
  SideBySide* sides_;
  QCheckBox* chkImportBestand;
  QPushButton* cmdImportZeichnungen;
  QLabel* lblImport;
  QPushButton* cmdImportAusfuehren;
};

}  // namespace kelvo

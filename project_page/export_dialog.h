#pragma once

#include <QDialog>
#include <vector>

#include "project/project_store.h"
#include "project_page/project_desk.h"

class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace kelvo {

/// Chooses what of the operator's work goes into a project's file, and writes that.
class ExportDialog : public QDialog {
  Q_OBJECT

 public:
  explicit ExportDialog(ProjectServices services, QWidget* parent = nullptr);

  /// Reads anew what there is, everything ticked, and shows the dialog.
  void Present();

 Q_SIGNALS:
  void Finished(const QString& text);

 private:
  QLayout* MakeButtons();
  void Fill();
  QTreeWidgetItem* KindItem(ProjectKind kind);
  void AddEntry(ProjectKind kind, const QString& number, const QString& name, std::size_t index);
  void ShowKinds();
  void TickAll(bool ticked);
  void ShowCountSoon();
  void ShowCount();
  std::size_t Ticked() const;
  Project Chosen() const;
  void TakeTicked(Project& project, const QTreeWidgetItem& kindItem) const;

  void cmdExportAlles_Click() { TickAll(true); }
  void cmdExportNichts_Click() { TickAll(false); }
  void cmdExportZeichnung_Click();
  void cmdExportDatei_Click();

  ProjectServices services_;
  std::vector<RecordHere> records_;
  std::vector<ProjectDrawing> drawings_;
  std::vector<TerminalId> terminals_;  // that the journal tells of
  bool countWaits_ = false;
  QTreeWidget* ctlExport;
  QLabel* lblExport;
  QPushButton* cmdExportDatei;
};

}  // namespace kelvo

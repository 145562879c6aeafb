#pragma once

#include <QByteArray>
#include <QWidget>
#include <optional>

#include "base/operator.h"
#include "link/traffic_capture.h"
#include "shell/traffic_model.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

namespace kelvo {

/// The window "Datenverkehr": every entry of the record with its time, direction, meaning, what
/// came of it and its characters. The record goes on without it; it opens on what has been. A saved
/// capture is shown in the same way.
class TrafficView : public QWidget {
  Q_OBJECT

 public:
  /// Both must outlive it, but for its own destruction; it takes the record's listener.
  TrafficView(TrafficRecord& record, Operator& person, QWidget* parent);

  /// Comes to the front, also when it is open already.
  void Present();
  /// Leads to the newest failure of what is shown, and takes away whatever hides it.
  void ShowLastFailure();
  /// The same on the line, also while a file is shown.
  void ShowLastFailureOfLine();

  /// How wide the columns are.
  QByteArray Columns() const;
  void RestoreColumns(const QByteArray& columns);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  QWidget* MakeTable();
  QWidget* MakeChoice();
  QWidget* MakeButtons();
  const TrafficRecord& Shown() const;
  bool Paused() const;
  void ShowRecord();
  void Follow(TrafficRecord::Number changed);
  void ShowState();
  void Choose();
  void ShowFile(const std::string& path, Capture capture);
  std::vector<TrafficRecord::Number> Rows(bool selectedOnly) const;
  void cmdVerkehrStoerung_Click();
  void cmdVerkehrAlles_Click();
  void cmdVerkehrPause_Click();
  void cmdVerkehrKopieren_Click();
  void cmdVerkehrSpeichern_Click();
  void cmdVerkehrOeffnen_Click();
  void cmdVerkehrLeitung_Click();
  void cmdVerkehrLeeren_Click();

  TrafficRecord& record_;
  Operator& person_;
  std::optional<Capture> opened_;   // shown instead of the record
  TrafficRecord::Number from_ = 0;  // what is before it is hidden
  TrafficModel model_;
  TrafficFilter filter_;
  QTableView* ctlVerkehr;
  QLineEdit* txtVerkehrFilter;
  QComboBox* cboVerkehrArt;
  QComboBox* cboVerkehrRichtung;
  QPushButton* cmdVerkehrAlles;
  QPushButton* cmdVerkehrPause;
  QPushButton* cmdVerkehrLeitung;
  QLabel* lblVerkehr;
};

}  // namespace kelvo

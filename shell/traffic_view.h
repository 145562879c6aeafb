#pragma once

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>
#include <QWidget>

#include "base/operator.h"
#include "link/line_watch.h"
#include "shell/traffic_log.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

namespace kelvo {

class TrafficModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { Time, Way, Readable, Hex, Meaning, ColumnCount };

  void Add(Direction direction, std::string_view characters);
  void Clear();
  const TrafficEntry& Entry(int row) const { return log_.At(static_cast<std::size_t>(row)); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  TrafficLog log_;
};

class TrafficFilter : public QSortFilterProxyModel {
  Q_OBJECT

 public:
  /// Shows entries that hold `text` in any column, of one direction or (-1) of both.
  void SetFilter(const QString& text, int direction);

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

 private:
  QString text_;
  int direction_ = -1;
};

/// The window "Datenverkehr": every exchange with its time, direction, characters and meaning. It
/// listens only while it is open and not paused.
class TrafficView : public QWidget {
  Q_OBJECT

 public:
  TrafficView(LineWatch& line, Operator& person, QWidget* parent);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  QWidget* MakeControls();
  void Listen(bool on);
  void Add(Direction direction, std::string_view characters);
  void ShowState();
  std::string Lines(bool selectedOnly) const;
  void cmdVerkehrKopieren_Click();
  void cmdVerkehrSpeichern_Click();
  void cmdVerkehrLeeren_Click();

  bool listening_ = false;
  Operator& person_;
  TrafficModel model_;
  TrafficFilter filter_;
  QTableView* ctlVerkehr;
  QLineEdit* txtVerkehrFilter;
  QComboBox* cboVerkehrRichtung;
  QPushButton* cmdVerkehrPause;
  QLabel* lblVerkehr;
};

}  // namespace kelvo

#pragma once

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>
#include <optional>

#include "link/traffic_record.h"
#include "link/traffic_words.h"

namespace kelvo {

/// The entries of a record as rows.
class TrafficModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { Time, Way, Meaning, Took, Result, Readable, Hex, ColumnCount };
  using Number = TrafficRecord::Number;

  /// Shows what the record keeps from `from` on; with nullptr nothing.
  void Show(const TrafficRecord* record, Number from = 0);
  /// Goes after what the record has told; a new entry only when it `grows`.
  void Follow(Number changed, bool grows);
  /// Takes in all that is new.
  void Grow();

  Number NumberAt(int row) const { return begin_ + static_cast<Number>(row); }
  std::optional<int> RowOf(Number number) const;
  const TrafficRecord& Record() const { return *record_; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  /// What a cell shows.
  QString Cell(Number number, int column) const;

 private:
  void DropOld();
  void NoteChange(Number number);
  QString Hint(Number number) const;

  const TrafficRecord* record_ = nullptr;
  Number begin_ = 0;
  Number end_ = 0;
};

/// What of it is shown.
struct TrafficChoice {
  QString text;  ///< in any of the columns; empty for all
  std::optional<Direction> direction;
  std::optional<TrafficKind> kind;
  bool failuresAlone = false;

  bool All() const { return text.isEmpty() && !direction && !kind && !failuresAlone; }
};

class TrafficFilter : public QSortFilterProxyModel {
  Q_OBJECT

 public:
  void SetChoice(const TrafficChoice& choice);
  const TrafficChoice& Choice() const { return choice_; }

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

 private:
  const TrafficModel& Model() const;
  bool Mentioned(TrafficModel::Number number) const;
  bool MentionedByPartner(TrafficModel::Number number) const;

  TrafficChoice choice_;
};

}  // namespace kelvo

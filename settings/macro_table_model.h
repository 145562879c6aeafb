#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "settings/in_terminal.h"

namespace kelvo {

class Recordset;

/// A record of the table, as it is stored.
struct MacroInQuestion {
  std::string typ;
  std::string name;  ///< UTF-8
  int number = -1;   ///< in the Terminal
  std::string wire;
};
/// Tells how a record stands to the Terminal. Records without a number are not asked about.
using InTerminalOf = std::function<InTerminal(const MacroInQuestion& record)>;

/// The records of the table `Makro` as rows that can be searched and sorted. It holds what was read
/// once, so that neither a search nor a paint asks the database.
class MacroTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { Name, Number, Terminal, Length, Kind, ColumnCount };

  /// Takes up what the record set holds; false when that is what it has already. Always the same
  /// record set.
  bool Read(const Recordset& records);
  /// The bookmarks of the edited records.
  void Mark(const std::set<std::int64_t>& drafts);
  /// Shows the rows that hold this text in their name, number, kind or content, in whatever case;
  /// an empty one shows all.
  void Search(const QString& text);
  /// Without a function it is not known of any record.
  void SetInTerminal(InTerminalOf inTerminal);
  /// What the function tells may be different now.
  void TerminalChanged();

  /// The bookmark of a shown row, 0 for none; the shown row of a bookmark, -1 for none.
  std::int64_t BookmarkAt(int row) const;
  int RowOf(std::int64_t bookmark) const;
  int AllRows() const { return static_cast<int>(records_.size()); }
  /// The wire texts of the macros by their numbers; of equal ones the first.
  std::map<int, std::string> NumberedMacros() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  /// By one column; a negative one brings back the records' own order.
  void sort(int column, Qt::SortOrder order) override;

 private:
  struct Record {
    std::int64_t bookmark = 0;
    std::string name;
    int number = -1;
    std::string typ;
    std::string wert;  // UTF-8, as stored
    int length = 0;    // characters
  };

  static std::vector<Record> RecordsOf(const Recordset& records);
  std::vector<int> Shown() const;
  void Order(std::vector<int>& rows) const;
  void ShowAnew();
  void TellAll();
  bool Found(std::size_t record) const;
  InTerminal StateOf(const Record& record) const;
  QString Text(const Record& record, int column) const;

  std::vector<Record> records_;
  std::optional<std::uint64_t> revision_;  // of the record set, as it was read
  std::set<std::int64_t> drafts_;
  mutable std::vector<QString> searched_;  // of each record, made at the first search
  std::vector<int> shown_;                 // indexes of records_
  QString search_;
  int sortColumn_ = -1;
  Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
  InTerminalOf inTerminal_;
};

}  // namespace kelvo

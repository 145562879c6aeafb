#include "settings/macro_table_model.h"

#include <QCollator>
#include <algorithm>
#include <numeric>

#include "base/val.h"
#include "base/wire_text.h"
#include "store/recordset.h"

namespace kelvo {
namespace {

int Characters(const std::string& utf8) {
  return static_cast<int>(std::count_if(utf8.begin(), utf8.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

// In a narrow column; the option buttons have the plurals.
QString KindName(const std::string& typ) {
  if (typ == "MatrixTab") return MacroTableModel::tr("Matrix");
  if (typ == "ATTab") return MacroTableModel::tr("AT");
  return QString::fromStdString(typ);
}

QString StateName(InTerminal state) {
  switch (state) {
    case InTerminal::Same:
      return MacroTableModel::tr("gleich");
    case InTerminal::Changed:
      return MacroTableModel::tr("geändert");
    case InTerminal::Absent:
      return MacroTableModel::tr("nicht");
    case InTerminal::Unknown:
      break;
  }
  return MacroTableModel::tr("unbekannt");
}

// "Bild 9" comes before "Bild 10".
QCollator Alphabet() {
  QCollator alphabet{QLocale(QLocale::German)};
  alphabet.setNumericMode(true);
  alphabet.setCaseSensitivity(Qt::CaseInsensitive);
  return alphabet;
}

}  // namespace

std::vector<MacroTableModel::Record> MacroTableModel::RecordsOf(const Recordset& records) {
  std::vector<std::string> names = records.Column("Bezeichnung");
  std::vector<std::string> types = records.Column("typ");
  std::vector<std::string> texts = records.Column("wert");
  const std::vector<std::string> numbers = records.Column("nr_im_display");
  std::vector<Record> read(names.size());
  for (std::size_t i = 0; i < read.size(); ++i) {
    Record& record = read[i];
    record.bookmark = records.BookmarkAt(i);
    record.name = std::move(names[i]);
    record.number = numbers[i].empty() ? -1 : RoundToEven(Val(numbers[i]));
    record.typ = std::move(types[i]);
    record.wert = std::move(texts[i]);
    record.length = Characters(record.wert);
  }
  return read;
}

// The view keeps its place when the rows are the same ones.
bool MacroTableModel::Read(const Recordset& records) {
  if (revision_ == records.Revision()) return false;
  revision_ = records.Revision();
  std::vector<Record> read = RecordsOf(records);
  searched_.clear();
  const bool sameRows =
      std::equal(read.begin(), read.end(), records_.begin(), records_.end(),
                 [](const Record& a, const Record& b) { return a.bookmark == b.bookmark; });
  if (sameRows) {
    records_ = std::move(read);
    ShowAnew();
    TellAll();
    return true;
  }
  beginResetModel();
  records_ = std::move(read);
  shown_ = Shown();
  endResetModel();
  return true;
}

void MacroTableModel::Mark(const std::set<std::int64_t>& drafts) {
  if (drafts == drafts_) return;
  drafts_ = drafts;
  TellAll();
}

void MacroTableModel::TellAll() {
  if (rowCount() > 0) Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

void MacroTableModel::Search(const QString& text) {
  search_ = text.trimmed().toLower();
  ShowAnew();
}

void MacroTableModel::sort(int column, Qt::SortOrder order) {
  sortColumn_ = column;
  sortOrder_ = order;
  ShowAnew();
}

void MacroTableModel::ShowAnew() {
  std::vector<int> rows = Shown();
  if (rows == shown_) return;
  beginResetModel();
  shown_ = std::move(rows);
  endResetModel();
}

void MacroTableModel::SetInTerminal(InTerminalOf inTerminal) {
  inTerminal_ = std::move(inTerminal);
  TerminalChanged();
}

void MacroTableModel::TerminalChanged() {
  if (sortColumn_ == Terminal) ShowAnew();
  if (rowCount() > 0) Q_EMIT dataChanged(index(0, Terminal), index(rowCount() - 1, Terminal));
}

std::vector<int> MacroTableModel::Shown() const {
  std::vector<int> rows;
  rows.reserve(records_.size());
  for (std::size_t i = 0; i < records_.size(); ++i) {
    if (search_.isEmpty() || Found(i)) rows.push_back(static_cast<int>(i));
  }
  Order(rows);
  return rows;
}

bool MacroTableModel::Found(std::size_t record) const {
  if (searched_.empty()) {
    searched_.reserve(records_.size());
    for (const Record& some : records_) {
      searched_.push_back(
          QString::fromStdString(some.name + "\n" + std::to_string(some.number) + "\n" + some.wert)
              .append(u'\n' + KindName(some.typ))
              .toLower());
    }
  }
  return searched_[record].contains(search_);
}

void MacroTableModel::Order(std::vector<int>& rows) const {
  if (sortColumn_ < 0) return;
  const auto by = [&](const auto& key) {
    std::vector<decltype(key(records_[0]))> keys;
    keys.reserve(records_.size());
    for (const Record& record : records_) keys.push_back(key(record));
    std::stable_sort(rows.begin(), rows.end(), [&](int a, int b) {
      const auto& first = keys[static_cast<std::size_t>(a)];
      const auto& second = keys[static_cast<std::size_t>(b)];
      return sortOrder_ == Qt::AscendingOrder ? first < second : second < first;
    });
  };
  switch (sortColumn_) {
    case Name: {
      const QCollator alphabet = Alphabet();
      return by(
          [&](const Record& some) { return alphabet.sortKey(QString::fromStdString(some.name)); });
    }
    case Number:
      return by([](const Record& some) { return some.number; });
    case Kind:
      return by([](const Record& some) { return KindName(some.typ); });
    case Length:
      return by([](const Record& some) { return some.length; });
    default:
      return by([this](const Record& some) { return StateOf(some); });
  }
}

InTerminal MacroTableModel::StateOf(const Record& record) const {
  if (!inTerminal_ || record.number < 0) return InTerminal::Unknown;
  return inTerminal_({record.typ, record.name, record.number, WireText(record.wert).value_or("")});
}

std::int64_t MacroTableModel::BookmarkAt(int row) const {
  if (row < 0 || row >= rowCount()) return 0;
  return records_[static_cast<std::size_t>(shown_[static_cast<std::size_t>(row)])].bookmark;
}

int MacroTableModel::RowOf(std::int64_t bookmark) const {
  const auto found = std::find_if(shown_.begin(), shown_.end(), [&](int record) {
    return records_[static_cast<std::size_t>(record)].bookmark == bookmark;
  });
  return found == shown_.end() ? -1 : static_cast<int>(found - shown_.begin());
}

std::map<int, std::string> MacroTableModel::NumberedMacros() const {
  std::map<int, std::string> texts;
  for (const Record& some : records_) {
    if (some.number < 0 || some.typ != "Makro" || texts.contains(some.number)) continue;
    texts.emplace(some.number, WireText(some.wert).value_or(""));
  }
  return texts;
}

int MacroTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int MacroTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QString MacroTableModel::Text(const Record& record, int column) const {
  switch (column) {
    case Name:
      return (drafts_.contains(record.bookmark) ? QStringLiteral("* ") : QString()) +
             QString::fromStdString(record.name);
    case Number:
      return record.number < 0 ? QString() : QString::number(record.number);
    case Kind:
      return KindName(record.typ);
    case Length:
      return QString::number(record.length);
    default:
      return StateName(StateOf(record));
  }
}

QVariant MacroTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const int column = index.column();
  const Record& record =
      records_[static_cast<std::size_t>(shown_[static_cast<std::size_t>(index.row())])];
  switch (role) {
    case Qt::DisplayRole:
      return Text(record, column);
    case Qt::ToolTipRole:
      return column == Name ? Text(record, column) : QVariant();
    case Qt::TextAlignmentRole:
      return QVariant(Qt::AlignVCenter |
                      (column == Number || column == Length ? Qt::AlignRight : Qt::AlignLeft));
    default:
      return {};
  }
}

QVariant MacroTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  const QString names[] = {tr("Bezeichnung"), tr("Nr"), tr("im Terminal"), tr("Zeichen"),
                           tr("Art")};
  return names[section];
}

}  // namespace kelvo

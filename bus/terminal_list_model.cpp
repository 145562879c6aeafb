#include "bus/terminal_list_model.h"

#include <algorithm>

#include "bus/addresses.h"
#include "bus/terminal_search.h"
#include "widgets/texts.h"

namespace kelvo {
namespace {

constexpr const char* kFields[] = {"Adresse", "Bezeichnung", "aktiv", "Checksum"};

bool IsYesNo(int column) {
  return column == TerminalListModel::Aktiv || column == TerminalListModel::Checksum;
}

}  // namespace

TerminalListModel::TerminalListModel(Recordset& terminals, QObject* parent)
    : QAbstractTableModel(parent), terminals_(terminals) {
  ReadRows();
}

void TerminalListModel::Reload() {
  try {
    terminals_.Refresh();
  } catch (const StoreError&) {
    ShowRecords();
    throw;
  }
  ShowRecords();
}

void TerminalListModel::ShowRecords() {
  beginResetModel();
  ReadRows();
  endResetModel();
}

void TerminalListModel::ReloadNow() {
  terminals_.TryRefresh();
  ShowRecords();
}

void TerminalListModel::ReadRows() { rows_ = ListedTerminals(terminals_); }

int TerminalListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int TerminalListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant TerminalListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return QString::fromUtf8(kFields[section]);
}

QVariant TerminalListModel::data(const QModelIndex& index, int role) const {
  const StoredTerminal& row = rows_[static_cast<std::size_t>(index.row())];
  const bool yes = index.column() == Aktiv ? row.active : row.checksum;
  if (role == Qt::CheckStateRole && IsYesNo(index.column())) {
    return yes ? Qt::Checked : Qt::Unchecked;
  }
  if (role == Qt::ToolTipRole && row.address == kNoAddress) {
    return tr("Als Adresse ist keine Zahl von 0 bis %1 gespeichert: An dieses Terminal wird nichts "
              "gesendet, bis es eine hat.")
        .arg(kLastBusAddress);
  }
  if (role != Qt::DisplayRole && role != Qt::EditRole) return {};
  if (index.column() == Adresse && row.address == kNoAddress) return tr("?");
  if (IsYesNo(index.column())) return Text(YesNoText(yes));
  if (index.column() == Adresse) return QString::number(row.address);
  return Text(row.name);
}

Qt::ItemFlags TerminalListModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  return flags | (IsYesNo(index.column()) ? Qt::ItemIsUserCheckable : Qt::ItemIsEditable);
}

bool TerminalListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  const int row = index.row();
  if (IsYesNo(index.column())) {
    if (role != Qt::CheckStateRole) return false;
    const bool yes = value.toInt() == Qt::Checked;
    return Store(row, kFields[index.column()], std::int64_t{yes});
  }
  if (role != Qt::EditRole || value == data(index, role)) return false;
  if (index.column() == Adresse) {
    const std::optional<int> address = ReadAddress(value.toString(), row);
    return address && Store(row, kFields[Adresse], std::int64_t{*address});
  }
  return Store(row, kFields[Bezeichnung], value.toString().toStdString());
}

std::optional<int> TerminalListModel::ReadAddress(const QString& text, int ownRow) {
  bool isNumber = false;
  const int address = text.trimmed().toInt(&isNumber);
  if (!isNumber || address < 0 || address > kLastBusAddress) {
    Q_EMIT Refused(tr("\"%1\" ist keine Adresse (0 … %2).").arg(text).arg(kLastBusAddress));
    return std::nullopt;
  }
  const int other = RowOf(address);
  if (other >= 0 && other != ownRow) {
    Q_EMIT Refused(tr("Die Adresse %1 hat schon das Terminal \"%2\".")
                       .arg(address)
                       .arg(Text(rows_[static_cast<std::size_t>(other)].name)));
    return std::nullopt;
  }
  return address;
}

int TerminalListModel::RowOf(int address) const {
  const auto row = std::find_if(rows_.begin(), rows_.end(), [address](const StoredTerminal& r) {
    return r.address == address;
  });
  return row == rows_.end() ? -1 : static_cast<int>(row - rows_.begin());
}

int TerminalListModel::FreeAddress() const {
  int address = 0;
  while (address < kLastBusAddress && RowOf(address) >= 0) ++address;
  return address;
}

bool TerminalListModel::Store(int row, const char* field, const Value& value) {
  try {
    terminals_.MoveTo(static_cast<std::size_t>(row));
    terminals_.Edit();
    terminals_.Set(field, value);
    terminals_.Update();
  } catch (const std::exception& error) {
    // Not here, where a view still edits the row.
    QMetaObject::invokeMethod(this, &TerminalListModel::ReloadNow, Qt::QueuedConnection);
    Q_EMIT Refused(QString::fromUtf8(error.what()));
    return false;
  }
  // The order stays until the list is read anew, so that no row jumps away under the cursor.
  ReadRows();
  Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
  return true;
}

}  // namespace kelvo

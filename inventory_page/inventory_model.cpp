#include "inventory_page/inventory_model.h"

#include <QFont>
#include <algorithm>

#include "inventory/statement_words.h"
#include "widgets/texts.h"

namespace kelvo {
namespace {

// What was written there and acknowledged last, whatever has become of it.
const Held* LastWritten(const InventoryModel::Row& row) {
  if (row.held) return &*row.held;
  return row.doubt && row.doubt->before ? &*row.doubt->before : nullptr;
}

QString RestsText(const InventoryModel::Row& row) {
  if (!row.doubt) return Text(RestsWords(*row.held));
  const QString words = Text(RestsWords(*row.doubt));
  return row.doubt->before
             ? InventoryModel::tr("ungewiss: %1, %2").arg(words, MomentText(row.doubt->time))
             : words;
}

QString RestsTip(const InventoryModel::Row& row) {
  if (row.doubt && row.doubt->at && row.doubt->event == Event::Acknowledged) {
    return InventoryModel::tr(
               "Das Terminal mit der Adresse %1 hat es bestätigt. Ob es dasselbe ist, das jetzt "
               "zuhört, weiß kelvo nicht.")
        .arg(*row.doubt->at);
  }
  if (row.doubt && row.doubt->before) {
    return InventoryModel::tr(
        "Name, Zeichen und Zeit sind die des zuletzt bestätigten Schreibens. Seither ist etwas "
        "geschehen, dessen Ausgang nicht bekannt ist: Was jetzt unter dieser Nummer liegt, weiß "
        "kelvo nicht.");
  }
  if (row.doubt) {
    return InventoryModel::tr(
        "Es wurde etwas begonnen, dessen Ausgang nicht bekannt ist: Was unter "
        "dieser Nummer liegt, weiß kelvo nicht.");
  }
  if (row.held->broadcast) {
    return InventoryModel::tr(
        "An alle Terminals der Leitung zugleich geschrieben; bestätigt hat es "
        "mindestens eines von ihnen.");
  }
  return row.held->proof == Proof::Checksum
             ? InventoryModel::tr("Vom Terminal bestätigt, und die Prüfsumme stimmte.")
             : InventoryModel::tr("Vom Terminal bestätigt.");
}

QString AgainstTip(Against::Kind kind) {
  switch (kind) {
    case Against::Kind::Same:
      return InventoryModel::tr(
          "Der Satz der Datenbank gleicht dem, was zuletzt von hier "
          "geschrieben wurde. Was an kelvo vorbei geschah, sieht kelvo nicht.");
    case Against::Kind::Changed:
      return InventoryModel::tr("Der Satz in der Datenbank ist heute ein anderer.");
    case Against::Kind::NotInDatabase:
      return InventoryModel::tr("Kein Satz der Datenbank hat diesen Inhalt oder Namen.");
    case Against::Kind::Unknown:
      break;
  }
  return InventoryModel::tr("Dazu kann kelvo nichts sagen.");
}

}  // namespace

QString MomentText(JournalTime time) { return Text(LocalMoment(time)); }

void InventoryModel::Show(const Inventory& inventory, const std::vector<StoredRecord>& records,
                          bool listens) {
  beginResetModel();
  listens_ = listens;
  rows_.clear();
  for (const auto& [key, held] : inventory.Items()) {
    rows_.push_back({key, held, {}, AgainstDatabase(inventory, held, records)});
  }
  for (const auto& [key, doubt] : inventory.Doubtful()) rows_.push_back({key, {}, doubt, {}});
  std::sort(rows_.begin(), rows_.end(),
            [](const Row& one, const Row& other) { return one.key < other.key; });
  endResetModel();
}

int InventoryModel::RowOf(const ItemKey& key) const {
  const auto row =
      std::find_if(rows_.begin(), rows_.end(), [&key](const Row& one) { return one.key == key; });
  return row == rows_.end() ? -1 : static_cast<int>(row - rows_.begin());
}

int InventoryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int InventoryModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant InventoryModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  switch (section) {
    case Kind:
      return tr("Art");
    case Number:
      return tr("Nr");
    case Name:
      return tr("Name");
    case Bytes:
      return tr("Zeichen");
    case Time:
      return tr("geschrieben");
    case Rests:
      return tr("Nachweis");
    default:
      return tr("Datenbank");
  }
}

QString InventoryModel::Cell(int row, int column) const {
  const Row& shown = At(row);
  const Held* const written = LastWritten(shown);
  switch (column) {
    case Kind:
      return Text(ItemKindText(shown.key.kind));
    case Number:
      return shown.key.kind == ItemKind::Config ? QString() : QString::number(shown.key.number);
    case Name:
      return written != nullptr ? Text(written->item.name) : QString();
    case Bytes: {
      const bool counts = written != nullptr && shown.key.kind != ItemKind::Config;
      return counts ? QString::number(ItemBytes(written->item)) : QString();
    }
    case Time:
      return MomentText(written != nullptr ? written->written : shown.doubt->time);
    case Rests:
      return RestsText(shown);
    default:
      return shown.against.kind == Against::Kind::Same && !listens_
                 ? tr("wie zuletzt geschrieben")
                 : Text(AgainstText(shown.against.kind));
  }
}

// The cell itself may be cut off.
QString InventoryModel::Tip(int row, int column) const {
  const QString text = Cell(row, column);
  if (column == Rests) return text + u'\n' + RestsTip(At(row));
  return column == Database ? text + u'\n' + AgainstTip(At(row).against.kind) : text;
}

QVariant InventoryModel::SortKey(const Row& row, int column) const {
  const Held* const written = LastWritten(row);
  switch (column) {
    case Number:
      return row.key.kind == ItemKind::Config ? -1 : row.key.number;
    case Bytes:
      return written != nullptr ? static_cast<int>(ItemBytes(written->item)) : -1;
    case Time:
      return qint64{
          (written != nullptr ? written->written : row.doubt->time).time_since_epoch().count()};
    default:
      return Cell(static_cast<int>(&row - rows_.data()), column);
  }
}

QVariant InventoryModel::data(const QModelIndex& index, int role) const {
  const Row& row = At(index.row());
  const int column = index.column();
  switch (role) {
    case Qt::DisplayRole:
      return Cell(index.row(), column);
    case kSortRole:
      return SortKey(row, column);
    case Qt::TextAlignmentRole:
      if (column == Number || column == Bytes) {
        return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
      }
      return {};
    case Qt::ToolTipRole:
      return Tip(index.row(), column);
    case Qt::FontRole: {
      const bool plain = row.against.kind == Against::Kind::Same || column != Database;
      QFont font;
      font.setBold(true);
      return plain ? QVariant() : QVariant(font);
    }
    default:
      return {};
  }
}

}  // namespace kelvo

#include "project_page/import_model.h"

#include <QFont>

namespace kelvo {
namespace {

const ProjectRecord& RecordOf(const ImportItem& item) {
  return item.there ? *item.there : item.here->record;
}

// Under another name it has here, that stands in front. Quotes show blanks at a name's ends.
QString NameText(const ImportItem& item) {
  const std::string name = NameOf(RecordOf(item));
  const QString there = QString::fromStdString(name);
  if (!item.here || !item.there) {
    return WithoutOuterBlanks(name) == name ? there : QStringLiteral("„%1“").arg(there);
  }
  const QString here = QString::fromStdString(NameOf(item.here->record));
  if (here == there) return there;
  const bool sameKey = NameKeyOf(item.here->record) == NameKeyOf(*item.there);
  return (sameKey ? QStringLiteral("„%1“ ← „%2“") : QStringLiteral("%1 ← %2")).arg(here, there);
}

}  // namespace

void ImportModel::Show(ImportPlan plan) {
  beginResetModel();
  plan_ = std::move(plan);
  faults_ = plan_.NameFaults();
  endResetModel();
}

QString ImportModel::Fault(int row) const {
  return QString::fromStdString(faults_[static_cast<std::size_t>(row)]);
}

bool ImportModel::IsOpen(int row) const {
  return Item(row).choice == ImportChoice::Open || !faults_[static_cast<std::size_t>(row)].empty();
}

std::size_t ImportModel::Open() const {
  std::size_t open = 0;
  for (int row = 0; row < rowCount(); ++row) open += IsOpen(row) ? 1 : 0;
  return open;
}

std::size_t ImportModel::Changes() const {
  std::size_t changes = 0;
  for (int row = 0; row < rowCount(); ++row) {
    const ImportChoice choice = Item(row).choice;
    const bool wanted = choice == ImportChoice::Take || choice == ImportChoice::Beside;
    changes += wanted && !IsOpen(row) ? 1 : 0;
  }
  return changes;
}

// What becomes of one row may give or take another one's name.
void ImportModel::Decided() {
  faults_ = plan_.NameFaults();
  if (rowCount() > 0) Q_EMIT dataChanged(index(0, Choice), index(rowCount() - 1, Choice));
}

void ImportModel::Choose(const std::vector<int>& rows, ImportChoice choice) {
  for (const int row : rows) {
    ImportItem& item = plan_.items[static_cast<std::size_t>(row)];
    if (item.MayChoose(choice)) item.choice = choice;
  }
  Decided();
}

void ImportModel::SetBesideName(int row, const std::string& name) {
  plan_.items[static_cast<std::size_t>(row)].besideName = WithoutOuterBlanks(name);
  Decided();
}

int ImportModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(plan_.items.size());
}

int ImportModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant ImportModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  switch (section) {
    case Kind:
      return tr("Art");
    case Number:
      return tr("Nummer");
    case Name:
      return tr("Bezeichnung");
    case Found:
      return tr("Vergleich");
    default:
      return tr("Was geschieht");
  }
}

QVariant ImportModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const ImportItem& item = Item(index.row());
  switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
      if (index.column() == Choice && !Fault(index.row()).isEmpty()) {
        return QStringLiteral("? ") + Fault(index.row());
      }
      return Text(item, index.column());
    case Qt::TextAlignmentRole:
      if (index.column() == Number) return QVariant(Qt::AlignRight | Qt::AlignVCenter);
      return {};
    case Qt::FontRole: {
      QFont font;
      font.setBold(true);
      return IsOpen(index.row()) && index.column() == Choice ? QVariant(font) : QVariant();
    }
    default:
      return {};
  }
}

QString ImportModel::Text(const ImportItem& item, int column) const {
  const auto number = NumberOf(RecordOf(item));
  switch (column) {
    case Kind:
      return QString::fromUtf8(RowOf(item.kind).noun);
    case Number:
      return number && *number >= 0 ? QString::number(*number) : QString();
    case Name:
      return NameText(item);
    case Found:
      return QString::fromStdString(FindingText(item.finding));
    default:
      return ChoiceText(item);
  }
}

QString ImportModel::ChoiceText(const ImportItem& item) const {
  switch (item.choice) {
    case ImportChoice::Open:
      return tr("? zu entscheiden");
    case ImportChoice::Leave:
      return item.finding == Finding::Equal ? QString() : tr("bleibt, wie es hier ist");
    case ImportChoice::Take:
      if (!item.result) return tr("wird gelöscht");
      return item.here ? tr("wird überschrieben") : tr("kommt dazu");
    case ImportChoice::Beside:
      break;
  }
  return RowOf(item.kind).name
             ? tr("kommt dazu als „%1“").arg(QString::fromStdString(item.besideName))
             : tr("kommt dazu unter der nächsten Nummer");
}

}  // namespace kelvo

#include "inventory_page/comparison_model.h"

#include <QFont>

#include "base/wire_text.h"
#include "inventory/statement_words.h"
#include "inventory/terminal_name.h"
#include "inventory_page/inventory_model.h"
#include "widgets/texts.h"

namespace kelvo {
namespace {

QString ReadText(const ComparisonRow& row) {
  if (!row.readAt) return {};
  return ComparisonModel::tr("%1 (%2)").arg(Text(ReadableText(row.read)), MomentText(*row.readAt));
}

QString WrittenText(const ComparisonRow& row) {
  if (!row.sent.empty()) return ComparisonModel::tr("%1 (gesendet)").arg(Text(row.sent));
  if (!row.written) return {};
  const QString name = Text(row.written->item.name);
  if (row.written->item.key.kind == ItemKind::Config) {  // it has none
    return ComparisonModel::tr("%1, %2").arg(MomentText(row.written->written),
                                             Text(ProofWords(row.written->proof)));
  }
  return ComparisonModel::tr("%1 (%2, %3)")
      .arg(name.isEmpty() ? ComparisonModel::tr("ohne Namen") : name,
           MomentText(row.written->written), Text(ProofWords(row.written->proof)));
}

// The sign makes a difference stand out without any colour.
QString ResultText(const ComparisonRow& row) {
  const QString sign = row.compared == Compared::Different ? QStringLiteral("≠ ")
                       : row.compared == Compared::Same    ? QStringLiteral("= ")
                       : row.compared == Compared::Unknown ? QStringLiteral("? ")
                                                           : QString();
  const QString before =
      row.readBefore.empty()
          ? QString()
          : ComparisonModel::tr(", vorher %1").arg(Text(ReadableText(row.readBefore)));
  const QString silent =
      row.silentAt ? QStringLiteral(" (%1)").arg(MomentText(*row.silentAt)) : QString();
  return sign + Text(row.words) + silent + before;
}

}  // namespace

void ComparisonModel::Show(std::vector<ComparisonRow> rows,
                           std::function<std::string(int address)> nameOf) {
  beginResetModel();
  rows_ = std::move(rows);
  nameOf_ = std::move(nameOf);
  endResetModel();
}

QString ComparisonModel::TerminalText(const TerminalId& terminal) const {
  return Text(TerminalName(nameOf_(terminal.address), terminal.address));
}

QString ComparisonModel::Cell(int row, int column) const {
  const ComparisonRow& shown = rows_[static_cast<std::size_t>(row)];
  switch (column) {
    case Terminal:
      return TerminalText(shown.terminal);
    case What:
      return Text(shown.what);
    case Read:
      return ReadText(shown);
    case Written:
      return WrittenText(shown);
    case Record:
      return Text(shown.database);
    default:
      return ResultText(shown);
  }
}

QString ComparisonModel::Report(const std::function<bool(int row)>& shown) const {
  QString report;
  for (int row = -1; row < rowCount(); ++row) {
    if (row >= 0 && !shown(row)) continue;
    QStringList cells;
    for (int column = 0; column < ColumnCount; ++column) {
      cells << (row < 0 ? headerData(column, Qt::Horizontal, Qt::DisplayRole).toString()
                        : Cell(row, column));
    }
    report += cells.join(u'\t') + u'\n';
  }
  return report;
}

int ComparisonModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ComparisonModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant ComparisonModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  static const char* const titles[] = {"Terminal",  "Was",      "Gelesen", "Zuletzt geschrieben",
                                       "Datenbank", "Vergleich"};
  return tr(titles[section]);
}

QVariant ComparisonModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole) return Cell(index.row(), index.column());
  const auto& row = rows_[static_cast<std::size_t>(index.row())];
  if (role != Qt::FontRole || row.compared != Compared::Different) return {};
  QFont bold;
  bold.setBold(true);
  return bold;
}

}  // namespace kelvo

#include "shell/traffic_model.h"

#include <QApplication>
#include <QPalette>
#include <algorithm>

#include "base/wire_text.h"
#include "link/traffic_capture.h"
#include "widgets/texts.h"
#include "widgets/wire_field.h"

namespace kelvo {
namespace {

// No screen is as wide as what these take.
constexpr std::size_t kShownCharacters = 400;
constexpr int kCommandsInHint = 30;
constexpr std::size_t kCharactersInHint = 1000;

QString Shown(const TrafficRecord& record, TrafficRecord::Number number,
              std::string (*form)(std::string_view), std::size_t limit) {
  const QString text = Text(form(record.Characters(number, limit)));
  return record.At(number).length > limit ? text + QStringLiteral(" …") : text;
}

// Beside the sign in the text, and readable on light and dark.
QColor FailureColour() {
  const bool dark = QApplication::palette().color(QPalette::Base).lightness() < 128;
  return dark ? QColor(255, 140, 120) : QColor(180, 20, 0);
}

}  // namespace

void TrafficModel::Show(const TrafficRecord* record, Number from) {
  beginResetModel();
  record_ = record;
  begin_ = end_ = 0;
  if (record != nullptr) {
    end_ = record->End();
    begin_ = std::clamp(from, record->Begin(), end_);
  }
  endResetModel();
}

void TrafficModel::Follow(Number changed, bool grows) {
  if (record_ == nullptr) return;
  DropOld();
  if (grows) Grow();
  NoteChange(changed);
  // Whether it is shown may depend on its answer.
  if (const auto sent = record_->Sent(changed)) NoteChange(*sent);
}

void TrafficModel::Grow() {
  if (record_ == nullptr || record_->End() <= end_) return;
  DropOld();
  const int rows = rowCount();
  beginInsertRows({}, rows, rows + static_cast<int>(record_->End() - end_) - 1);
  end_ = record_->End();
  endInsertRows();
}

void TrafficModel::NoteChange(Number number) {
  const auto row = RowOf(number);
  if (row) Q_EMIT dataChanged(index(*row, 0), index(*row, ColumnCount - 1));
}

// What the record has dropped is gone already; these rows are not asked for any more.
void TrafficModel::DropOld() {
  if (record_->Begin() <= begin_) return;
  const Number kept = std::min(record_->Begin(), end_);
  if (kept > begin_) beginRemoveRows({}, 0, static_cast<int>(kept - begin_) - 1);
  const bool removes = kept > begin_;
  begin_ = record_->Begin();
  end_ = std::max(end_, begin_);
  if (removes) endRemoveRows();
}

std::optional<int> TrafficModel::RowOf(Number number) const {
  if (number < begin_ || number >= end_) return std::nullopt;
  return static_cast<int>(number - begin_);
}

int TrafficModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(end_ - begin_);
}

int TrafficModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QString TrafficModel::Cell(Number number, int column) const {
  const TrafficEntry& entry = record_->At(number);
  switch (column) {
    case Time:
      return Text(ClockText(entry.time));
    case Way:
      return Text(DirectionText(entry.direction));
    case Meaning:
      return Text(TrafficWords(*record_, number));
    case Took:
      return Text(DurationWords(entry));
    case Result: {
      const QString result = Text(ResultWords(*record_, number));
      return IsFailure(*record_, number) ? QStringLiteral("⚠ ") + result : result;
    }
    case Readable:
      return Shown(*record_, number, ReadableText, kShownCharacters);
    default:
      return Shown(*record_, number, HexText, kShownCharacters);
  }
}

QString TrafficModel::Hint(Number number) const {
  return Text(DateText(record_->At(number).time)) + u'\n' +
         Text(TrafficWords(*record_, number, kCommandsInHint))
             .replace(QStringLiteral("; "), QStringLiteral("\n")) +
         u'\n' + Shown(*record_, number, ReadableText, kCharactersInHint);
}

QVariant TrafficModel::data(const QModelIndex& index, int role) const {
  const Number number = NumberAt(index.row());
  if (record_ == nullptr || number < record_->Begin()) return {};
  switch (role) {
    case Qt::DisplayRole:
      return Cell(number, index.column());
    case Qt::ToolTipRole:
      return Hint(number);
    case Qt::FontRole:
      if (index.column() == Readable || index.column() == Hex) return WireFont();
      return {};
    case Qt::TextAlignmentRole:
      if (index.column() == Took) return QVariant(Qt::AlignRight | Qt::AlignVCenter);
      return {};
    case Qt::ForegroundRole:
      if (IsFailure(*record_, number)) return FailureColour();
      return {};
    default:
      return {};
  }
}

QVariant TrafficModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
  const QStringList titles{tr("Zeit"),     tr("Richtung"), tr("Bedeutung"),  tr("Dauer"),
                           tr("Ergebnis"), tr("Zeichen"),  tr("Hexadezimal")};
  return titles.value(section);
}

void TrafficFilter::SetChoice(const TrafficChoice& choice) {
  choice_ = choice;
  invalidateFilter();
}

const TrafficModel& TrafficFilter::Model() const {
  return static_cast<const TrafficModel&>(*sourceModel());
}

bool TrafficFilter::filterAcceptsRow(int row, const QModelIndex&) const {
  const TrafficModel::Number number = Model().NumberAt(row);
  const TrafficRecord& record = Model().Record();
  if (number < record.Begin()) return false;
  if (choice_.direction && record.At(number).direction != *choice_.direction) return false;
  if (choice_.kind && KindOf(record, number) != *choice_.kind) return false;
  if (choice_.failuresAlone && !IsFailure(record, number)) return false;
  return choice_.text.isEmpty() || Mentioned(number) || MentionedByPartner(number);
}

// What is searched for may stand in the question alone, or in its answer alone; both are shown.
bool TrafficFilter::MentionedByPartner(TrafficModel::Number number) const {
  const TrafficRecord& record = Model().Record();
  if (record.At(number).direction == Direction::FromTerminal) {
    const auto sent = record.Sent(number);
    return sent && KindOf(record, number) != TrafficKind::Unasked && Mentioned(*sent);
  }
  for (auto next = number + 1; next < record.End(); ++next) {
    if (record.At(next).direction == Direction::ToTerminal) return false;
    if (KindOf(record, next) != TrafficKind::Unasked && Mentioned(next)) return true;
  }
  return false;
}

bool TrafficFilter::Mentioned(TrafficModel::Number number) const {
  for (const int column :
       {TrafficModel::Meaning, TrafficModel::Result, TrafficModel::Readable, TrafficModel::Hex}) {
    if (Model().Cell(number, column).contains(choice_.text, Qt::CaseInsensitive)) return true;
  }
  return false;
}

}  // namespace kelvo

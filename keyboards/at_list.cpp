#include "keyboards/at_list.h"

#include <QApplication>
#include <QKeyEvent>
#include <algorithm>

#include "widgets/wire_field.h"

namespace kelvo {
namespace {

bool IsOld(int column) { return column == AtList::OldKey || column == AtList::OldCode; }
bool IsKey(int column) { return column == AtList::OldKey || column == AtList::NewKey; }

QString Character(int code) { return QString(QChar(static_cast<char16_t>(code))); }

QString CellText(int code, bool isKey, bool forReading) {
  if (!isKey) return QString::number(code);
  return forReading ? GlyphText(std::string(1, static_cast<char>(code))) : Character(code);
}

// The code that was typed as a character or as a decimal number.
std::optional<int> TypedCode(const QString& text, bool isKey) {
  if (isKey) {
    if (text.size() != 1 || text.front().unicode() > 255) return std::nullopt;
    return text.front().unicode();
  }
  bool isNumber = false;
  const uint code = text.trimmed().toUInt(&isNumber);
  return isNumber && code <= 255 ? std::optional(static_cast<int>(code)) : std::nullopt;
}

}  // namespace

void AtList::SetPairs(AtPairs pairs) {
  beginResetModel();
  pairs_ = std::move(pairs);
  typedOld_.reset();
  typedNew_.reset();
  endResetModel();
  Q_EMIT Edited();
}

void AtList::Enter(AtPair pair) {
  AtPairs entered = pairs_;
  EnterPair(entered, pair);
  const bool grows = entered.size() > pairs_.size();
  // The row that was typed in becomes the pair and keeps the cursor; the empty one is new.
  if (grows) beginInsertRows({}, rowCount(), rowCount());
  pairs_ = std::move(entered);
  if (grows) endInsertRows();
  Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
  Q_EMIT Edited();
}

QModelIndex AtList::MissingCell() const {
  return index(rowCount() - 1, typedOld_ ? NewKey : OldKey);
}

void AtList::Remove(int row) {
  if (row < 0 || row >= rowCount()) return;
  if (row == rowCount() - 1) {
    typedOld_.reset();
    typedNew_.reset();
    return Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
  }
  beginRemoveRows({}, row, row);
  pairs_.erase(pairs_.begin() + row);
  endRemoveRows();
  Q_EMIT Edited();
}

int AtList::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(pairs_.size()) + 1;
}

int AtList::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

std::optional<int> AtList::Code(const QModelIndex& index) const {
  const bool isOld = IsOld(index.column());
  if (index.row() == rowCount() - 1) return isOld ? typedOld_ : typedNew_;
  const AtPair& pair = pairs_[static_cast<std::size_t>(index.row())];
  return isOld ? pair.oldCode : pair.newCode;
}

QVariant AtList::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::TextAlignmentRole) return int{Qt::AlignCenter};
  if (role != Qt::DisplayRole && role != Qt::EditRole) return {};
  const std::optional<int> code = Code(index);
  if (!code) return {};
  return CellText(*code, IsKey(index.column()), role == Qt::DisplayRole);
}

QVariant AtList::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::DisplayRole) return IsKey(section) ? tr("Taste") : tr("Hex-Code");
  if (role != Qt::ToolTipRole) return {};
  // The title says hexadecimal and the column shows decimal numbers; it has always done so.
  const QString what = IsKey(section) ? tr("das Zeichen") : tr("sein Code, dezimal");
  return (IsOld(section) ? tr("Zu ändernde Taste: %1") : tr("Neue Taste: %1")).arg(what);
}

Qt::ItemFlags AtList::flags(const QModelIndex& index) const {
  return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
}

bool AtList::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || role != Qt::EditRole) return false;
  const QString text = value.toString();
  if (text.isEmpty() || text == data(index, Qt::EditRole).toString()) return false;
  const bool isKey = IsKey(index.column());
  const std::optional<int> code = TypedCode(text, isKey);
  if (!code) {
    Q_EMIT Refused(isKey ? tr("Hier steht genau ein Zeichen, das das Terminal hat.")
                         : tr("Ein Code ist eine Zahl von 0 bis 255."));
    return false;
  }
  const bool isOld = IsOld(index.column());
  return index.row() == rowCount() - 1 ? Type(isOld, *code) : Change(index.row(), isOld, *code);
}

bool AtList::Change(int row, bool isOld, int code) {
  AtPair& pair = pairs_[static_cast<std::size_t>(row)];
  if (isOld && std::any_of(pairs_.begin(), pairs_.end(),
                           [code](const AtPair& other) { return other.oldCode == code; })) {
    Q_EMIT Refused(tr("Für den Code %1 gibt es schon eine Zeile.").arg(code));
    return false;
  }
  (isOld ? pair.oldCode : pair.newCode) = code;
  Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
  Q_EMIT Edited();
  return true;
}

bool AtList::Type(bool isOld, int code) {
  (isOld ? typedOld_ : typedNew_) = code;
  const int row = rowCount() - 1;
  Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
  if (!typedOld_ || !typedNew_) return true;
  const AtPair pair{*typedOld_, *typedNew_};
  typedOld_.reset();
  typedNew_.reset();
  Enter(pair);
  return true;
}

QWidget* AtListDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                      const QModelIndex&) const {
  auto* const field = new WireField(parent);
  field->setFrame(false);
  connect(field, &WireField::Refused, this, &AtListDelegate::Refused);
  return field;
}

bool AtListDelegate::eventFilter(QObject* editor, QEvent* event) {
  auto* const field = qobject_cast<QWidget*>(editor);
  const int key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event)->key() : 0;
  if (field == nullptr || (key != Qt::Key_Up && key != Qt::Key_Down)) {
    return TameDelegate::eventFilter(editor, event);
  }
  QWidget* const list = field->parentWidget()->parentWidget();
  Q_EMIT commitData(field);
  Q_EMIT closeEditor(field);
  QApplication::sendEvent(list, event);
  return true;
}

}  // namespace kelvo

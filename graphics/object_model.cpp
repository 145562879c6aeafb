#include "graphics/object_model.h"

#include <QGuiApplication>
#include <QIODevice>
#include <QMimeData>
#include <QPalette>
#include <algorithm>
#include <utility>

#include "graphics/editing.h"
#include "graphics/object_names.h"
#include "widgets/symbol.h"

namespace kelvo {

namespace {

constexpr std::size_t kObjectsAStep = 50;
constexpr std::chrono::milliseconds kSearchDelay(150);  // not while something is dragged
const QString kRowsMimeType = QStringLiteral("application/x-kelvo-object-rows");

Symbol SymbolOf(Kind kind) {
  switch (kind) {
    case Kind::Line:
      return Symbol::Line;
    case Kind::Rectangle:
      return Symbol::Rectangle;
    case Kind::Ellipse:
      return Symbol::Ellipse;
    case Kind::Vertices:
    case Kind::Polyline:
      return Symbol::Polyline;
    case Kind::Picture:
      return Symbol::Picture;
    case Kind::Text:
      return Symbol::Letter;
    case Kind::Group:
      break;
  }
  return Symbol::Group;
}

}  // namespace

ObjectModel::ObjectModel(const DrawingDocument& document, const Counting& counting,
                         MakeSearch makeSearch, QObject* parent)
    : QAbstractListModel(parent),
      document_(document),
      counting_(counting),
      makeSearch_(std::move(makeSearch)) {
  connect(&searching_, &QTimer::timeout, this, &ObjectModel::SearchOn);
}

void ObjectModel::Refresh() {
  SetCount(static_cast<int>(document_.Shown().size()));
  if (count_ > 0) Q_EMIT dataChanged(index(0), index(count_ - 1));
  search_.reset();
  searching_.start(kSearchDelay);
}

// Rows come and go at the end, so that the view stays where it is.
void ObjectModel::SetCount(int count) {
  if (count > count_) {
    beginInsertRows({}, count_, count - 1);
    count_ = count;
    endInsertRows();
  } else if (count < count_) {
    beginRemoveRows({}, count, count_ - 1);
    count_ = count;
    endRemoveRows();
  }
}

void ObjectModel::SearchOn() {
  if (!search_) {
    search_ = makeSearch_();
    search_->Begin(document_.Shown(), document_.Above());
    searching_.start(0);
  }
  if (!search_->Step(kObjectsAStep)) return;
  searching_.stop();
  if (std::exchange(sights_, search_->Found()) == sights_ || count_ == 0) return;
  Q_EMIT dataChanged(index(0), index(count_ - 1));
}

int ObjectModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count_; }

const DrawingObject* ObjectModel::ObjectAtRow(const QModelIndex& index) const {
  const Drawing& drawing = document_.Shown();
  const auto row = static_cast<std::size_t>(index.row());
  return index.isValid() && row < drawing.size() ? &drawing[row] : nullptr;
}

Sight ObjectModel::SightOf(std::size_t row) const {
  return row < sights_.size() ? sights_[row] : Sight::Seen;
}

QVariant ObjectModel::data(const QModelIndex& index, int role) const {
  const DrawingObject* const object = ObjectAtRow(index);
  if (object == nullptr) return {};
  const auto row = static_cast<std::size_t>(index.row());
  switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
      return TextOf(*object, row);
    case Qt::DecorationRole:
      return SymbolIcon(SymbolOf(object->kind));
    case Qt::ForegroundRole:
      if (SightOf(row) == Sight::Seen) return {};
      return QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
    default:
      return {};
  }
}

QString ObjectModel::TextOf(const DrawingObject& object, std::size_t row) const {
  QStringList parts = {QString::fromStdString(NameOf(object, counting_))};
  const bool erases = object.penMode == PenMode::Erase && object.kind != Kind::Group;
  if (erases) parts << tr("löscht");
  if (object.kind == Kind::Vertices) {
    parts << tr("wird nicht gesendet");
  } else if (SightOf(row) == Sight::Covered) {
    parts << tr("verdeckt");
  } else if (SightOf(row) == Sight::Nothing) {
    parts << tr("nicht auf der Anzeige");
  }
  return parts.join(QStringLiteral(" · "));
}

// Dropped between rows, not on them.
Qt::ItemFlags ObjectModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::ItemIsDropEnabled;
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled |
         Qt::ItemNeverHasChildren;
}

QStringList ObjectModel::mimeTypes() const { return {kRowsMimeType}; }

// What moves is what is selected in the drawing.
QMimeData* ObjectModel::mimeData(const QModelIndexList&) const {
  auto* data = new QMimeData;
  data->setData(kRowsMimeType, {});
  return data;
}

bool ObjectModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int,
                               const QModelIndex& parent) {
  if (action != Qt::MoveAction || !data->hasFormat(kRowsMimeType) || parent.isValid()) return false;
  Q_EMIT MoveWanted(static_cast<std::size_t>(row < 0 ? count_ : row));
  return true;
}

}  // namespace kelvo

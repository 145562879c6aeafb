#pragma once

#include <QAbstractListModel>
#include <QTimer>
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "graphics/counting.h"
#include "graphics/drawing_document.h"
#include "graphics/object_sight.h"

namespace kelvo {

/// The objects that are edited, the lowest first: the whole drawing's, or those of the open group.
/// A name is made when its row is painted; what cannot be seen is searched for a little at a time.
class ObjectModel : public QAbstractListModel {
  Q_OBJECT

 public:
  using MakeSearch = std::function<std::unique_ptr<SightSearch>()>;

  /// Document and counting must outlive the model; `makeSearch` gives a search for the display of
  /// now.
  ObjectModel(const DrawingDocument& document, const Counting& counting, MakeSearch makeSearch,
              QObject* parent = nullptr);

  /// Takes over what the drawing is now.
  void Refresh();

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                    const QModelIndex& parent) override;

 Q_SIGNALS:
  /// The selected objects were dropped in front of the one that is now at `row`.
  void MoveWanted(std::size_t row);

 private:
  const DrawingObject* ObjectAtRow(const QModelIndex& index) const;
  QString TextOf(const DrawingObject& object, std::size_t row) const;
  Sight SightOf(std::size_t row) const;
  void SetCount(int count);
  void SearchOn();

  const DrawingDocument& document_;
  const Counting& counting_;
  MakeSearch makeSearch_;
  int count_ = 0;
  std::unique_ptr<SightSearch> search_;
  std::vector<Sight> sights_;  // as they were found last
  QTimer searching_;
};

}  // namespace kelvo

#pragma once

#include <QObject>
#include <vector>

class QAbstractItemView;
class QHeaderView;

namespace kelvo {

/// Fits the columns of a table into its view: each is as wide as its texts, and where they have no
/// room some yield, the first ones first, down to what must be read of them; where even that has no
/// room, the table is scrolled. What the operator has set stays.
class ColumnFit : public QObject {
  Q_OBJECT

 public:
  struct Yielding {
    int column;
    QString least;  ///< as wide as this it stays, also where its texts are wider
  };
  /// Of a table or a tree, with its horizontal header.
  ColumnFit(QAbstractItemView* view, QHeaderView* header, std::vector<Yielding> yielding);

  /// The texts are other ones now.
  void Fit();
  /// The same, once for all that change in this turn of the event loop.
  void FitSoon();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  int Title(int column) const;
  int Wanted(int column) const;
  std::vector<int> Widths(int* over) const;

  QAbstractItemView& view_;
  QHeaderView& header_;
  const std::vector<Yielding> yielding_;
  bool fitting_ = false;
  bool set_ = false;
  bool soon_ = false;
};

}  // namespace kelvo

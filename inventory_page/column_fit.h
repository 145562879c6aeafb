#pragma once

#include <QObject>
#include <vector>

class QTableView;

namespace kelvo {

/// Keeps all columns of a table in view: each is as wide as its texts, and where they have no room
/// some yield, the first ones first. What the operator has set stays.
class ColumnFit : public QObject {
  Q_OBJECT

 public:
  ColumnFit(QTableView* table, std::vector<int> yielding);

  /// The texts are other ones now.
  void Fit();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  int Least(int column) const;
  int Wanted(int column) const;

  QTableView& table_;
  const std::vector<int> yielding_;
  bool fitting_ = false;
  bool set_ = false;
};

}  // namespace kelvo

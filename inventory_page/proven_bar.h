#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "base/operator.h"
#include "inventory/write_run.h"

class QLabel;
class QPushButton;

namespace kelvo {

class WriteDesk;

/// What stands beside a page's button that writes: the same with a proof, to the Terminal that is
/// selected and to many, and what came of it.
class ProvenBar : public QWidget {
  Q_OBJECT

 public:
  /// What the page would write; nothing when its checks have refused it, which has been said.
  using Order = std::function<std::optional<WriteOrder>()>;

  /// `what` stands in the controls' names: cmdSetMakroGeprueft, cmdSetMakroAktive,
  /// lblMakroGeprueft.
  ProvenBar(const char* what, WriteDesk& desk, Operator& person, Order order);

 private:
  void Write();
  void WriteToMany();
  void ClearOutdated();
  bool Outdated() const;

  /// What the result that is shown tells of.
  struct Told {
    std::optional<int> address;
    ItemKey key;
    std::size_t entries = 0;  ///< of the journal, until then
  };

  WriteDesk& desk_;
  Order order_;
  std::optional<Told> told_;
  QPushButton* one_;
  QPushButton* many_;
  QLabel* result_;
};

}  // namespace kelvo

#pragma once

#include <QListWidget>
#include <vector>

#include "settings/macro_check.h"

namespace kelvo {

/// The remarks on a text, the worst standing out.
class RemarkList : public QListWidget {
  Q_OBJECT

 public:
  explicit RemarkList(QWidget* parent = nullptr);

  void Show(std::vector<Remark> remarks);
  /// Chooses the next remark behind this place, or the last one in front of it; round the ends.
  void GoOnFrom(std::size_t position, bool backwards);

 Q_SIGNALS:
  void Chosen(const kelvo::Remark& remark);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void Fill();
  void Choose(int row);
  int RowBehind(std::size_t position) const;
  bool IsChosenAt(std::size_t position) const;

  std::vector<Remark> remarks_;
};

}  // namespace kelvo

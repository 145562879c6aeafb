#include "settings/remark_list.h"

#include <QEvent>
#include <algorithm>

#include "settings/macro_highlighter.h"
#include "widgets/contrast.h"

namespace kelvo {
namespace {

// More of them nobody reads; the list must not hold up the typing.
constexpr std::size_t kMostRemarks = 100;

QString SeverityName(Severity severity) {
  switch (severity) {
    case Severity::Error:
      return RemarkList::tr("Fehler");
    case Severity::Warning:
      return RemarkList::tr("Warnung");
    case Severity::Hint:
      break;
  }
  return RemarkList::tr("Hinweis");
}

bool Same(const std::vector<Remark>& a, const std::vector<Remark>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Remark& x, const Remark& y) {
    return x.severity == y.severity && x.position == y.position && x.text == y.text;
  });
}

}  // namespace

RemarkList::RemarkList(QWidget* parent) : QListWidget(parent) {
  setAccessibleName(tr("Anmerkungen zum Text"));
  setToolTip(tr("Klick oder Eingabe springt zur Stelle; F8 zur nächsten Anmerkung."));
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWordWrap(true);
  connect(this, &QListWidget::itemClicked, this,
          [this](QListWidgetItem* item) { Choose(row(item)); });
  connect(this, &QListWidget::itemActivated, this,
          [this](QListWidgetItem* item) { Choose(row(item)); });
  Fill();
}

// The same again keeps the chosen row.
void RemarkList::Show(std::vector<Remark> remarks) {
  if (remarks.size() > kMostRemarks) remarks.resize(kMostRemarks);
  const bool same = Same(remarks, remarks_);
  remarks_ = std::move(remarks);
  if (!same) Fill();
}

void RemarkList::Fill() {
  clear();
  for (const Remark& remark : remarks_) {
    auto* const item = new QListWidgetItem(tr("%1, Zeichen %2: %3")
                                               .arg(SeverityName(remark.severity))
                                               .arg(remark.position + 1)
                                               .arg(QString::fromStdString(remark.text)),
                                           this);
    if (remark.severity != Severity::Hint) {
      item->setForeground(SeverityColour(remark.severity, palette()));
    }
  }
  if (!remarks_.empty()) return;
  auto* const none = new QListWidgetItem(tr("Keine Anmerkungen zu diesem Text."), this);
  none->setFlags(Qt::NoItemFlags);
  none->setForeground(FaintText(palette()));
}

void RemarkList::Choose(int row) {
  if (row < 0 || static_cast<std::size_t>(row) >= remarks_.size()) return;
  setCurrentRow(row);
  const Remark remark = remarks_[static_cast<std::size_t>(row)];
  Q_EMIT Chosen(remark);
}

// Several remarks may be on one place; the chosen one says which of them was the last.
int RemarkList::RowBehind(std::size_t position) const {
  if (IsChosenAt(position)) return currentRow() + 1;
  const auto found = std::find_if(remarks_.begin(), remarks_.end(), [position](const Remark& some) {
    return some.position >= position;
  });
  return static_cast<int>(found - remarks_.begin());
}

bool RemarkList::IsChosenAt(std::size_t position) const {
  const auto row = static_cast<std::size_t>(std::max(currentRow(), 0));
  return currentRow() >= 0 && row < remarks_.size() && remarks_[row].position == position;
}

void RemarkList::GoOnFrom(std::size_t position, bool backwards) {
  if (remarks_.empty()) return;
  const auto count = static_cast<int>(remarks_.size());
  const int behind = RowBehind(position);
  const int before = IsChosenAt(position) ? currentRow() - 1 : behind - 1;
  Choose(backwards ? (before + count) % count : behind % count);
}

void RemarkList::changeEvent(QEvent* event) {
  QListWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) Fill();
}

}  // namespace kelvo

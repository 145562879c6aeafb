#include "help/help_search.h"

#include <QHBoxLayout>
#include <QHelpSearchEngine>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>
#include <utility>

#include "widgets/form.h"

namespace kelvo {
namespace {

constexpr int kMostResults = 100;
// Each word costs the engine time, and nobody can hurry it.
constexpr int kLongestText = 200;
constexpr qsizetype kMostWords = 12;

QStringList WordsOf(const QString& text) {
  QStringList words = text.split(u' ', Qt::SkipEmptyParts);
  words.removeDuplicates();
  return words;
}

// Each word as it stands, whatever its characters mean to the engine; the beginning of a word is
// enough.
QString Query(const QString& text) {
  QStringList terms;
  for (QString word : WordsOf(text).mid(0, kMostWords)) {
    terms << u'"' + word.replace(u'"', QStringLiteral("\"\"")) + QStringLiteral("\"*");
  }
  return terms.join(u' ');
}

}  // namespace

HelpSearch::HelpSearch(QHelpSearchEngine& engine, QWidget* parent)
    : QWidget(parent), engine_(engine) {
  txtSuche = Named(new QLineEdit, "txtSuche");
  txtSuche->setClearButtonEnabled(true);
  txtSuche->setMaxLength(kLongestText);
  cmdSuchen = MakeButton("cmdSuchen", tr("&Suchen"));
  ctlTreffer = Named(new QListWidget, "ctlTreffer");
  ctlTreffer->setAccessibleName(tr("Gefundene Kapitel"));
  lblTreffer = Named(new QLabel, "lblTreffer");
  lblTreffer->setWordWrap(true);
  auto* row = new QHBoxLayout;
  row->addWidget(txtSuche, 1);
  row->addWidget(cmdSuchen);
  auto* column = new QVBoxLayout(this);
  column->addWidget(LabelFor(txtSuche, tr("Wörter im &Text:")));
  column->addLayout(row);
  column->addWidget(ctlTreffer, 1);
  column->addWidget(lblTreffer);

  connect(txtSuche, &QLineEdit::returnPressed, this, &HelpSearch::Search);
  connect(cmdSuchen, &QPushButton::clicked, this, &HelpSearch::Search);
  connect(ctlTreffer, &QListWidget::itemActivated, this, [this](const QListWidgetItem* item) {
    Q_EMIT Chosen(item->data(Qt::UserRole).toUrl(), WordsOf(asked_).value(0));
  });
  connect(ctlTreffer, &QListWidget::itemClicked, ctlTreffer, &QListWidget::itemActivated);
  connect(&engine_, &QHelpSearchEngine::searchingFinished, this, [this](int count) {
    searching_ = false;
    if (std::exchange(waits_, false)) return Ask();
    if (!asked_.isEmpty()) ShowResults(count);
  });
  // What was asked before the index was complete is asked again.
  connect(&engine_, &QHelpSearchEngine::indexingFinished, this, [this] {
    indexing_ = false;
    Ask();
  });
  engine_.reindexDocumentation();
}

void HelpSearch::Focus() {
  txtSuche->setFocus();
  txtSuche->selectAll();
}

void HelpSearch::Search() {
  asked_ = txtSuche->text().trimmed();
  ctlTreffer->clear();
  lblTreffer->clear();
  Ask();
}

void HelpSearch::Ask() {
  if (asked_.isEmpty()) return;
  if (indexing_) return lblTreffer->setText(tr("Das Verzeichnis der Wörter entsteht noch …"));
  // The engine would keep the window waiting until it has finished the one before.
  waits_ = searching_;
  if (searching_) return;
  searching_ = true;
  engine_.search(Query(asked_));
}

void HelpSearch::ShowResults(int count) {
  ctlTreffer->clear();
  for (const QHelpSearchResult& result : engine_.searchResults(0, std::min(count, kMostResults))) {
    auto* item = new QListWidgetItem(result.title(), ctlTreffer);
    item->setData(Qt::UserRole, result.url());
  }
  const int found = ctlTreffer->count();
  QString words = found == 0   ? tr("In keinem Kapitel stehen alle diese Wörter.")
                  : found == 1 ? tr("1 Kapitel gefunden.")
                               : tr("%1 Kapitel gefunden.").arg(found);
  if (WordsOf(asked_).size() > kMostWords) {
    words += u' ' + tr("Gesucht wurden die ersten %1 Wörter.").arg(kMostWords);
  }
  lblTreffer->setText(words);
}

}  // namespace kelvo

#include "shell/history_view.h"

#include <QApplication>
#include <QClipboard>
#include <QDateTime>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/form.h"

namespace kelvo {
namespace {

QString TimeText(const Chronicle::Line& line) {
  const QDateTime time = QDateTime::fromMSecsSinceEpoch(line.time.time_since_epoch().count());
  return time.toString(QStringLiteral("HH:mm:ss"));
}

}  // namespace

QString HistoryWords(const Chronicle::Line& line) {
  return (line.failed ? QStringLiteral("✗ ") : QStringLiteral("✓ ")) +
         QString::fromStdString(line.text);
}

HistoryView::HistoryView(const Chronicle& chronicle, QWidget* parent)
    : QWidget(parent, Qt::Window), chronicle_(chronicle) {
  Named(this, "frmVerlauf");
  setWindowTitle(tr("Verlauf"));
  ctlVerlauf = Named(new QListWidget, "ctlVerlauf");
  ctlVerlauf->setAccessibleName(tr("Die letzten Vorgänge"));
  ctlVerlauf->setWordWrap(true);
  auto* copy = MakeButton("cmdVerlaufKopieren", tr("&Kopieren"),
                          tr("Legt alle Zeilen in die Zwischenablage."));
  auto* column = new QVBoxLayout(this);
  column->addWidget(ctlVerlauf, 1);
  column->addLayout(ButtonRow({copy}));
  resize(fontMetrics().averageCharWidth() * 80, fontMetrics().lineSpacing() * 20);
  CloseByEscape(this);
  connect(copy, &QPushButton::clicked, this, [this] {
    QStringList lines;
    for (int row = 0; row < ctlVerlauf->count(); ++row) lines << ctlVerlauf->item(row)->text();
    QApplication::clipboard()->setText(lines.join(u'\n'));
  });
}

void HistoryView::Refresh() {
  if (!isVisible()) return;
  ctlVerlauf->clear();
  for (const Chronicle::Line& line : chronicle_.Lines()) {
    ctlVerlauf->addItem(TimeText(line) + QStringLiteral("  ") + HistoryWords(line));
  }
  ctlVerlauf->scrollToBottom();
}

void HistoryView::Present() {
  show();
  raise();
  activateWindow();
  Refresh();
}

}  // namespace kelvo

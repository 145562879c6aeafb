#include "help/frmHilfe.h"

#include <QAction>
#include <QHelpContentWidget>
#include <QHelpIndexWidget>
#include <QHelpLink>
#include <QHelpSearchEngine>
#include <QLineEdit>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>
#include <QToolBar>
#include <QVBoxLayout>

#include "help/help_browser.h"
#include "help/help_search.h"
#include "widgets/form.h"
#include "widgets/window_size.h"

namespace kelvo {

frmHilfe::frmHilfe(std::unique_ptr<HelpFile> file, QWidget* parent)
    : QMainWindow(parent), file_(std::move(file)) {
  Named(this, "frmHilfe");
  setWindowTitle(tr("Hilfe"));
  ctlSeite = Named(new HelpBrowser(*file_), "ctlSeite");
  ctlSeite->setAccessibleName(tr("Kapitel"));
  cmdHilfeTab = Named(new QTabWidget, "cmdHilfeTab");
  cmdHilfeTab->setAccessibleName(tr("Wege zum Kapitel"));
  cmdHilfeTab->addTab(MakeContents(), tr("&Inhalt"));
  cmdHilfeTab->addTab(MakeIndex(), tr("Stich&wörter"));
  cmdHilfeTab->addTab(MakeSearch(), tr("Te&xtsuche"));
  auto* halves = new QSplitter;
  halves->addWidget(cmdHilfeTab);
  halves->addWidget(ctlSeite);
  halves->setStretchFactor(1, 1);
  const int em = fontMetrics().averageCharWidth();
  halves->setSizes({em * 46, em * 114});
  setCentralWidget(halves);
  MakeToolbar();
  connect(ctlSeite, &QTextBrowser::sourceChanged, this, &frmHilfe::MarkInContents);
  connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this,
          &QWidget::close);
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this,
          [this] { Turn(search_); });
  ResizeWithinScreen(this, {em * 160, fontMetrics().lineSpacing() * 44});
  ctlSeite->setSource(file_->Page(QStringLiteral("index.html")));
}

// The views let go of the engine's models before the engine goes.
frmHilfe::~frmHilfe() { delete takeCentralWidget(); }

QWidget* frmHilfe::MakeContents() {
  ctlInhalt = Named(file_->Engine().contentWidget(), "ctlInhalt");
  ctlInhalt->setAccessibleName(tr("Inhalt"));
  connect(ctlInhalt, &QHelpContentWidget::linkActivated, ctlSeite,
          [this](const QUrl& address) { ctlSeite->setSource(address); });
  connect(ctlInhalt, &QAbstractItemView::clicked, ctlInhalt, &QAbstractItemView::activated);
  connect(file_->Engine().contentModel(), &QHelpContentModel::contentsCreated, this, [this] {
    ctlInhalt->expandAll();
    MarkInContents(ctlSeite->source());
  });
  return ctlInhalt;
}

QWidget* frmHilfe::MakeIndex() {
  indexPage_ = new QWidget;
  txtStichwort = Named(new QLineEdit, "txtStichwort");
  txtStichwort->setClearButtonEnabled(true);
  ctlStichwoerter = Named(file_->Engine().indexWidget(), "ctlStichwoerter");
  ctlStichwoerter->setAccessibleName(tr("Stichwörter"));
  auto* column = new QVBoxLayout(indexPage_);
  column->addWidget(LabelFor(txtStichwort, tr("Stichw&ort:")));
  column->addWidget(txtStichwort);
  column->addWidget(ctlStichwoerter, 1);
  connect(txtStichwort, &QLineEdit::textChanged, this,
          [this](const QString& text) { ctlStichwoerter->filterIndices(text); });
  connect(txtStichwort, &QLineEdit::returnPressed, ctlStichwoerter,
          &QHelpIndexWidget::activateCurrentItem);
  connect(ctlStichwoerter, &QAbstractItemView::clicked, ctlStichwoerter,
          &QHelpIndexWidget::activateCurrentItem);
  // Each keyword of the manual leads to one place.
  connect(ctlStichwoerter, &QHelpIndexWidget::documentActivated, this,
          [this](const QHelpLink& place) { ctlSeite->setSource(place.url); });
  return indexPage_;
}

QWidget* frmHilfe::MakeSearch() {
  search_ = new HelpSearch(*file_->Engine().searchEngine());
  connect(search_, &HelpSearch::Chosen, this, &frmHilfe::ShowPage);
  return search_;
}

QAction* frmHilfe::AddCommand(const char* name, const QString& text,
                              const QList<QKeySequence>& keys) {
  auto* command = Named(new QAction(text, this), name);
  command->setShortcuts(keys);
  command->setToolTip(
      QStringLiteral("%1 (%2)").arg(text, keys.first().toString(QKeySequence::NativeText)));
  return command;
}

void frmHilfe::MakeToolbar() {
  auto* bar = Named(addToolBar(tr("Blättern")), "barHilfe");
  bar->setMovable(false);
  QAction* const back =
      AddCommand("cmdHilfeZurueck", tr("Zurück"),
                 {QKeySequence(Qt::ALT | Qt::Key_Left), QKeySequence(Qt::Key_Back)});
  QAction* const forward =
      AddCommand("cmdHilfeVor", tr("Vor"),
                 {QKeySequence(Qt::ALT | Qt::Key_Right), QKeySequence(Qt::Key_Forward)});
  QAction* const start =
      AddCommand("cmdHilfeStart", tr("Übersicht"), {QKeySequence(Qt::ALT | Qt::Key_Home)});
  QAction* const larger =
      AddCommand("cmdHilfeGroesser", tr("Größer"),
                 {QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)});
  QAction* const smaller =
      AddCommand("cmdHilfeKleiner", tr("Kleiner"), {QKeySequence(Qt::CTRL | Qt::Key_Minus)});
  bar->addActions({back, forward, start});
  bar->addSeparator();
  bar->addActions({larger, smaller});
  back->setEnabled(false);
  forward->setEnabled(false);
  connect(ctlSeite, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
  connect(ctlSeite, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
  connect(back, &QAction::triggered, ctlSeite, &QTextBrowser::backward);
  connect(forward, &QAction::triggered, ctlSeite, &QTextBrowser::forward);
  connect(start, &QAction::triggered, this, [this] { ShowChapter(QStringLiteral("index.html")); });
  connect(larger, &QAction::triggered, ctlSeite, [this] { ctlSeite->zoomIn(); });
  connect(smaller, &QAction::triggered, ctlSeite, [this] { ctlSeite->zoomOut(); });
}

void frmHilfe::MarkInContents(const QUrl& address) {
  const QModelIndex place = ctlInhalt->indexOf(address.adjusted(QUrl::RemoveFragment));
  if (place.isValid()) ctlInhalt->setCurrentIndex(place);
}

void frmHilfe::Turn(QWidget* page) {
  cmdHilfeTab->setCurrentWidget(page);
  if (page == search_) {
    search_->Focus();
  } else {
    (page == indexPage_ ? static_cast<QWidget*>(txtStichwort) : ctlInhalt)->setFocus();
  }
}

void frmHilfe::ShowContents() {
  Turn(ctlInhalt);
  ShowChapter(QStringLiteral("index.html"));
}

void frmHilfe::ShowIndex() {
  Turn(indexPage_);
  txtStichwort->selectAll();
}

void frmHilfe::ShowChapter(const QString& chapter) {
  const QUrl address = file_->Page(chapter);
  if (address.isEmpty()) return;
  ctlSeite->setSource(address);
  if (address.hasFragment()) ctlSeite->ShowPlace(address.fragment());
}

void frmHilfe::ShowMessage(const QString& message) { ctlSeite->ShowMessage(message); }

void frmHilfe::ShowPage(const QUrl& address, const QString& passage) {
  ctlSeite->setSource(address);
  if (passage.isEmpty()) return;
  ctlSeite->moveCursor(QTextCursor::Start);
  ctlSeite->find(passage);
}

}  // namespace kelvo

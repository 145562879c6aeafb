#include <QApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>

#include "base/guard.h"
#include "help/help_desk.h"
#include "shell/drawing_desk.h"
#include "shell/frmhaupt.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/name_list.h"
#include "widgets/symbol.h"
#include "widgets/tame_text.h"

namespace kelvo {
namespace {

// The generic commands. The numbers are those of the toolbar's buttons.
constexpr int kButtonReset = 0;
constexpr int kButtonBitmapToEEprom = 1;
constexpr int kButtonSaveAsText = 2;
constexpr int kButtonNew = 6;
constexpr int kButtonLoad = 7;
constexpr int kButtonSave = 8;
constexpr int kGapBeforeReset = 9;
constexpr int kButtonSend = 10;
constexpr int kButtonSaveAsMakro = 11;
constexpr int kButtonDelete = 12;

QWidget* MakeSpace() {
  auto* space = new QWidget;
  space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  return space;
}

}  // namespace

// What is not in this table does nothing.
std::span<const frmhaupt::Command> frmhaupt::Commands() {
  using enum Tab;
  static constexpr Command commands[] = {
      {kButtonReset, {}, "cmdToolbar", [](frmhaupt& w) { w.ResetAll(); }, true},
      {kButtonBitmapToEEprom,
       {},
       "SaveBMPinEEProm",
       [](frmhaupt& w) { w.desk_->SaveBMPinEEProm(); },
       true},
      {kButtonSaveAsText, Drawing, "SaveasText", [](frmhaupt& w) { w.desk_->SaveAsText(); }},
      {kButtonNew, Drawing, "cmdToolbar", [](frmhaupt& w) { w.desk_->NewDrawing(); }},
      {kButtonLoad, Drawing, "cmdToolbar", [](frmhaupt& w) { w.desk_->Editor().LoadDrawing(); }},
      {kButtonSave, Drawing, "cmdToolbar", [](frmhaupt& w) { w.desk_->Editor().SaveDrawing(); }},
      {kButtonSend, Drawing, "send", [](frmhaupt& w) { w.desk_->Send(); }, true},
      {kButtonSaveAsMakro, Drawing, "SaveMakro", [](frmhaupt& w) { w.desk_->SaveAsMakro(); }},
      {kButtonDelete, Drawing, "cmdToolbar",
       [](frmhaupt& w) { w.desk_->Editor().DeleteSelection(); }},
      {kButtonNew, AtKeyboard, "NewATTab", [](frmhaupt& w) { w.at_->NewATTab(); }},
      {kButtonNew, MatrixKeyboard, "NewTastTab", [](frmhaupt& w) { w.matrix_->NewTastTab(); }},
      {kButtonNew, Macros, "NewMakro", [](frmhaupt& w) { w.macros_->NewMakro(); }},
      {kButtonSave, AtKeyboard, "SaveATTab", [](frmhaupt& w) { w.at_->SaveATTab(); }},
      {kButtonSave, MatrixKeyboard, "SaveTastTab", [](frmhaupt& w) { w.matrix_->SaveTastTab(); }},
      {kButtonSave, Macros, "SaveMakro", [](frmhaupt& w) { w.macros_->SaveShown(); }},
      {kButtonSaveAsMakro, Tab::Text, "SaveMakro",
       [](frmhaupt& w) { w.SaveAsMakro(w.text_->TextModeCommand()); }},
      {kButtonSaveAsMakro, AtKeyboard, "SaveMakro",
       [](frmhaupt& w) {
         w.at_->StopLearning();
         w.SaveAsMakro(w.at_->ShownTable());
       }},
      {kButtonSaveAsMakro, MatrixKeyboard, "SaveMakro",
       [](frmhaupt& w) { w.SaveAsMakro(w.matrix_->MatrixMode()); }},
      {kButtonDelete, AtKeyboard, "cmdToolbar", [](frmhaupt& w) { w.at_->DeleteTable(); }},
      {kButtonDelete, MatrixKeyboard, "cmdToolbar", [](frmhaupt& w) { w.matrix_->DeleteTable(); }},
      {kButtonDelete, Macros, "cmdToolbar", [](frmhaupt& w) { w.macros_->DeleteMakro(); }},
      {kButtonDelete, Terminals, "cmdToolbar", [](frmhaupt& w) { w.terminals_->DeleteTerminal(); }},
  };
  return commands;
}

const frmhaupt::Command* frmhaupt::CommandOf(int button, Tab tab) {
  for (const Command& command : Commands()) {
    if (command.button == button && command.tab.value_or(tab) == tab) return &command;
  }
  return nullptr;
}

QAction* frmhaupt::AddAction(QMenu* menu, const char* name, const QString& text,
                             const QKeySequence& shortcut, void (frmhaupt::*handler)()) {
  QAction* const action = Named(menu->addAction(text), name);
  action->setShortcut(shortcut);
  connect(action, &QAction::triggered, this, [this, name, handler] { Guard(name, handler); });
  return action;
}

// These entries have no logic of their own: each presses its button of the toolbar.
void frmhaupt::AddToolbarAction(QMenu* menu, const char* name, const QString& text,
                                const QKeySequence& shortcut, int button) {
  QAction* const action = Named(menu->addAction(text), name);
  action->setShortcut(shortcut);
  connect(action, &QAction::triggered, this, [this, button] { cmdToolbar_Click(button); });
  toolbarActions_.emplace(button, action);
}

void frmhaupt::MakeMenus() {
  MakeFileMenu();
  MakeEditMenu();
  MakePageMenu();
  MakeViewMenu();
  MakeOptionMenu();
  MakeHelpMenu();
}

void frmhaupt::MakeFileMenu() {
  QMenu* const file = Named(menuBar()->addMenu(tr("&Datei")), "mnuDatei");
  AddToolbarAction(file, "mnuDateiNeu", tr("&Neu"), QKeySequence::New, kButtonNew);
  AddToolbarAction(file, "mnuDateiLoad", tr("&Laden …"), QKeySequence::Open, kButtonLoad);
  MakeRecentMenu(file);
  AddToolbarAction(file, "mnuDateiSave", tr("&Speichern …"), QKeySequence::Save, kButtonSave);
  file->addSeparator();
  AddToolbarAction(file, "mnuDateiSaveAsText", tr("Als &Text speichern …"),
                   QKeySequence(tr("Ctrl+Shift+T")), kButtonSaveAsText);
  AddToolbarAction(file, "mnuDateiSaveAsMakro", tr("Als &Makro speichern …"),
                   QKeySequence(tr("Ctrl+Shift+S")), kButtonSaveAsMakro);
  AddToolbarAction(file, "mnuDateiBildEEProm", tr("Bild ins &EEPROM …"),
                   QKeySequence(tr("Ctrl+Shift+E")), kButtonBitmapToEEprom);
  AddSheetActions(file);
  file->addSeparator();
  MakeProjectDesk(file);
  file->addSeparator();
  QAction* const end = Named(file->addAction(tr("&Beenden")), "mnuDateiEnd");
  end->setShortcut(QKeySequence(tr("Ctrl+Q")));
  connect(end, &QAction::triggered, this, &QWidget::close);
}

void frmhaupt::MakeEditMenu() {
  QMenu* const edit = Named(menuBar()->addMenu(tr("&Bearbeiten")), "mnuBearbeiten");
  AddToolbarAction(edit, "mnuBearbeitenSend", tr("&Senden"), QKeySequence(tr("F9")), kButtonSend);
  mnuDovuSenden = AddAction(edit, "mnuDovuSenden", tr("An aktive &Terminals senden …"),
                            QKeySequence(tr("Shift+F9")), &frmhaupt::mnuDovuSenden_Click);
  MakeEquipping(edit);
  edit->addSeparator();
  mnuBearbeitenRueckgaengig = AddAction(edit, "mnuBearbeitenRueckgaengig", {}, QKeySequence::Undo,
                                        &frmhaupt::mnuBearbeitenRueckgaengig_Click);
  outside_.person.Done().SetListener([this] { ShowLatestDeed(); });
  ShowLatestDeed();
  AddToolbarAction(edit, "mnuBearbeitenloeschen", tr("&Löschen …"),
                   QKeySequence(tr("Ctrl+Shift+Del")), kButtonDelete);
  edit->addSeparator();
  AddToolbarAction(edit, "mnuBearbeitenReset", tr("Alle Terminals &neu starten"), {}, kButtonReset);
}

void frmhaupt::ShowLatestDeed() {
  const QString deed = QString::fromStdString(outside_.person.Done().Latest());
  mnuBearbeitenRueckgaengig->setText(deed.isEmpty() ? tr("&Rückgängig")
                                                    : tr("&Rückgängig: %1").arg(deed));
  mnuBearbeitenRueckgaengig->setEnabled(!deed.isEmpty());
}

void frmhaupt::mnuBearbeitenRueckgaengig_Click() {
  Deeds& deeds = outside_.person.Done();
  const std::string deed = deeds.Latest();
  deeds.Undo();
  if (!deed.empty()) chronicle_.Note("Rückgängig: " + deed);
}

void frmhaupt::MakeRecentMenu(QMenu* file) {
  mnuDateiZuletzt = Named(file->addMenu(tr("&Zuletzt verwendet")), "mnuDateiZuletzt");
  for (int i = 0; i < WindowMemory::kFiles; ++i) {
    QAction* const entry =
        Named(mnuDateiZuletzt->addAction(QString()), ArrayName("mnuDateiZuletzt", i));
    connect(entry, &QAction::triggered, this, [this, i] {
      Guarded(outside_.person, "mnuDateiZuletzt", [&] { mnuDateiZuletzt_Click(i); });
    });
  }
  mnuDateiZuletzt->setToolTipsVisible(true);
  ShowRecentFiles();
}

void frmhaupt::ShowRecentFiles() {
  const QStringList paths = memory_.RecentFiles();
  const QList<QAction*> entries = mnuDateiZuletzt->actions();
  for (int i = 0; i < entries.size(); ++i) {
    entries[i]->setVisible(i < paths.size());
    if (i >= paths.size()) continue;
    QString name = Tamed(QFileInfo(paths[i]).fileName());
    entries[i]->setText(QStringLiteral("&%1 %2").arg(i + 1).arg(name.replace(u'&', tr("&&"))));
    entries[i]->setToolTip(paths[i]);
  }
  mnuDateiZuletzt->setEnabled(!paths.isEmpty());
}

// The drawing is shown where it is loaded to. A file that is gone leaves the list.
void frmhaupt::mnuDateiZuletzt_Click(int index) {
  const QString path = memory_.RecentFiles().value(index);
  SetTab(Tab::Drawing);
  if (!desk_->Editor().MayDiscard()) return;
  if (!QFileInfo::exists(path)) memory_.ForgetFile(path);
  desk_->Editor().LoadFile(path.toStdString());
  ShowRecentFiles();
}

// What the page in front can do, so that everything can be reached through the menus too.
void frmhaupt::MakePageMenu() {
  mnuAktionen = Named(menuBar()->addMenu(tr("&Aktionen")), "mnuAktionen");
  mnuAktionen->setToolTipsVisible(true);
  connect(mnuAktionen, &QMenu::aboutToShow, this, &frmhaupt::ShowPageActions);
}

QWidget* frmhaupt::ShownPage() const {
  return static_cast<const QScrollArea*>(cmdTab->currentWidget())->widget();
}

void frmhaupt::ShowPageActions() {
  mnuAktionen->clear();
  QWidget* const page = ShownPage();
  for (QPushButton* const button : page->findChildren<QPushButton*>()) {
    if (!button->isVisibleTo(page)) continue;
    QAction* const action = mnuAktionen->addAction(button->text(), button, &QPushButton::click);
    action->setEnabled(button->isEnabled());
    action->setToolTip(button->toolTip());
  }
}

void frmhaupt::MakeViewMenu() {
  QMenu* const view = Named(menuBar()->addMenu(tr("Ansi&cht")), "mnuAnsicht");
  for (int tab = 0; tab < kTabCount; ++tab) {
    QAction* const page =
        Named(view->addAction(cmdTab->tabText(tab)), ArrayName("mnuAnsichtSeite", tab));
    page->setShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + (tab + 1) % 10)));
    connect(page, &QAction::triggered, this, [this, tab] { SetTab(static_cast<Tab>(tab)); });
  }
  view->addSeparator();
  AddAction(view, "mnuAnsichtGrafik", tr("&Grafik-Editor …"), QKeySequence(tr("Ctrl+G")),
            &frmhaupt::mnuAnsichtGrafik_Click);
  AddAction(view, "mnuAnsichtDatenverkehr", tr("&Datenverkehr"), QKeySequence(tr("Ctrl+D")),
            &frmhaupt::mnuAnsichtDatenverkehr_Click);
  AddAction(view, "mnuAnsichtVerlauf", tr("&Verlauf"), QKeySequence(tr("Ctrl+L")),
            &frmhaupt::mnuAnsichtVerlauf_Click);
  AddTwinActions(view);
  AddAction(view, "mnuAnsichtVergleich", tr("&Terminals vergleichen …"), {},
            &frmhaupt::mnuAnsichtVergleich_Click);
}

void frmhaupt::MakeOptionMenu() {
  QMenu* const options = Named(menuBar()->addMenu(tr("&Optionen")), "mnuOptionen");
  mnuOptionenSofortSenden =
      AddAction(options, "mnuOptionenSofortSenden", tr("Zeichnung &sofort senden"), {},
                &frmhaupt::mnuOptionenSofortSenden_Click);
  mnuOptionenZoom = AddAction(options, "mnuOptionenZoom", tr("&Fenster mitzoomen"), {},
                              &frmhaupt::mnuOptionenZoom_Click);
  mnuOptionenSofortSenden->setCheckable(true);
  mnuOptionenZoom->setCheckable(true);
  options->addSeparator();
  AddAction(options, "mnuOptionenAnschluesse", tr("&Anschlüsse …"), {},
            &frmhaupt::mnuOptionenAnschluesse_Click);
  AddPortOptions(options);
}

void frmhaupt::MakeHelpMenu() {
  QMenu* const help = Named(menuBar()->addMenu(tr("&Hilfe")), "mnuHilfe");
  AddAction(help, "mnuHilfe_Inhalt", tr("&Inhalt"), {}, &frmhaupt::mnuHilfe_Inhalt_Click);
  AddAction(help, "mnuHilfe_index", tr("&Suchen …"), {}, &frmhaupt::mnuHilfe_index_Click);
  AddAction(help, "mnuHilfe_Seite", tr("Hilfe zu dieser &Seite"), QKeySequence::HelpContents,
            &frmhaupt::mnuHilfe_Seite_Click);
  help->addSeparator();
  AddAction(help, "mnuHilfe_about", tr("Ü&ber …"), {}, &frmhaupt::mnuHilfe_about_Click);
}

// Grouped by what they are about. The numbers that do nothing are the gaps between the groups. What
// concerns every Terminal on the bus stands apart from what a hand in haste may miss.
void frmhaupt::MakeToolbar() {
  const struct {
    int index;
    std::optional<Symbol> symbol;
    QString text;
    QString tip;
  } buttons[] = {
      {kButtonNew, Symbol::New, tr("Neu"), tr("Legt einen neuen Satz an (Strg+N).")},
      {kButtonLoad, Symbol::Load, tr("Laden"), tr("Lädt eine Zeichnung aus einer Datei (Strg+O).")},
      {kButtonSave, Symbol::Save, tr("Speichern"),
       tr("Speichert unter einer Bezeichnung (Strg+S).")},
      {3, {}, {}, {}},
      {kButtonSaveAsText, Symbol::SaveAsText, tr("Als Text"),
       tr("Speichert die Befehle der Zeichnung als Textdatei (Strg+Umschalt+T).")},
      {kButtonSaveAsMakro, Symbol::SaveAsMakro, tr("Als Makro"),
       tr("Speichert, was die Seite senden würde, als Makro (Strg+Umschalt+S).")},
      {kButtonBitmapToEEprom, Symbol::BitmapToEEprom, tr("Bild ins EEPROM"),
       tr("Speichert das Bild der Zeichnung unter einer Nummer im EEPROM (Strg+Umschalt+E).")},
      {4, {}, {}, {}},
      {kButtonSend, Symbol::Send, tr("Senden"), tr("Sendet die Zeichnung (F9).")},
      {5, {}, {}, {}},
      {kButtonDelete, Symbol::Delete, tr("Löschen"),
       tr("Löscht den gezeigten Satz (Strg+Umschalt+Entf).")},
      {kGapBeforeReset, {}, {}, {}},
      {kButtonReset, Symbol::Restart, tr("Alle neu starten"),
       tr("Startet jedes Terminal am Bus neu, nicht nur das gewählte. Es wird nicht "
          "nachgefragt.")}};
  QToolBar* const bar = Named(addToolBar(tr("Werkzeuge")), "cmdToolbar");
  bar->setMovable(false);
  for (const auto& button : buttons) {
    if (!button.symbol) {
      if (button.index == kGapBeforeReset) bar->addWidget(MakeSpace());
      Named(bar->addSeparator(), ArrayName("cmdToolbar", button.index));
      continue;
    }
    auto* tool = Named(new QToolButton, ArrayName("cmdToolbar", button.index));
    tool->setIcon(SymbolIcon(*button.symbol));
    tool->setText(button.text);
    tool->setToolTip(button.tip);
    tool->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    tool->setFocusPolicy(Qt::TabFocus);
    tool->setAutoRaise(button.index != kButtonReset);
    connect(tool, &QToolButton::clicked, this,
            [this, index = button.index] { cmdToolbar_Click(index); });
    bar->addWidget(tool);
    cmdToolbar[button.index] = tool;
  }
  // Wide enough that every button is seen, where the screen is; its title is seen, too.
  // What the desktop puts around it is not known before it is shown, but thicker than the style's.
  const QSize room =
      screen()->availableSize() - QSize(0, 2 * style()->pixelMetric(QStyle::PM_TitleBarHeight));
  resize(sizeHint().expandedTo(bar->sizeHint()).boundedTo(room));
}

void frmhaupt::EnableToolbar() {
  const Tab tab = ShownTab();
  for (const auto& [index, button] : cmdToolbar) {
    button->setEnabled(CommandOf(index, tab) != nullptr);
  }
  for (const auto& [index, action] : toolbarActions_) {
    action->setEnabled(CommandOf(index, tab) != nullptr);
  }
}

void frmhaupt::cmdToolbar_Click(int index) {
  const Command* const command = CommandOf(index, ShownTab());
  if (command == nullptr || !FinishEditing()) return;
  if (!command->sends) {
    return Guarded(outside_.person, command->routine, [&] { command->run(*this); });
  }
  if (!outside_.person.MayTalk()) return;
  if (TalkLater(outside_.person, cmdToolbar[index], [this, index] { cmdToolbar_Click(index); })) {
    return;
  }
  const Undertakings::Talking talking(outside_.person.Begun());
  Guarded(outside_.person, command->routine, [&] { command->run(*this); });
}

// A text that could not be built has been reported already.
void frmhaupt::SaveAsMakro(const std::optional<std::string>& text) {
  if (text) macros_->SaveMakro("Makro", *text, -1, kNewRecordName);
}

void frmhaupt::mnuOptionenSofortSenden_Click() {
  SofortSenden_ = mnuOptionenSofortSenden->isChecked();
  StoreOption("sofortsenden", SofortSenden_);
  if (!SofortSenden_ || ShownTab() == Tab::Drawing) {
    desk_->Editor().SetAutomaticSend(SofortSenden_);
  }
}

void frmhaupt::mnuOptionenZoom_Click() {
  FensterMitZoomen_ = mnuOptionenZoom->isChecked();
  StoreOption("FensterMitZoomen", FensterMitZoomen_);
}

void frmhaupt::mnuAnsichtGrafik_Click() { desk_->Page()->cmdGrafik_Click(); }

void frmhaupt::mnuHilfe_Inhalt_Click() { help_->ShowContents(); }

void frmhaupt::mnuHilfe_index_Click() { help_->ShowIndex(); }

void frmhaupt::mnuHilfe_Seite_Click() { help_->ShowPage(); }

void frmhaupt::mnuHilfe_about_Click() {
  QMessageBox box(this);
  Named(&box, "frmAbout");
  box.setWindowTitle(tr("Über %1").arg(QApplication::applicationDisplayName()));
  box.setIcon(QMessageBox::Information);
  box.setText(
      tr("%1 %2").arg(QApplication::applicationDisplayName(), QApplication::applicationVersion()));
  box.setInformativeText(
      tr("Richtet grafische Terminals und ganze Busse davon ein.\n\nFreie Software unter der GNU "
         "General Public License, Version 2 oder später.\nDatenbank: %1")
          .arg(QString::fromStdString(data_.database.Path())));
  box.addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
  box.exec();
}

}  // namespace kelvo

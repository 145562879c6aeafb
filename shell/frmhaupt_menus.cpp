#include <QApplication>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QStyle>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>

#include "link/control_characters.h"
#include "link/guard.h"
#include "shell/drawing_desk.h"
#include "shell/frmhaupt.h"
#include "shell/port_dialog.h"
#include "shell/traffic_view.h"
#include "widgets/form.h"

namespace kelvo {
namespace {

// The generic commands. The numbers are those of the toolbar's buttons.
constexpr int buttonReset = 0;
constexpr int buttonBitmapToEEprom = 1;
constexpr int buttonSaveAsText = 2;
constexpr int buttonNew = 6;
constexpr int buttonLoad = 7;
constexpr int buttonSave = 8;
constexpr int buttonSend = 10;
constexpr int buttonSaveAsMakro = 11;
constexpr int buttonDelete = 12;

constexpr char newName[] = "(neuer Name)";

}  // namespace

// What is not in this table does nothing.
std::span<const frmhaupt::Command> frmhaupt::Commands() {
  using enum Tab;
  static constexpr Command commands[] = {
      {buttonReset, {}, "cmdToolbar", [](frmhaupt& w) { w.ResetAll(); }},
      {buttonBitmapToEEprom,
       {},
       "SaveBMPinEEProm",
       [](frmhaupt& w) { w.desk_->SaveBMPinEEProm(); }},
      {buttonSaveAsText, Drawing, "SaveasText", [](frmhaupt& w) { w.desk_->SaveAsText(); }},
      {buttonNew, Drawing, "cmdToolbar", [](frmhaupt& w) { w.desk_->NewDrawing(); }},
      {buttonLoad, Drawing, "cmdToolbar", [](frmhaupt& w) { w.desk_->Editor().LoadDrawing(); }},
      {buttonSave, Drawing, "cmdToolbar", [](frmhaupt& w) { w.desk_->Editor().SaveDrawing(); }},
      {buttonSend, Drawing, "send", [](frmhaupt& w) { w.desk_->Send(); }},
      {buttonSaveAsMakro, Drawing, "SaveMakro", [](frmhaupt& w) { w.desk_->SaveAsMakro(); }},
      {buttonDelete, Drawing, "cmdToolbar",
       [](frmhaupt& w) { w.desk_->Editor().DeleteSelection(); }},
      {buttonNew, AtKeyboard, "NewATTab", [](frmhaupt& w) { w.at_->NewATTab(); }},
      {buttonNew, MatrixKeyboard, "NewTastTab", [](frmhaupt& w) { w.matrix_->NewTastTab(); }},
      {buttonNew, Macros, "NewMakro", [](frmhaupt& w) { w.macros_->NewMakro(); }},
      {buttonSave, AtKeyboard, "SaveATTab", [](frmhaupt& w) { w.at_->SaveATTab(); }},
      {buttonSave, MatrixKeyboard, "SaveTastTab", [](frmhaupt& w) { w.matrix_->SaveTastTab(); }},
      {buttonSave, Macros, "SaveMakro", [](frmhaupt& w) { w.macros_->SaveShown(); }},
      {buttonSaveAsMakro, Tab::Text, "SaveMakro",
       [](frmhaupt& w) { w.SaveAsMakro(w.text_->TextModeCommand()); }},
      {buttonSaveAsMakro, AtKeyboard, "SaveMakro",
       [](frmhaupt& w) { w.SaveAsMakro(w.at_->ATTab()); }},
      {buttonSaveAsMakro, MatrixKeyboard, "SaveMakro",
       [](frmhaupt& w) { w.SaveAsMakro(w.matrix_->MatrixMode()); }},
      {buttonDelete, AtKeyboard, "cmdToolbar", [](frmhaupt& w) { w.at_->DeleteATTab(); }},
      {buttonDelete, MatrixKeyboard, "cmdToolbar", [](frmhaupt& w) { w.matrix_->DeleteTastTab(); }},
      {buttonDelete, Macros, "cmdToolbar", [](frmhaupt& w) { w.macros_->DeleteMakro(); }},
      {buttonDelete, Terminals, "cmdToolbar", [](frmhaupt& w) { w.terminals_->DeleteTerminal(); }},
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
  MakeFileMenus();
  MakeViewMenu();
  MakeOptionMenu();
  MakeHelpMenu();
}

void frmhaupt::MakeFileMenus() {
  QMenu* const file = Named(menuBar()->addMenu(tr("&Datei")), "mnuDatei");
  AddToolbarAction(file, "mnuDateiNeu", tr("&Neu"), QKeySequence::New, buttonNew);
  AddToolbarAction(file, "mnuDateiLoad", tr("&Laden …"), QKeySequence::Open, buttonLoad);
  AddToolbarAction(file, "mnuDateiSave", tr("&Speichern …"), QKeySequence::Save, buttonSave);
  AddToolbarAction(file, "mnuDateiSaveAsMakro", tr("Als &Makro speichern …"),
                   QKeySequence(tr("Ctrl+Shift+S")), buttonSaveAsMakro);
  file->addSeparator();
  QAction* const end = Named(file->addAction(tr("&Beenden")), "mnuDateiEnd");
  end->setShortcut(QKeySequence(tr("Ctrl+Q")));
  connect(end, &QAction::triggered, this, &QWidget::close);

  QMenu* const edit = Named(menuBar()->addMenu(tr("&Bearbeiten")), "mnuBearbeiten");
  AddToolbarAction(edit, "mnuBearbeitenSend", tr("&Senden"), QKeySequence(tr("F9")), buttonSend);
  AddToolbarAction(edit, "mnuBearbeitenloeschen", tr("&Löschen …"),
                   QKeySequence(tr("Ctrl+Shift+Del")), buttonDelete);
  edit->addSeparator();
  mnuDovuSenden = AddAction(edit, "mnuDovuSenden", tr("An aktive &Terminals senden …"), {},
                            &frmhaupt::mnuDovuSenden_Click);
}

void frmhaupt::MakeViewMenu() {
  QMenu* const view = Named(menuBar()->addMenu(tr("Ansi&cht")), "mnuAnsicht");
  for (int tab = 0; tab < TabCount; ++tab) {
    QAction* const page =
        Named(view->addAction(cmdTab->tabText(tab)), ArrayName("mnuAnsichtSeite", tab));
    page->setShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + (tab + 1) % 10)));
    connect(page, &QAction::triggered, this, [this, tab] { SetTab(static_cast<Tab>(tab)); });
  }
  view->addSeparator();
  AddAction(view, "mnuAnsichtDatenverkehr", tr("&Datenverkehr"), QKeySequence(tr("Ctrl+D")),
            &frmhaupt::mnuAnsichtDatenverkehr_Click);
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
}

void frmhaupt::MakeHelpMenu() {
  QMenu* const help = Named(menuBar()->addMenu(tr("&Hilfe")), "mnuHilfe");
  AddAction(help, "mnuHilfe_Inhalt", tr("&Inhalt"), QKeySequence::HelpContents,
            &frmhaupt::mnuHilfe_Inhalt_Click);
  AddAction(help, "mnuHilfe_index", tr("&Suchen …"), {}, &frmhaupt::mnuHilfe_index_Click);
  help->addSeparator();
  AddAction(help, "mnuHilfe_about", tr("Ü&ber …"), {}, &frmhaupt::mnuHilfe_about_Click);
}

void frmhaupt::MakeToolbar() {
  struct Button {
    int index;
    QStyle::StandardPixmap icon;
    QString text;
    QString tip;
  };
  const Button buttons[] = {
      {buttonReset, QStyle::SP_BrowserReload, tr("Alle neu starten"),
       tr("Startet alle Terminals am Bus neu.")},
      {buttonNew, QStyle::SP_FileIcon, tr("Neu"), tr("Legt einen neuen Satz an (Strg+N).")},
      {buttonLoad, QStyle::SP_DialogOpenButton, tr("Laden"),
       tr("Lädt eine Zeichnung aus einer Datei (Strg+O).")},
      {buttonSave, QStyle::SP_DialogSaveButton, tr("Speichern"),
       tr("Speichert unter einer Bezeichnung (Strg+S).")},
      {buttonSaveAsText, QStyle::SP_FileDialogDetailedView, tr("Als Text"),
       tr("Speichert die Befehle der Zeichnung als Textdatei.")},
      {buttonSend, QStyle::SP_ArrowUp, tr("Senden"), tr("Sendet die Zeichnung (F9).")},
      {buttonBitmapToEEprom, QStyle::SP_DriveHDIcon, tr("Bild ins EEPROM"),
       tr("Speichert das Bild der Zeichnung unter einer Nummer im EEPROM.")},
      {buttonSaveAsMakro, QStyle::SP_DialogApplyButton, tr("Als Makro speichern"),
       tr("Speichert, was die Seite senden würde, als Makro (Strg+Umschalt+S).")},
      {buttonDelete, QStyle::SP_TrashIcon, tr("Löschen"), tr("Löscht den gezeigten Satz.")}};
  QToolBar* const bar = Named(addToolBar(tr("Werkzeuge")), "cmdToolbar");
  bar->setMovable(false);
  bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  for (const Button& button : buttons) {
    auto* tool = Named(new QToolButton, ArrayName("cmdToolbar", button.index));
    tool->setIcon(style()->standardIcon(button.icon));
    tool->setText(button.text);
    tool->setToolTip(button.tip);
    tool->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    tool->setFocusPolicy(Qt::TabFocus);
    tool->setAutoRaise(true);
    connect(tool, &QToolButton::clicked, this,
            [this, index = button.index] { cmdToolbar_Click(index); });
    bar->addWidget(tool);
    cmdToolbar[button.index] = tool;
  }
  // Wide enough that every button is seen.
  resize(std::max(sizeHint().width(), bar->sizeHint().width()), sizeHint().height());
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
  if (command == nullptr) return;
  Guarded(outside_.person, command->routine, [&] { command->run(*this); });
}

// A text that could not be built has been reported already.
void frmhaupt::SaveAsMakro(const std::optional<std::string>& text) {
  if (text) macros_->SaveMakro("Makro", *text, -1, newName);
}

// Closes whatever command, macro or graphic text a Terminal may still be receiving, then restarts
// all Terminals of the bus.
void frmhaupt::ResetAll() {
  std::string& command = exchange_.CommandBuffer;
  command = ";";
  command += Etx;
  command += Eot;
  command.append(CmdPrefix).append("!A255;").append(CmdPrefix).append("R");
  exchange_.SendCommand(Acknowledge::None);
  state_.flash = FlashState::Unknown;
  state_.Changed();
}

void frmhaupt::mnuOptionenSofortSenden_Click() {
  SofortSenden_ = mnuOptionenSofortSenden->isChecked();
  data_.Optionen.Edit();
  data_.Optionen.Set("sofortsenden", std::int64_t{SofortSenden_});
  data_.Optionen.Update();
  desk_->Editor().SetAutomaticSend(SofortSenden_ && ShownTab() == Tab::Drawing);
}

void frmhaupt::mnuOptionenZoom_Click() {
  FensterMitZoomen_ = mnuOptionenZoom->isChecked();
  data_.Optionen.Edit();
  data_.Optionen.Set("FensterMitZoomen", std::int64_t{FensterMitZoomen_});
  data_.Optionen.Update();
}

void frmhaupt::mnuOptionenAnschluesse_Click() {
  portDialog_->Load();
  portDialog_->exec();
  interfaces_->DescribePort();
}

void frmhaupt::mnuAnsichtDatenverkehr_Click() {
  traffic_->show();
  traffic_->raise();
  traffic_->activateWindow();
}

void frmhaupt::mnuHilfe_Inhalt_Click() { ShowHelp(); }

void frmhaupt::mnuHilfe_index_Click() { ShowHelp(); }

void frmhaupt::ShowHelp() {
  const QString file = QString::fromStdString(helpFile_);
  const QString path = QFileInfo(file).isAbsolute()
                           ? file
                           : QString::fromStdString(outside_.programFolder) + u'/' + file;
  const char* problem = QFileInfo::exists(path) ? "\" kann nicht gelesen werden." : "\" fehlt.";
  outside_.person.Message("Die Hilfedatei \"" + path.toStdString() + problem, Icon::Exclamation);
}

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

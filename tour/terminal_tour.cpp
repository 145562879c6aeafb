#include "tour/terminal_tour.h"

#include <QApplication>
#include <QClipboard>
#include <QInputDialog>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QSlider>
#include <QSpinBox>
#include <QTableView>
#include <QTimer>
#include <QTreeView>

#include "inventory_page/inventory_model.h"
#include "tour/capture.h"
#include "widgets/wire_field.h"

namespace kelvo {
namespace {

void AnswerDialog(QDialog& dialog, const char* answer) {
  if (answer == nullptr) return;
  dynamic_cast<QInputDialog&>(dialog).setTextValue(QString::fromUtf8(answer));
}

// A picture with soft edges, as one that an operator inserts.
QImage Photograph() {
  QImage image(320, 200, QImage::Format_RGB32);
  QPainter painter(&image);
  QRadialGradient light(QPointF(130, 80), 180);
  light.setColorAt(0, Qt::white);
  light.setColorAt(1, Qt::black);
  painter.fillRect(image.rect(), light);
  painter.setPen(QPen(Qt::white, 12));
  painter.drawLine(20, 180, 300, 150);
  return image;
}

}  // namespace

TerminalTour::TerminalTour(LiveProgram& program, SimulatorProcess& simulator, Album& album)
    : program_(program),
      simulator_(simulator),
      album_(album),
      window_(program.Start()),
      driver_(window_) {}

void TerminalTour::Run() {
  Connect();
  Interfaces();
  Status();
  WriteMacro();
  RunMacro();
  Drawing();
  SendDrawing();
  TextPage();
  AtKeyboard();
  MatrixKeyboard();
  Eeprom();
  DataSheet();
  Erase();
  Traffic();
  Twin();
  Ports();
  Projects();
  Boxes();
  Help();
  SaveCapture(driver_, album_.Folder() + QStringLiteral("/mitschrift-terminal.txt"));
  driver_.OnDialog([](QDialog& dialog) { WindowDriver::Press(dialog, QStringLiteral("Nein")); });
  window_.close();
}

void TerminalTour::OnDialog(const char* picture, const char* button, const char* answer) {
  driver_.OnDialog([=, this](QDialog& dialog) {
    AnswerDialog(dialog, answer);
    Shoot(dialog, picture);
    WindowDriver::Press(dialog, QString::fromUtf8(button));
  });
}

// The simulated Terminal answers a query behind everything that was sent before.
void TerminalTour::TerminalIsThrough() {
  Show(Tab::Eeprom);
  Click("cmdGetFreeBytes");
}

void TerminalTour::Connect() {
  Step("Das Programm startet und verbindet sich mit dem Simulator.");
  driver_.Until(QStringLiteral("first paint"), [this] {
    return driver_.Text(QStringLiteral("lblPort")).startsWith(QStringLiteral("Com 6"));
  });
  Shoot(window_, "willkommen");
}

void TerminalTour::Interfaces() {
  Step("Die Seite Schnittstellen.");
  Show(Tab::Interfaces);
  Shoot(window_, "schnittstellen");
}

void TerminalTour::Status() {
  Step("Version, Systeminformation, Adresse und Eingänge werden gelesen.");
  simulator_.Command(QStringLiteral("p1 165"));
  Show(Tab::Status);
  Click("cmdGetVersion");
  Click("cmdGetAdresse");
  Click("cmdGetPort");
  Click("chkPortP0_0");
  Click("chkPortP0_3");
  Click("cmdSetPort");
  Shoot(window_, "status");
}

void TerminalTour::WriteMacro() {
  Step("Ein Makro wird geschrieben und unter einem Namen gespeichert.");
  Show(Tab::Macros);
  Click("mnuDateiNeu");
  Type("txtMakro",
       "\x1bGC\x1bGP10,10;\x1bGR229,117;\x1bGP30,50;\x1bGF3;\x1bGZ2,2;\x1bGA0;\x1bGTAnlage "
       "läuft\x04");
  Type("txtMakroNr", "7");
  Shoot(window_, "makro-entwurf");
  CheckMacro();
  OnDialog("eingabe", "OK", "Anlage läuft");
  Click("mnuDateiSave");
}

// A slip on the way, and what is said about it.
void TerminalTour::CheckMacro() {
  const std::string right = driver_.Find<WireEdit>(QStringLiteral("txtMakro")).Wire();
  Type("txtMakro", "\x1bGC\x1bGP10,10\x1bGR299,117;\x1bGTAnlage");
  Shoot(window_, "makro-anmerkungen");
  driver_.Find<WireEdit>(QStringLiteral("txtMakro")).SetWire(right);
}

void TerminalTour::RunMacro() {
  Step("Das Makro wird in das Terminal geschrieben und ausgeführt.");
  ShootDisplay("display-vorher");
  Click("cmdSetMakro");
  Type("txtMakroNrDisplay", "7");
  Click("cmdPlayMakro");
  Shoot(window_, "makros");
  TerminalIsThrough();
  ShootDisplay("display-nachher");
}

void TerminalTour::Drawing() {
  Step("Im Editor wird gezeichnet.");
  Show(Tab::Drawing);
  Click("cmdGrafik");
  auto& editor = driver_.FindWindow(QStringLiteral("frmGrafik"));
  WindowDriver hands(editor);
  hands.Find<QSlider>(QStringLiteral("ctlZoom")).setValue(3);
  editor.resize(1120, 640);
  DrawWithTools(hands);
  InsertPicture(hands);
  Shoot(editor, "grafik-editor");
  editor.close();
  Shoot(window_, "zeichnung");
}

void TerminalTour::DrawWithTools(WindowDriver& hands) {
  auto& canvas = hands.Find(QStringLiteral("Display"));
  const auto drag = [&](const char* tool, QPoint from, QPoint to) {
    hands.Click(QString::fromUtf8(tool));
    WindowDriver::Drag(canvas, from, to);
  };
  drag("toolRechteck", {30, 30}, {420, 210});
  drag("toolEllipse", {260, 60}, {400, 180});
  drag("toolLinie", {40, 200}, {240, 50});
  drag("toolText", {60, 240}, {60, 240});
  hands.Type(QStringLiteral("txtZeichnungText"), QStringLiteral("Pumpe 1"));
  Shoot(*canvas.window(), "grafik-text");
  hands.Click(QStringLiteral("toolAuswahl"));
}

void TerminalTour::InsertPicture(WindowDriver& hands) {
  QApplication::clipboard()->setImage(Photograph());
  hands.OnDialog([this](QDialog& dialog) {
    Shoot(dialog, "bild-einfuegen");
    WindowDriver::Press(dialog, QStringLiteral("Abbrechen"));
  });
  hands.Click(QStringLiteral("mnuGrafikEinfuegen"));
}

void TerminalTour::SendDrawing() {
  Step("Die Zeichnung geht zum Terminal.");
  Click("mnuBearbeitenSend");
  TerminalIsThrough();
  ShootDisplay("display-zeichnung");
}

void TerminalTour::TextPage() {
  Step("Text und Cursor.");
  Show(Tab::Text);
  driver_.Choose(QStringLiteral("cboTextStyle_0"), QStringLiteral("8 x 16"));
  Type("txtText", "Alarm 3");
  Shoot(window_, "text");
}

void TerminalTour::AtKeyboard() {
  Step("Eine Tabelle der AT-Tastatur.");
  Show(Tab::AtKeyboard);
  Click("mnuDateiNeu");
  QAbstractItemModel& list = *driver_.Find<QTableView>(QStringLiteral("ctlATTabListe")).model();
  constexpr int oldKey = 0;
  constexpr int newKey = 2;
  for (const auto& [before, after] : {std::pair("y", "z"), std::pair("z", "y")}) {
    const int row = list.rowCount() - 1;
    list.setData(list.index(row, oldKey), QString::fromLatin1(before));
    list.setData(list.index(row, newKey), QString::fromLatin1(after));
  }
  OnDialog("tabelle-name", "OK", "y und z vertauscht");
  Click("mnuDateiSave");
  Click("cmdSetATTab");
  Shoot(window_, "at-tastatur");
}

void TerminalTour::MatrixKeyboard() {
  Step("Das Tastenfeld: gedrückte Tasten zeigen ihren Platz.");
  Show(Tab::MatrixKeyboard);
  Click("mnuDateiNeu");
  Type("txtTastMatrix_0", "A");
  Click("cmdMatrixEnable");
  TerminalIsThrough();
  Show(Tab::MatrixKeyboard);
  simulator_.Command(QStringLiteral("key 2 3 press"));
  driver_.Until(QStringLiteral("key"), [this] {
    return driver_.Text(QStringLiteral("txtTastMatrix_26")) == QStringLiteral("$A3");
  });
  Shoot(window_, "matrix-tastatur");
}

void TerminalTour::Eeprom() {
  Step("Die Konfiguration wird gespeichert.");
  Show(Tab::Eeprom);
  Click("cmdSetConfig");
  const auto& rows = *driver_.Find<QTableView>(QStringLiteral("ctlBestand")).model();
  driver_.Until(QStringLiteral("record of the configuration"), [&rows] {
    const QModelIndex proofs = rows.index(0, InventoryModel::Rests);
    return rows.match(proofs, Qt::DisplayRole, QStringLiteral("begonnen")).isEmpty();
  });
  Shoot(window_, "eeprom");
}

void TerminalTour::DataSheet() {
  Step("Das Datenblatt des Terminals.");
  bool shown = false;
  driver_.OnDialog([&shown](QDialog&) { shown = true; });
  Click("mnuDateiDatenblatt");
  driver_.Until(QStringLiteral("dialog"), [&shown] { return shown; });
  auto& dialog = driver_.Find(QStringLiteral("frmDatenblatt"));
  driver_.Until(QStringLiteral("sheet"),
                [this] { return driver_.Find(QStringLiteral("cmdDatenblattPdf")).isEnabled(); });
  auto& page = driver_.Find<QSpinBox>(QStringLiteral("txtDatenblattSeite"));
  page.setValue(3);
  Shoot(dialog, "datenblatt");
  driver_.Click(QStringLiteral("cmdDatenblattSchliessen"));
}

void TerminalTour::Erase() {
  Step("Das EEPROM wird gelöscht.");
  auto& progress = driver_.Find<QProgressBar>(QStringLiteral("ctlFortschritt"));
  // The moment is in the middle of the handler's wait.
  bool shot = false;
  QObject::connect(&progress, &QProgressBar::valueChanged, &progress, [&](int value) {
    if (shot || value < progress.maximum() / 2) return;
    shot = true;
    Shoot(*progress.window(), "eeprom-loeschen");
  });
  OnDialog("frage", "Ja");
  driver_.OnDialog([](QDialog& dialog) { WindowDriver::Press(dialog, QStringLiteral("Ja")); });
  Click("cmdClearEEprom");
  progress.disconnect(&progress);
  driver_.Until(QStringLiteral("progress of the erasing"), [&] { return shot; });
  Shoot(window_, "eeprom-geloescht");
}

void TerminalTour::Traffic() {
  Step("Der Datenverkehr wird mitgelesen.");
  Click("mnuAnsichtDatenverkehr");
  Show(Tab::Status);
  Click("cmdGetVersion");
  Click("cmdGetAdresse");
  Show(Tab::Macros);
  driver_.Choose(QStringLiteral("cboMakro"), QStringLiteral("Begrüßung"));
  Click("cmdSetMakro");
  Type("txtMakroNrDisplay", "1");
  Click("cmdPlayMakro");
  TerminalIsThrough();
  ShootDisplay("display-makro");
  auto& traffic = driver_.Find(QStringLiteral("frmDatenverkehr"));
  Shoot(traffic, "datenverkehr");
  traffic.close();
}

void TerminalTour::Twin() {
  Step("Die Nachbildung zeigt, was das Terminal anzeigt.");
  Click("mnuAnsichtAnzeige");
  Click("cmdVerbindungPruefen");
  Show(Tab::Macros);
  Click("cmdPlayMakro");
  TerminalIsThrough();
  driver_.Until(QStringLiteral("the model is certain"), [this] {
    return driver_.Text(QStringLiteral("lblAnzeigeStand")).startsWith(QStringLiteral("Errechnet"));
  });
  Show(Tab::Macros);
  Shoot(window_, "nachbildung");
  Click("mnuAnsichtAnzeige");
}

void TerminalTour::Ports() {
  Step("Die Anschlüsse.");
  driver_.OnDialog([this](QDialog& dialog) {
    // The ports of the machine that makes the pictures are of no interest.
    for (auto* device : dialog.findChildren<QComboBox*>()) device->clear();
    const auto name = [&](const char* list, const char* device) {
      dialog.findChild<QComboBox*>(QString::fromLatin1(list))
          ->setEditText(QString::fromLatin1(device));
    };
    name("cboGeraet_0", "/dev/ttyUSB0");
    name("cboGeraet_5", "simulator.tty");
    Shoot(dialog, "anschluesse");
    WindowDriver::Press(dialog, QStringLiteral("Abbrechen"));
  });
  Click("mnuOptionenAnschluesse");
}

void TerminalTour::Boxes() {
  Step("Meldung, Datei wählen, Über.");
  Show(Tab::Macros);
  Type("txtMakroNr", "999");
  OnDialog("meldung", "OK");
  Click("cmdSetMakro");
  Click("cmdMakroVerwerfen");
  Show(Tab::Drawing);
  driver_.OnDialog(
      [](QDialog& dialog) { WindowDriver::Press(dialog, QStringLiteral("Verwerfen")); });
  driver_.OnDialog([this](QDialog& dialog) {
    Shoot(dialog, "datei-laden");
    dialog.reject();
  });
  Click("mnuDateiLoad");
  OnDialog("ueber", "OK");
  Click("mnuHilfe_about");
}

void TerminalTour::Help() {
  Step("Die Hilfe.");
  Click("mnuHilfe_Inhalt");
  auto& help = driver_.FindWindow(QStringLiteral("frmHilfe"));
  auto& contents = *help.findChild<QTreeView*>(QStringLiteral("ctlInhalt"));
  driver_.Until(QStringLiteral("contents"), [&] {
    return contents.currentIndex().isValid() && contents.isExpanded(contents.currentIndex());
  });
  Shoot(help, "hilfe");
  help.close();
}

}  // namespace kelvo

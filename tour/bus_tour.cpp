#include "tour/bus_tour.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QMouseEvent>
#include <QSpinBox>
#include <QTimer>
#include <QTreeWidget>
#include <stdexcept>

#include "graphics/drawing_canvas.h"
#include "graphics/frmGrafik.h"
#include "shell/tabs.h"
#include "tour/capture.h"

namespace kelvo {
namespace {

void Expect(bool met, const char* what) {
  if (!met) throw std::runtime_error(std::string("not as expected: ") + what);
}

QString Verdict(const QTreeWidget& list, int address) {
  return list.topLevelItem(address)->text(1);
}

frmGrafik& Editor() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (auto* editor = qobject_cast<frmGrafik*>(window)) return *editor;
  }
  throw std::runtime_error("no graphics editor");
}

void Mouse(DrawingCanvas& canvas, QEvent::Type type, Point at) {
  const QPointF place = canvas.ToWidget(at);
  const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
  const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
  QMouseEvent event(type, place, canvas.mapToGlobal(place), button, held, Qt::NoModifier);
  QApplication::sendEvent(&canvas, &event);
}

void DrawShape(frmGrafik& editor, const char* tool, Point from, Point to) {
  auto& canvas = *editor.findChild<DrawingCanvas*>(QStringLiteral("Display"));
  editor.findChild<QAction*>(QString::fromUtf8(tool))->trigger();
  Mouse(canvas, QEvent::MouseButtonPress, from);
  Mouse(canvas, QEvent::MouseMove, to);
  Mouse(canvas, QEvent::MouseButtonRelease, to);
}

}  // namespace

// The texts of the search stand at a height of 150 pixels and are 300 wide.
QStringList BusTour::DescribeLine(const QString& folder) {
  const QString name = folder + QStringLiteral("/bus.txt");
  QFile file(name);
  if (!file.open(QIODevice::WriteOnly)) throw std::runtime_error("cannot write the bus file");
  file.write(
      "address=0\n"
      "address=2\n"
      "address=3 version=1.9 checksum=off\n"
      "address=5\n"
      "address=5\n");
  return {QStringLiteral("--display"), QStringLiteral("320x240"), QStringLiteral("--bus"), name};
}

BusTour::BusTour(LiveProgram& program, SimulatorProcess& simulator, Album& album)
    : simulator_(simulator), album_(album), window_(program.Start()), driver_(window_) {}

void BusTour::Run() {
  driver_.Until(QStringLiteral("first paint"), [this] {
    return driver_.Text(QStringLiteral("lblPort")).startsWith(QStringLiteral("Com 6"));
  });
  Search();
  Draw();
  Send();
  Equip();
  WriteToMany();
  Compare();
  SaveCapture(driver_, album_.Folder() + QStringLiteral("/mitschrift-bus.txt"));
  window_.close();
}

void BusTour::Search() {
  album_.Step("Der Bus wird durchsucht: drei Terminals und eine Kollision.");
  driver_.ShowTab(static_cast<int>(Tab::Terminals));
  driver_.Type(QStringLiteral("txtmaxDovu"), QStringLiteral("6"));
  QTimer::singleShot(1500, &window_, [this] { album_.Shoot(window_, "bus-suche-laeuft"); });
  driver_.Click(QStringLiteral("cmdDovusuchen"));
  auto& results = driver_.Find<QTreeWidget>(QStringLiteral("ctlDovuSuchListe"));
  for (const int address : {0, 2, 3}) {
    Expect(Verdict(results, address) == QStringLiteral("ok"), "three Terminals");
  }
  Expect(Verdict(results, 5) == QStringLiteral("Fehler/Kollision"), "one collision");
  driver_.Click(QStringLiteral("cmdDovuUebernehmen"));
  album_.Shoot(window_, "terminals");
  simulator_.Picture(album_.File("wand"));
}

void BusTour::Draw() {
  frmGrafik& editor = Editor();
  editor.show();
  DrawShape(editor, "toolRechteck", {10, 10}, {229, 117});
  DrawShape(editor, "toolEllipse", {30, 30}, {110, 100});
  DrawShape(editor, "toolLinie", {130, 30}, {210, 100});
  DrawShape(editor, "toolLinie", {130, 100}, {210, 30});
  editor.hide();
}

void BusTour::Open(const char* button) {
  bool shown = false;
  driver_.OnDialog([&shown](QDialog&) { shown = true; });
  driver_.Click(QString::fromUtf8(button));
  driver_.Until(QStringLiteral("dialog"), [&shown] { return shown; });
}

void BusTour::Send() {
  album_.Step("Die Zeichnung geht an alle zugleich, und jedes Terminal weist sie nach.");
  Open("mnuDovuSenden");
  auto& dialog = driver_.Find(QStringLiteral("frmDovu"));
  QTimer::singleShot(100, &dialog, [&] { album_.Shoot(dialog, "bus-sendet"); });
  driver_.Click(QStringLiteral("cmdSenden"));
  album_.Shoot(dialog, "senden-an-alle");
  const QString summary = driver_.Text(QStringLiteral("lblErgebnis"));
  Expect(summary.startsWith(QStringLiteral("2 gut, 0 falsch, 0 ohne Antwort")), "two are good");
  simulator_.Picture(album_.File("bus-wand"));
  driver_.Click(QStringLiteral("cmdAbbruch"));
  album_.Step("Die Nachbildungen aller Terminals.");
  driver_.Click(QStringLiteral("mnuAnsichtAnzeigen"));
  auto& wall = driver_.Find(QStringLiteral("frmAnzeigen"));
  album_.Shoot(wall, "nachbildungen");
  wall.close();
}

void BusTour::Select(int address) {
  driver_.Find<QSpinBox>(QStringLiteral("ctlUpDownAdrDovu")).setValue(address);
  driver_.Click(QStringLiteral("cmdDovuAktivieren"));
}

void BusTour::Equip() {
  album_.Step("Ein Ersatzgerät bekommt, was in einem anderen Terminal liegt.");
  Select(2);
  driver_.ShowTab(static_cast<int>(Tab::Macros));
  driver_.Click(QStringLiteral("mnuDateiNeu"));
  driver_.Type(QStringLiteral("txtMakro"), QStringLiteral("\x1bGC\x1bGTBereit\x04"));
  for (const char* number : {"7", "0"}) {
    driver_.Type(QStringLiteral("txtMakroNr"), QString::fromLatin1(number));
    driver_.Click(QStringLiteral("cmdSetMakro"));
  }
  Select(0);
  Open("mnuAusstatten");
  auto& dialog = driver_.Find(QStringLiteral("frmAusstatten"));
  driver_.Click(QStringLiteral("cmdAusstattenLesen"));
  album_.Shoot(dialog, "ausstatten-plan");
  driver_.OnDialog([](QDialog& box) { WindowDriver::Press(box, QStringLiteral("Ja")); });
  driver_.Click(QStringLiteral("cmdAusstatten"));
  album_.Shoot(dialog, "ausstatten");
  Expect(driver_.Text(QStringLiteral("lblAusstattenStand"))
             .startsWith(QStringLiteral("Alles ist geschrieben.")),
         "both macros are in the other Terminal");
  driver_.Click(QStringLiteral("cmdAusstattenSchliessen"));
}

void BusTour::WriteToMany() {
  album_.Step("Ein Makro geht geprüft an alle der Liste.");
  driver_.ShowTab(static_cast<int>(Tab::Macros));
  driver_.Choose(QStringLiteral("cboMakro"), QStringLiteral("Begrüßung"));
  driver_.Type(QStringLiteral("txtMakroNr"), QStringLiteral("1"));
  Open("cmdSetMakroAktive");
  auto& dialog = driver_.Find(QStringLiteral("frmSchreiben"));
  driver_.Click(QStringLiteral("cmdSchreiben"));
  album_.Shoot(dialog, "schreiben-an-viele");
  Expect(driver_.Text(QStringLiteral("lblSchreibenErgebnis"))
             .startsWith(QStringLiteral("2 geprüft, 1 bestätigt ohne Prüfsumme, 0 fehlgeschlagen")),
         "all have the macro");
  driver_.Click(QStringLiteral("cmdSchreibenAbbruch"));
}

// The record is another one than what was written, and the text mode is what was sent.
void BusTour::Compare() {
  album_.Step("Was gelesen, geschrieben und gespeichert ist, steht nebeneinander.");
  driver_.Type(QStringLiteral("txtMakro"), QStringLiteral("\x1bGC\x1bGTGuten Tag\x04"));
  driver_.OnDialog([](QDialog& box) { WindowDriver::Press(box, QStringLiteral("OK")); });
  driver_.OnDialog([](QDialog& box) { WindowDriver::Press(box, QStringLiteral("Ja")); });
  driver_.Click(QStringLiteral("mnuDateiSave"));
  Select(0);
  driver_.ShowTab(static_cast<int>(Tab::Text));
  driver_.Click(QStringLiteral("cmdSetText"));
  Open("mnuAnsichtVergleich");
  auto& dialog = driver_.Find(QStringLiteral("frmVergleich"));
  driver_.Click(QStringLiteral("cmdVergleichLesen"));
  album_.Shoot(dialog, "vergleichen");
  Expect(driver_.Text(QStringLiteral("lblVergleich"))
             .startsWith(QStringLiteral("1 Terminal gelesen.")),
         "one is read");
  Open("cmdVergleichSchreiben");
  album_.Shoot(driver_.Find(QStringLiteral("frmSchreiben")), "vergleichen-schreiben");
  driver_.Click(QStringLiteral("cmdSchreibenAbbruch"));
  driver_.Click(QStringLiteral("cmdVergleichSchliessen"));
}

}  // namespace kelvo

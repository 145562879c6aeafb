#include <QSpinBox>
#include <QTableView>

#include "bus/tick_list.h"
#include "tests/fakes/simulated_terminal.h"
#include "tests/pdf_text.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

class SheetWindowTest : public WindowTest {
 protected:
  SheetWindowTest() {
    port.characterTime = testing_world::nanoseconds(520'833);
    Sql("update Optionen set FirstRun = 0");
  }
  /// Opens the sheet and keeps it as a file: what is in that.
  QString Sheet(const char* opener) {
    if (auto* const action = window->findChild<QAction*>(QString::fromUtf8(opener))) {
      action->trigger();
    } else {
      Click(opener);
    }
    Rest();
    person.file = folder.Path("blatt.pdf");
    Click("cmdDatenblattPdf");
    Rest();
    return TextInPdf(*person.file);
  }
  void Rest() {
    while (Find<QProgressBar>("ctlDatenblattFortschritt").isVisible()) {
      QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
  }

  DeviceFonts fonts;
  testing_world::SimulatedLine line{loop, port};
};

TEST_F(SheetWindowTest, HoldsWhatWasWrittenAndAskedOfWhoIsChosenAndAsksNobody) {
  Sql("insert into DOVU values (5, 'Halle', 1, 1), (7, 'Pult', 1, 1)");
  for (const int address : {5, 7}) line.bus.Add({.address = address}, fonts)->PowerOn(loop.Now());
  Start();
  Find<QSpinBox>("ctlUpDownAdrDovu").setValue(5);
  Click("cmdDovuAktivieren");
  Show(Tab::Macros);
  Choose("cboMakro", "Rahmen");
  Click("cmdSetMakro");
  Show(Tab::Status);
  Click("cmdGetAdresse");
  Forget();
  const QString five = Sheet("mnuDateiDatenblatt");
  EXPECT_TRUE(five.contains(QStringLiteral("Halle, Adresse 5"))) << five.toStdString();
  EXPECT_FALSE(five.contains(QStringLiteral("Pult")));
  EXPECT_TRUE(five.contains(QStringLiteral("Makro 2 „Rahmen“")));
  EXPECT_TRUE(five.contains(QStringLiteral("Rechteck bis 239,127")));
  EXPECT_TRUE(five.contains(QRegularExpression(QStringLiteral("Adresse\\s\\S*5\\sgelesen \\d"))));
  EXPECT_TRUE(five.contains(QStringLiteral("19200 Bit/s")));
  EXPECT_TRUE(five.contains(QStringLiteral("simulator.tty")));
  EXPECT_TRUE(port.written.empty());

  Show(Tab::Terminals);
  Find<QTableView>("ctlDovuListe").selectRow(1);
  const QString seven = Sheet("cmdDovuDatenblatt");
  EXPECT_TRUE(seven.contains(QStringLiteral("Pult, Adresse 7")));
  EXPECT_FALSE(seven.contains(QStringLiteral("Halle")));
  EXPECT_TRUE(port.written.empty());
}

TEST_F(SheetWindowTest, WithoutAnyListItIsTheOneAtTheLine) {
  Start();
  const QString text = Sheet("mnuDateiDatenblatt");
  EXPECT_TRUE(Find<TickList>("ctlDatenblattListe").Ticked(0));
  EXPECT_TRUE(text.contains(QStringLiteral("Terminal ohne Namen"))) << text.toStdString();
  EXPECT_TRUE(text.contains(QStringLiteral("Begrüßung"))) << "of the database";
}

}  // namespace
}  // namespace kelvo

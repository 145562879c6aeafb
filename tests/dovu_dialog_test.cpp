#include <QSpinBox>
#include <QTableView>
#include <QTreeWidget>

#include "bus/frmDovu.h"
#include "tests/fakes/simulated_terminal.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

class DovuDialogTest : public WindowTest {
 protected:
  void Begin() {
    Sql("insert into DOVU (Adresse, Bezeichnung, Checksum, aktiv) values "
        "(3, 'Tor', 1, 1), (7, 'Pult', 1, 0), (9, 'alt', 0, 1)");
    port.characterTime = testing_world::nanoseconds(520'833);
    for (const int address : {3, 7, 9}) {
      line.bus.Add({.address = address}, fonts)->PowerOn(loop.Now());
    }
    Start();
    Show(Tab::Terminals);
    Click("cmdDovuSenden");
    Forget();
  }
  QTreeWidget& Entries() { return Find<QTreeWidget>("ctlDovuAktivliste"); }
  std::string Entry(int index) {
    const QTreeWidgetItem& item = *Entries().topLevelItem(index);
    return (item.checkState(0) == Qt::Checked ? "*" : "") + item.text(0).toStdString() + "|" +
           item.text(3).toStdString();
  }
  QColor Colour(int index) { return Entries().topLevelItem(index)->foreground(0).color(); }

  DeviceFonts fonts;
  testing_world::SimulatedLine line{loop, port};
};

TEST_F(DovuDialogTest, ListsTheStoredTerminalsAndTicksTheActiveOnes) {
  Begin();
  EXPECT_EQ(Entry(0) + Entry(1) + Entry(2), "*Tor|Pult|*alt|");
  EXPECT_FALSE(Find("lblMomentbitte").isVisible());
  Click("cmdDovuAlleAktiv");
  EXPECT_EQ(Entry(1), "*Pult|");
  Click("cmdDovuKeinsAktiv");
  EXPECT_EQ(Entry(0) + Entry(1) + Entry(2), "Tor|Pult|alt|");
  Click("cmdAbbruch");
  EXPECT_FALSE(Find("frmDovu").isVisible());
  Trigger("mnuDovuSenden");
  EXPECT_EQ(Entry(0), "*Tor|");
}

TEST_F(DovuDialogTest, SendsAndColoursAndSendsTheFailedOnesAgain) {
  Begin();
  line.bus.At(0).SetFault(sim::Fault::Silent);
  loop.After(milliseconds(20), [this] {
    EXPECT_TRUE(Find("lblMomentbitte").isVisible());
    EXPECT_FALSE(Find("cmdSenden").isEnabled());
  });
  Click("cmdSenden");
  EXPECT_EQ(Entry(0), "*Tor|keine Antwort");
  EXPECT_EQ(Colour(0), QColor(255, 0, 0));
  EXPECT_EQ(Entry(1), "Pult|");
  EXPECT_EQ(Entry(2), "alt|gesendet, keine Prüfung möglich");
  EXPECT_TRUE(Text("lblErgebnis")
                  .starts_with("0 gut, 0 falsch, 1 ohne Antwort, 1 Terminal ohne Prüfung. Keines "
                               "ist mehr gewählt; „Terminal wählen“ wählt wieder eines. ("))
      << Text("lblErgebnis");
  EXPECT_FALSE(Text("lblErgebnis").ends_with("Durchgang)"));
  EXPECT_FALSE(Find("lblMomentbitte").isVisible());
  line.bus.At(0).SetFault(sim::Fault::None);
  Forget();
  Click("cmdSenden");
  EXPECT_EQ(Entry(0).substr(0, 8), "Tor|gut,");
  EXPECT_EQ(Colour(0), QColor(0, 128, 0));
  EXPECT_EQ(Written(), "←!A3;←C!←GC←!C0;←C?←!A254;");
  EXPECT_TRUE(Text("lblErgebnis").ends_with(", 2. Durchgang)"));
  EXPECT_TRUE(person.messages.empty());
}

TEST_F(DovuDialogTest, IsStoppedByItsButtonAndByItsFrame) {
  Begin();
  Click("cmdDovuAlleAktiv");
  Entries().topLevelItem(2)->setCheckState(0, Qt::Unchecked);
  loop.After(milliseconds(10), [this] {
    Click("cmdAbbruch");
    EXPECT_FALSE(Find("cmdAbbruch").isEnabled());
    Click("cmdDovuAnhalten");
    EXPECT_EQ(Find("frmDovu").focusWidget(), &Find("ctlDovuAktivliste"));
  });
  Find("cmdSenden").setFocus();
  Click("cmdSenden");
  EXPECT_EQ(Entry(1), "*Pult|offen");
  EXPECT_TRUE(port.written.ends_with("\x1b!A254;"));
  EXPECT_TRUE(Find("frmDovu").isVisible());
  EXPECT_EQ(Find("frmDovu").focusWidget(), &Find("cmdSenden"));
  EXPECT_FALSE(Find("cmdDovuAnhalten").isEnabled());
  loop.After(milliseconds(10), [this] { Find("frmDovu").close(); });
  Click("cmdSenden");
  EXPECT_FALSE(Find("frmDovu").isVisible());
  EXPECT_TRUE(port.written.ends_with("\x1b!A254;"));
}

TEST_F(DovuDialogTest, DrawingThatCannotBeTranslatedIsNotSentAsAnEmptyOne) {
  Sql("insert into DOVU (Adresse, Bezeichnung, Checksum, aktiv) values (3, 'Tor', 1, 1)");
  Database database(folder.Path("kelvo.mdb"));
  const Recordset terminals(database, "DOVU");
  Exchange exchange(port, loop, tmrTimeout, tmrRS485);
  port.Open();
  frmDovu dialog({exchange, loop, person, terminals, [] { return std::nullopt; }});
  dialog.Open();
  auto& send = *dialog.findChild<QPushButton*>(QStringLiteral("cmdSenden"));
  send.click();
  EXPECT_EQ(port.written, "");
  EXPECT_TRUE(send.isEnabled());
}

TEST_F(DovuDialogTest, LostLineAndClosedProgramEndIt) {
  Begin();
  loop.After(milliseconds(8), [this] { port.Lose(); });
  Click("cmdDovuAlleAktiv");
  Click("cmdSenden");
  EXPECT_EQ(Entry(0), "*Tor|keine Antwort");
  EXPECT_NE(Text("lblErgebnis").find("ging verloren"), std::string::npos);
  Forget();
  Click("cmdSenden");
  EXPECT_EQ(person.LastMessage(), "stellen Sie zuerst eine Schnittstelle ein            ");
  EXPECT_TRUE(Find("frmDovu").isVisible());
  EXPECT_EQ(Entry(0), "*Tor|keine Antwort") << "what came of it stays";
  Find("frmDovu").close();
  Choose("cboCom_13", "Com 6");
  Trigger("mnuDovuSenden");
  loop.After(milliseconds(8), [this] { window->close(); });
  Click("cmdSenden");
  EXPECT_FALSE(Find("frmDovu").isVisible());
}

class BusWindowTest : public DovuDialogTest {
 protected:
  void Search(const char* last) {
    Type("txtmaxDovu", last);
    Click("cmdDovusuchen");
  }
  int Listed() { return Find<QTableView>("ctlDovuListe").model()->rowCount(); }
};

TEST_F(BusWindowTest, ToolbarDeletesTheCurrentTerminalWithoutAsking) {
  Begin();
  Find<QTableView>("ctlDovuListe")
      .setCurrentIndex(Find<QTableView>("ctlDovuListe").model()->index(1, 1));
  EXPECT_EQ(Find<QSpinBox>("ctlUpDownAdrDovu").value(), 7);
  Click("cmdToolbar_12");
  EXPECT_EQ(Stored("DOVU", "Bezeichnung", 1), "alt");
  EXPECT_EQ(Find<QSpinBox>("ctlUpDownAdrDovu").value(), 9);
  Click("cmdToolbar_12");
  Trigger("mnuBearbeitenloeschen");
  Click("cmdToolbar_12");
  EXPECT_EQ(Listed(), 0);
  EXPECT_TRUE(person.questions.empty());
  // But it can be taken back.
  for (int i = 0; i < 3; ++i) Trigger("mnuBearbeitenRueckgaengig");
  EXPECT_EQ(Listed(), 3);
  EXPECT_FALSE(Find<QAction>("mnuBearbeitenRueckgaengig").isEnabled());
  person.answers = {true};
  Click("cmdClearDovuData");
  EXPECT_EQ(Listed(), 0);
  Trigger("mnuBearbeitenRueckgaengig");
  EXPECT_EQ(Listed(), 3);
}

TEST_F(BusWindowTest, PortIsReopenedAsItWas) {
  Begin();
  const int opened = port.opened;
  Find<QComboBox>("cboCom_0").setCurrentIndex(0);
  Search("0");
  EXPECT_EQ(port.opened, opened + 1);
  EXPECT_EQ(port.settings, "19200,N,8,1");
}

TEST_F(BusWindowTest, LostDeviceAndClosedWindowEndTheSearch) {
  Begin();
  loop.After(milliseconds(700), [this] {
    EXPECT_FALSE(Find<QAction>("mnuDovuSenden").isEnabled());
    port.Lose();
  });
  Search("99");
  EXPECT_EQ(Find<QTreeWidget>("ctlDovuSuchListe").topLevelItemCount(), 1);
  EXPECT_NE(Text("lblDovuStand").find("ging verloren"), std::string::npos);
  EXPECT_EQ(person.notices.size(), 1U);
  Choose("cboCom_13", "Com 6");
  loop.After(milliseconds(700), [this] { window->close(); });
  Search("99");
  EXPECT_FALSE(port.IsOpen());
}

}  // namespace
}  // namespace kelvo

#include <QComboBox>
#include <QDialog>
#include <QSpinBox>
#include <QTimer>
#include <QWheelEvent>

#include "shell/port_dialog.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

class PortReturnTest : public WindowTest {
 protected:
  PortReturnTest() {
    machine.deviceReady = [this](const std::string&) { return ready; };
    machine.describeDevice = [](const std::string&) { return std::string("keine Berechtigung"); };
    machine.ports = [] {
      return std::vector<MachinePort>{{"/dev/ttyUSB0", "USB-Serial Controller"}};
    };
  }
  void Lose() {
    ready = false;
    port.Lose();
    port.written.clear();
  }
  void Later() { loop.RunFor(milliseconds(3000)); }
  bool ready = true;
};

TEST_F(PortReturnTest, LostDeviceIsOpenedAgainAsItWasAndNothingIsSent) {
  Start();
  Choose("cboCom_0", "1200");  // marked only
  Lose();
  EXPECT_NE(person.notices.at(0).find("von selbst"), std::string::npos);
  Later();
  EXPECT_FALSE(port.IsOpen());
  ready = true;
  {
    const Undertakings::Running running(person.Begun());
    Later();
    EXPECT_FALSE(port.IsOpen()) << "in the middle of something";
  }
  Later();
  EXPECT_TRUE(port.IsOpen());
  EXPECT_EQ(port.number, 6);
  EXPECT_EQ(port.settings, "19200,N,8,1");
  EXPECT_EQ(Chosen("cboCom_13"), "Com 6");
  EXPECT_EQ(Text("lblAktivitaet"), "✓ Com 6 ist wieder da und wieder offen.");
  EXPECT_EQ(port.written, "");
  EXPECT_FALSE(tmrReturn.Enabled());
}

TEST_F(PortReturnTest, TheReturnBehindADialogIsSaidInThePlaceOfTheLoss) {
  Start();
  const Undertakings::Running running(person.Begun());
  const Undertakings::Resting resting(person.Begun());
  Lose();
  ready = true;
  Later();
  EXPECT_EQ(Text("lblAktivitaet"), "✓ Com 6 ist wieder da und wieder offen.");
}

TEST_F(PortReturnTest, OperatorDecidesOtherwise) {
  Start();
  Lose();
  Choose("cboCom_13", "Com 2");
  EXPECT_EQ(port.number, 2);
  ready = true;
  Later();
  EXPECT_EQ(port.number, 2);
  Lose();
  Choose("cboCom_13", "(keine)");
  ready = true;
  Later();
  EXPECT_FALSE(port.IsOpen());
  Choose("cboCom_13", "Com 2");
  Trigger("mnuOptionenWiederOeffnen");
  Lose();
  EXPECT_EQ(person.notices.back().find("von selbst"), std::string::npos);
  ready = true;
  Later();
  EXPECT_FALSE(port.IsOpen());
  window->close();
  window.reset();
  Start();
  EXPECT_FALSE(Find<QAction>("mnuOptionenWiederOeffnen").isChecked());
}

TEST_F(PortReturnTest, WhatWasPressedBeforeTheLossAsksForNoPort) {
  StartOn(Tab::Status);
  loop.After(milliseconds(100), [this] {
    Click("cmdGetPort");
    Click("cmdGetAdresse");
    Lose();
  });
  Click("cmdGetVersion");
  for (int i = 0; i < 5; ++i) QApplication::processEvents();
  EXPECT_EQ(person.notices.size(), 1u);
  EXPECT_TRUE(person.messages.empty()) << person.LastMessage();
}

// What runs by itself waits for no box, and no attempt that fails ends it.
TEST_F(PortReturnTest, NeitherABoxNorAFailedAttemptKeepsTheLostDeviceFromComingBack) {
  StartOn(Tab::Interfaces);
  Lose();
  port.openError = PortNotAvailable;
  Choose("cboCom_13", "Com 6");
  EXPECT_EQ(person.LastMessage(), "Schnittstelle nicht vorhanden");
  port.openError = PortOk;
  ready = true;
  Later();
  EXPECT_TRUE(port.IsOpen());
  Lose();
  person.duringMessage = [this] {
    ready = true;
    Later();
    EXPECT_TRUE(port.IsOpen()) << "while the box stands";
    EXPECT_EQ(port.written, "");
  };
  Click("cmdVerbinden");
  EXPECT_EQ(person.LastMessage(), "zuerst Anschluß wählen");
  EXPECT_TRUE(port.IsOpen());
}

TEST_F(PortReturnTest, ALossIsSaidAtTheStartOfASearchAndBehindTheDialogOfThePorts) {
  StartOn(Tab::Terminals);
  const auto comesBack = [this] {
    EXPECT_TRUE(person.messages.empty()) << person.LastMessage();
    EXPECT_NE(person.notices.back().find("ist verloren gegangen"), std::string::npos);
    port.gone = false;
    ready = true;
    Later();
    return port.IsOpen();
  };
  for (const char* search : {"cmdDovusuchen", "cmdDovuSchnellsuche"}) {
    person.notices.clear();
    port.gone = true;
    ready = false;
    port.openError = PortOk;
    Click(search);
    EXPECT_EQ(person.notices.size(), 1U) << search;
    EXPECT_TRUE(comesBack()) << search;
  }
  bool back = false;
  QTimer::singleShot(0, window.get(), [&] {
    Lose();
    back = comesBack();
    Find<QDialog>("frmAnschluesse").reject();
  });
  Trigger("mnuOptionenAnschluesse");
  EXPECT_TRUE(back) << "behind the dialog";
}

// The search opens the port that it began with, and leaves it as that was.
TEST_F(PortReturnTest, TheSearchForAConnectionGoesOnWithTheDeviceThatCameBack) {
  StartOn(Tab::Interfaces);
  loop.After(milliseconds(700), [this] { Lose(); });
  bool back = false;
  QTimer::singleShot(0, window.get(), [&] {
    auto& dialog = Find<QDialog>("frmVerbindungSuchen");
    Click("cmdSuchen");
    port.openError = PortNotAvailable;
    Click("cmdSuchen");
    EXPECT_EQ(person.LastMessage(), "Schnittstelle nicht vorhanden");
    port.openError = PortOk;
    ready = true;
    Later();
    back = port.IsOpen();
    port.Lose();
    loop.After(milliseconds(700), [this] { Click("cmdSuchenAbbrechen"); });
    Click("cmdSuchen");
    EXPECT_EQ(Text("lblSuchenErgebnis"), "Abgebrochen, bis dahin nichts gefunden.");
    dialog.reject();
  });
  Click("cmdVerbindungSuchen");
  EXPECT_TRUE(back) << "behind the dialog";
  EXPECT_TRUE(port.IsOpen());
  EXPECT_EQ(Chosen("cboCom_13"), "Com 6");
}

TEST_F(PortReturnTest, RefusedPortIsExplainedWithItsDevice) {
  port.openError = PortNoPermission;
  Sql("update \"Default\" set schnittstelle = 2");
  std::string hint;
  person.duringMessage = [&] { hint = person.messages.back().hint; };
  Start();
  EXPECT_EQ(hint, "USB-Serial Controller, /dev/ttyUSB0: keine Berechtigung");
}

TEST_F(PortReturnTest, WhatCouldNotBeReadWithoutAPortDoesNotStayThatWayWithOne) {
  Start();
  Click("cmdVerbinden");
  Show(Tab::Text);
  EXPECT_EQ(Text("lblCursorStand"), "Anschluss geschlossen");
  EXPECT_EQ(Text("lblTextZoomStand"), "Anschluss geschlossen: kein Zoom gelesen");
  Click("cmdVerbinden");
  EXPECT_EQ(Text("lblCursorStand"), "noch nicht gelesen");
  EXPECT_EQ(Text("lblTextZoomStand"), "kein Zoom gelesen");
  Click("cmdGetAdresse");
  EXPECT_EQ(Text("lblAdresseStand"), "keine Antwort");
  Lose();
  ready = true;
  Later();
  EXPECT_EQ(Text("lblAdresseStand"), "noch nicht gelesen");
}

TEST_F(PortReturnTest, AllRowsOfADeviceSayTheSameOfItAndThatThereAreSeveral) {
  std::string state = "nicht vorhanden";
  machine.describeDevice = [&](const std::string&) { return state; };
  Start();
  auto& dialog = dynamic_cast<PortDialog&>(Find("frmAnschluesse"));
  port.Lose();
  dialog.Load();
  EXPECT_EQ(Text("lblZustand_5"), "nicht vorhanden");
  state = "bereit";
  Find<QComboBox>("cboGeraet_0").setEditText(QStringLiteral("simulator.tty"));
  EXPECT_EQ(Text("lblZustand_0"), "bereit; dasselbe Gerät wie Com 6");
  EXPECT_EQ(Text("lblZustand_5"), "bereit; dasselbe Gerät wie Com 1");
  Find<QComboBox>("cboGeraet_0").setEditText(QStringLiteral("COM9"));
  EXPECT_EQ(Text("lblZustand_5"), "bereit");
}

TEST_F(PortReturnTest, WheelChangesOnlyWhatHasTheFocus) {
  StartOn(Tab::Interfaces);
  auto& address = Find<QSpinBox>("ctlUpDownAdrDovu");
  auto& rate = Find<QComboBox>("cboCom_0");
  const auto wheel = [](QWidget& widget) {
    QWheelEvent event(QPointF(5, 5), widget.mapToGlobal(QPointF(5, 5)), {}, QPoint(0, 120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
  };
  Find("cmdSetCom2").setFocus();
  const int before = rate.currentIndex();
  wheel(rate);
  wheel(address);
  wheel(*address.findChild<QLineEdit*>());
  EXPECT_EQ(rate.currentIndex(), before);
  EXPECT_EQ(address.value(), 0);
  EXPECT_EQ(rate.focusPolicy(), Qt::StrongFocus);
  rate.setFocus();
  wheel(rate);
  EXPECT_EQ(rate.currentIndex(), before - 1);
  address.setFocus();
  wheel(address);
  EXPECT_EQ(address.value(), 1);
}

}  // namespace
}  // namespace kelvo

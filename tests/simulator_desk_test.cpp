#include "base/side_program.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

// Says where its port is half a second after its start, or gives up.
class FakeSimulator : public SideProgram {
 public:
  explicit FakeSimulator(testing_world::VirtualLoop& loop) : loop_(loop) {}
  std::string Start() override {
    ++starts;
    if (!refusal.empty()) return refusal;
    running = true;
    loop_.After(milliseconds(500), [this] {
      running = complaint.empty();
      if (running) said = "/x/simulator.tty\n";
    });
    return {};
  }
  bool Running() const override { return running; }
  std::string Said() const override { return said; }
  std::string Complained() const override { return complaint; }
  void End() override { running = false; }

  int starts = 0;
  bool running = false;
  std::string refusal, complaint, said;

 private:
  testing_world::VirtualLoop& loop_;
};

class SimulatorDeskTest : public WindowTest {
 protected:
  SimulatorDeskTest() {
    machine.simulator = &simulator;
    machine.deviceReady = [this](const std::string& device) { return device == ready; };
    port.openError = PortNotAvailable;
    loop.After(milliseconds(500), [this] { port.openError = PortOk; });
  }
  FakeSimulator simulator{loop};
  std::string ready;
};

TEST_F(SimulatorDeskTest, IsStartedConnectedAndEndsWithTheProgram) {
  Start();
  EXPECT_FALSE(port.IsOpen());
  Click("cmdSimulatorStarten");
  EXPECT_TRUE(port.IsOpen());
  EXPECT_EQ(port.number, 6);
  EXPECT_EQ(Text("lblAktivitaet"), "✓ Mit dem Simulator verbunden.");
  EXPECT_EQ(port.written, "");
  Click("cmdSimulatorStarten");
  EXPECT_EQ(simulator.starts, 1);
  EXPECT_EQ(port.opened, 1);
  window->close();
  EXPECT_FALSE(simulator.running);
}

TEST_F(SimulatorDeskTest, GoesOnWhenItIsToAndOneThatIsThereIsTaken) {
  Start();
  Trigger("mnuOptionenSimulatorBehalten");
  Trigger("mnuOptionenSimulator");
  window->close();
  EXPECT_TRUE(simulator.running);
  window.reset();
  simulator.running = false;
  ready = folder.Path("simulator.tty");
  Start();
  EXPECT_TRUE(Find<QAction>("mnuOptionenSimulatorBehalten").isChecked());
  Trigger("mnuOptionenSimulator");
  EXPECT_EQ(simulator.starts, 1);
}

TEST_F(SimulatorDeskTest, LeavesAnotherPortForTheSetThatNamesIt) {
  Sql("update \"Default\" set schnittstelle = 4");
  Sql("update Schnittstelle set Baud1 = '9600' where satznr = 1");
  port.openError = PortOk;
  Start();
  EXPECT_EQ(port.number, 3);
  Trigger("mnuOptionenSimulator");
  EXPECT_EQ(port.number, 6);
  EXPECT_EQ(port.settings, "9600,N,8,1");
  EXPECT_EQ(Stored("Schnittstelle", "ComNr", 3), "Com 3");
}

TEST_F(SimulatorDeskTest, SaysWhyItDoesNotStart) {
  Start();
  simulator.refusal = "Die Datei fehlt.";
  Click("cmdSimulatorStarten");
  EXPECT_EQ(person.LastMessage(), "Der Simulator ließ sich nicht starten.");
  EXPECT_TRUE(person.messages.back().hint.ends_with("Die Datei fehlt."))
      << person.messages.back().hint;
  simulator.refusal.clear();
  simulator.complaint = "kein Platz";
  Click("cmdSimulatorStarten");
  EXPECT_TRUE(person.messages.back().hint.ends_with("kein Platz"));
  simulator.complaint.clear();
  Sql("update Anschluss set Geraet = '' where ComNr = 6");
  Click("cmdSimulatorStarten");
  EXPECT_EQ(person.LastMessage(), "Kein Anschluss führt zum Simulator.");
  EXPECT_FALSE(port.IsOpen());
}

}  // namespace
}  // namespace kelvo

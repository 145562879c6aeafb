#include <QCloseEvent>
#include <QKeyEvent>
#include <QTableView>

#include "tests/fakes/foreign_lock.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

using testing_world::ForeignLock;
using testing_world::milliseconds;

/// The whole window, and another program that holds the database.
class DatabaseWaitTest : public WindowTest {
 protected:
  std::string Path() const { return folder.Path("kelvo.mdb"); }
  void StartAndEdit() {
    Sql("update Optionen set FirstRun = 0");
    StartOn(Tab::Macros);
    Type("txtMakro", "\x1bGC");
  }
  // Presses Esc, as the system tells it.
  void PressEscape() {
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &key);
  }
  QLabel* Note() { return window->findChild<QLabel*>(QStringLiteral("lblDatenbankWartet")); }
  void Save() {
    person.inputs = {"Geändert"};
    Trigger("mnuDateiSave");
  }
  std::string Told() const { return person.messages.empty() ? "" : person.messages[0].text; }
  std::chrono::nanoseconds TimeOf(const std::function<void()>& action) {
    const auto begin = loop.Now();
    action();
    return loop.Now() - begin;
  }
  // Closes the window as its cross does; true when the program ends.
  bool Close() {
    bool ended = false;
    QObject::connect(window.get(), &frmhaupt::Unloaded, window.get(), [&] { ended = true; });
    window->close();
    QApplication::processEvents();
    return ended;
  }
};

TEST_F(DatabaseWaitTest, SavingGoesOnWhenTheOtherLetsGoAndIsSaidOnlyWhenItLasts) {
  for (const char* lock : {"shared", "immediate", "exclusive"}) {
    for (const milliseconds held : {milliseconds(100), milliseconds(900)}) {
      SCOPED_TRACE(lock);
      StartAndEdit();
      ForeignLock other(Path(), lock);
      loop.After(held - milliseconds(50),
                 [&] { EXPECT_EQ(Note() != nullptr, held.count() > 300); });
      loop.After(held, [&] { other.Release(); });
      EXPECT_LT(TimeOf([&] { Save(); }), held + milliseconds(50));
      EXPECT_EQ(Told(), "");
      EXPECT_EQ(Note(), nullptr);
      EXPECT_EQ(Stored("select * from Makro where Bezeichnung = 'Geändert'", "wert"), "\x1bGC");
      Sql("delete from Makro where Bezeichnung = 'Geändert'");
      window.reset();
    }
  }
}

TEST_F(DatabaseWaitTest, EscapeGivesUpAndTheDraftIsKept) {
  StartAndEdit();
  const ForeignLock other(Path(), "shared");
  loop.After(milliseconds(500), [&] {
    const QString words = Note() == nullptr ? QString() : Note()->text();
    EXPECT_TRUE(words.startsWith(QStringLiteral("Die Datenbank ist von einem anderen Programm")));
    PressEscape();
  });
  EXPECT_LT(TimeOf([&] { Save(); }), milliseconds(600));
  EXPECT_NE(Told().find("belegt; es wurde nichts gespeichert."), std::string::npos) << Told();
  EXPECT_EQ(Editor("txtMakro"), "\x1bGC");
  EXPECT_TRUE(Find<QAbstractButton>("cmdMakroVerwerfen").isEnabled());
  EXPECT_LT(TimeOf([&] { Save(); }), milliseconds(10'100)) << "nobody waits for ever";
}

TEST_F(DatabaseWaitTest, AWindowThatIsClosedMeanwhileClosesWhenTheHandlerIsOver) {
  StartAndEdit();
  const ForeignLock other(Path(), "exclusive");
  bool ended = false;
  QObject::connect(window.get(), &frmhaupt::Unloaded, window.get(), [&] { ended = true; });
  loop.After(milliseconds(200), [&] {
    window->close();
    EXPECT_TRUE(person.questions.empty()) << "not in the middle";
  });
  person.decisions = {Decision::Discard};
  EXPECT_LT(TimeOf([&] { Save(); }), milliseconds(300));
  EXPECT_FALSE(ended);
  for (int i = 0; i < 10 && !ended; ++i) QApplication::processEvents();
  EXPECT_TRUE(ended);
}

TEST_F(DatabaseWaitTest, ClosingTakesASecondAtMostAndLosesNoDraft) {
  for (const char* lock : {"shared", "immediate", "exclusive"}) {
    SCOPED_TRACE(lock);
    StartAndEdit();
    {
      const ForeignLock other(Path(), lock);
      person.decisions = {Decision::Save};
      person.answers = {true};
      bool ended = false;
      EXPECT_LT(TimeOf([&] { ended = Close(); }), milliseconds(1000));
      EXPECT_TRUE(ended);
      EXPECT_EQ(person.questions.size(), 2u);
      EXPECT_NE(person.questions.back().find("Trotzdem beenden ?"), std::string::npos);
      EXPECT_EQ(Told(), "");
      window.reset();
    }
    person.answers = {true};  // what is left is taken up again
    Start();
    Show(Tab::Macros);
    EXPECT_EQ(Editor("txtMakro"), "\x1bGC");
    person.decisions = {Decision::Discard};
    EXPECT_TRUE(Close());
    window.reset();
    EXPECT_FALSE(std::filesystem::exists(folder.Path("kelvo.entwuerfe")));
  }
}

// Also with a record that was only begun, and when the system ends the program.
TEST_F(DatabaseWaitTest, ClosingIsNotKeptByWhatNobodyWouldMiss) {
  for (const bool bySystem : {false, true}) {
    Sql("update Optionen set FirstRun = 0");
    StartOn(Tab::Macros);
    Trigger("mnuDateiNeu");
    const ForeignLock other(Path(), "exclusive");
    const auto end = [&] { bySystem ? window->EndNow() : static_cast<void>(window->close()); };
    EXPECT_LT(TimeOf(end), milliseconds(1000));
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(Told(), "");
    window.reset();
  }
}

TEST_F(DatabaseWaitTest, WhatCannotBeReadStaysAsItWasRead) {
  Sql("update Optionen set FirstRun = 0");
  Sql("insert into DOVU values (3, 'Halle', 1, 1)");
  StartOn(Tab::Terminals);
  const ForeignLock other(Path(), "exclusive");
  const std::pair<Tab, const char*> pages[] = {{Tab::Macros, "cboMakro"},
                                               {Tab::Interfaces, "cboCom_0"}};
  for (const auto& [tab, list] : pages) {
    const auto before = Chosen(list);
    EXPECT_LT(TimeOf([&, tab = tab] { Show(tab); }), milliseconds(1100));
    EXPECT_NE(Told().find("belegt; sie lässt sich jetzt nicht lesen."), std::string::npos);
    EXPECT_EQ(Chosen(list), before);
    Forget();
  }
  Show(Tab::Macros);
  Click("chkMakroTyp_2");
  EXPECT_FALSE(Find<QAbstractButton>("chkMakroTyp_2").isChecked())
      << "what is saved takes its kind";
  Show(Tab::Terminals);
  auto& terminals = *Find<QTableView>("ctlDovuListe").model();
  ASSERT_EQ(terminals.rowCount(), 1);
  EXPECT_FALSE(terminals.setData(terminals.index(0, 1), QStringLiteral("neu"), Qt::EditRole));
  QApplication::processEvents();
  EXPECT_EQ(terminals.index(0, 1).data().toString().toStdString(), "Halle");
}

}  // namespace
}  // namespace kelvo

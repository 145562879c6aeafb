#include <QRegularExpression>
#include <QScreen>
#include <QSpinBox>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <filesystem>

#include "tests/fakes/full_disc.h"
#include "tests/window_fixture.h"
#include "widgets/data_control.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

class MainWindowTest : public WindowTest {};

TEST_F(MainWindowTest, FirstRunShowsTheWelcomePageAndEveryLaterOneTheDrawing) {
  Start();
  EXPECT_EQ(Find<QTabWidget>("cmdTab").currentIndex(), 8);
  EXPECT_EQ(Stored("Optionen", "FirstRun"), "0");
  window.reset();
  Start();
  EXPECT_EQ(Find<QTabWidget>("cmdTab").currentIndex(), 0);
  EXPECT_EQ(Stored("Optionen", "FirstRun"), "0");
}

TEST_F(MainWindowTest, AFirstStartOnAFullDiscIsSaidAndTheNextOneIsTheFirst) {
  std::string told;
  person.duringMessage = [&] { told += person.LastMessage(); };
  {
    const testing_world::FullDisc disc(50);
    Start();
  }
  EXPECT_NE(told.find("es wurde nichts gespeichert. / Form_Load"), std::string::npos) << told;
  EXPECT_TRUE(window->isVisible());
  person.duringMessage = {};
  window.reset();
  Start();
  EXPECT_EQ(Find<QTabWidget>("cmdTab").currentIndex(), 8);
}

TEST_F(MainWindowTest, EveryLinkOfTheWelcomePageLeadsSomewhere) {
  Start();
  QStringList names;
  for (const char* label : {"lblErsteSchritte", "lblWillkommenMehr"}) {
    auto& text = Find<QLabel>(label);
    static const QRegularExpression links(QStringLiteral("href=\"([^\"]*)\""));
    for (const auto& link : links.globalMatch(text.text())) {
      const QString target = link.captured(1);
      if (!target.startsWith(QStringLiteral("Tab"))) {
        EXPECT_NE(window->findChild<QObject*>(target), nullptr) << target.toStdString();
        continue;
      }
      Show(Tab::Welcome);
      Q_EMIT text.linkActivated(target);
      names += Find<QTabWidget>("cmdTab").tabText(Find<QTabWidget>("cmdTab").currentIndex());
    }
  }
  EXPECT_EQ(names.join(u' '), QStringLiteral("Schnittstellen Status Makros Zeichnung Terminals"));
  Show(Tab::Welcome);
  Forget();
  Q_EMIT Find<QLabel>("lblErsteSchritte").linkActivated(QStringLiteral("cmdVerbindungPruefen"));
  EXPECT_EQ(port.written, "\x1b?A\x1b?V");
}

// A name that looks like markup could make the program open what it points at.
TEST_F(MainWindowTest, TextFromOutsideIsShownAsItIs) {
  const std::string name = "<img src=\"fifo\">";
  for (const char* change :
       {"Makro set Bezeichnung", "DOVU set Bezeichnung", "DOVU set Adresse = 5, Bezeichnung"}) {
    Sql("update " + std::string(change) + " = '" + name + "'");
  }
  Start();
  for (int tab = 0; tab < Find<QTabWidget>("cmdTab").count(); ++tab) {
    Find<QTabWidget>("cmdTab").setCurrentIndex(tab);
    window->grab();
  }
  QToolTip::showText({}, QString::fromStdString(name), window.get());
  int labels = 0;
  for (QWidget* const widget : QApplication::allWidgets()) {
    const auto* const label = qobject_cast<QLabel*>(widget);
    if (label == nullptr || !label->testAttribute(Qt::WA_WState_Polished)) continue;
    ++labels;
    const bool isOwn =
        label->textFormat() == Qt::RichText && !label->text().contains(QStringLiteral("<img"));
    EXPECT_TRUE(label->textFormat() == Qt::PlainText || isOwn) << label->objectName().toStdString();
  }
  EXPECT_GT(labels, 100);
}

// A name may turn the writing, hide a part of it, or have no end.
TEST_F(MainWindowTest, NamesFromOutsideAreTameWhereTheyAreShownAndStayAsTheyAreStored) {
  Start();
  const int usual = window->minimumSizeHint().width();
  window.reset();
  const std::string name = "\u202Etxt.exe\u200B\u2066" + std::string(10'000, 'W');
  Sql("update Makro set Bezeichnung = '" + name + "'");
  Sql("insert into DOVU values (5, '" + name + "', 1, 1)");
  Start();
  Find<QSpinBox>("ctlUpDownAdrDovu").setValue(5);
  Click("cmdDovuAktivieren");
  window->setWindowTitle(QString::fromStdString(name));
  window->statusBar()->showMessage(QString::fromStdString(name));
  const auto isTame = [](const QString& text) {
    static const QRegularExpression wild(
        QStringLiteral("[\\x{200B}-\\x{200F}\\x{202A}-\\x{202E}\\x{2066}-\\x{2069}]|\\S{300}"));
    return !text.contains(wild);
  };
  int shown = 0;
  const auto look = [&] {
    for (QWidget* const widget : QApplication::allWidgets()) {
      if (!widget->isVisible()) continue;
      QStringList texts{widget->windowTitle()};
      if (const auto* const label = qobject_cast<QLabel*>(widget)) texts << label->text();
      if (const auto* const bar = qobject_cast<QStatusBar*>(widget)) texts << bar->currentMessage();
      if (const auto* const list = qobject_cast<QComboBox*>(widget)) texts << list->currentText();
      if (const auto* const view = qobject_cast<QAbstractItemView*>(widget)) {
        const auto* const items = qobject_cast<QStyledItemDelegate*>(view->itemDelegate());
        if (items != nullptr) texts << items->displayText(QString::fromStdString(name), {});
      }
      for (const QString& text : texts) {
        EXPECT_TRUE(isTame(text)) << widget->metaObject()->className() << " "
                                  << widget->objectName().toStdString();
        shown += text.contains(QChar(QChar::ReplacementCharacter)) ? 1 : 0;
      }
    }
  };
  for (int tab = 0; tab < Find<QTabWidget>("cmdTab").count(); ++tab) {
    Find<QTabWidget>("cmdTab").setCurrentIndex(tab);
    QApplication::processEvents();
    window->grab();
    look();
    EXPECT_LE(window->minimumSizeHint().width(), usual + 200) << tab;
  }
  Trigger("mnuAnsichtVergleich");
  Trigger("mnuAusstatten");
  QToolTip::showText({}, QString::fromStdString(name), window.get());
  QApplication::processEvents();
  look();
  EXPECT_GT(shown, 10);
  EXPECT_EQ(Stored("Makro", "Bezeichnung"), name);
}

TEST_F(MainWindowTest, FirstPaintOpensTheStoredPortAndSetsItUp) {
  Sql("update \"Default\" set schnittstelle = 4");
  Sql("update Schnittstelle set Parity1 = 'Space', StopBit1 = '2' where satznr = 4");
  Sql("update Optionen set rs485wait = 70");
  Start();
  EXPECT_TRUE(port.IsOpen());
  EXPECT_EQ(port.number, 3);
  EXPECT_EQ(port.settings, "19200,S,8,2");
  EXPECT_EQ(port.handshaking, Handshaking::RtsCts);
  EXPECT_EQ(tmrRS485.Interval(), milliseconds(70));
  EXPECT_TRUE(tmrTimeout.Enabled());
  EXPECT_EQ(Find<DataControl>("ctlComData").Caption(), QStringLiteral("4"));
  EXPECT_EQ(Stored("Default", "schnittstelle"), "4");
  EXPECT_NE(Text("lblPort").find("19200,S,8,2"), std::string::npos);
}

TEST_F(MainWindowTest, PortThatCannotBeOpenedLeadsToTheInterfacePage) {
  port.openError = PortNotAvailable;
  window = nullptr;
  Sql("update Optionen set FirstRun = 0");
  Start();
  EXPECT_EQ(Find<QTabWidget>("cmdTab").currentIndex(), 1);
  EXPECT_EQ(Chosen("cboCom_13"), "(keine)");
  EXPECT_EQ(Stored("Schnittstelle", "ComNr"), "Com 6");
}

TEST_F(MainWindowTest, WindowFitsTheScreenAndAllOfAPageCanBeReached) {
  Start();
  const QSize room = window->screen()->availableSize();
  EXPECT_TRUE(window->width() <= room.width() && window->height() < room.height());
  Show(Tab::Text);
  window->resize(640, 480);
  QApplication::processEvents();
  EXPECT_EQ(window->size(), QSize(640, 480));
  for (const char* control : {"Befehl", "cmdSetFesttext", "cmdSetText"}) {
    Find(control).setFocus();
    EXPECT_FALSE(Find(control).visibleRegion().isEmpty()) << control;
  }
}

TEST_F(MainWindowTest, NothingIsSqueezedInASmallWindowAndNoWindowIsLargerThanTheScreen) {
  Start();
  Show(Tab::Eeprom);
  for (const int width : {1000, 850, 640}) {
    window->resize(width, 500);
    QApplication::processEvents();
    for (const auto* const button :
         Find("cmdSetConfig").parentWidget()->parentWidget()->findChildren<QPushButton*>()) {
      EXPECT_GE(button->height(), button->sizeHint().height())
          << button->objectName().toStdString();
    }
  }
  const QSize room = window->screen()->availableSize();
  for (const char* const entry :
       {"mnuAusstatten", "mnuAnsichtVergleich", "mnuAnsichtDatenverkehr"}) {
    Trigger(entry);
  }
  for (const QWidget* const top : QApplication::topLevelWidgets()) {
    if (!top->isVisible() || top == window.get()) continue;
    EXPECT_EQ(top->size(), top->size().boundedTo(room)) << top->objectName().toStdString();
  }
}

TEST_F(MainWindowTest, WindowsComeBackWhereTheyWere) {
  Start();
  window->setGeometry(20, 60, 751, 602);
  window->close();
  window.reset();
  Start();
  EXPECT_EQ(window->geometry(), QRect(20, 60, 751, 602));
  // On a smaller screen they are as large as that.
  window->setGeometry(300, 300, 2000, 1500);
  window->close();
  window.reset();
  Start();
  const QSize screen = window->screen()->availableSize();
  EXPECT_EQ(window->size(), window->size().boundedTo(screen));
}

TEST_F(MainWindowTest, StoredRecordThatIsGoneLeavesTheEndOfTheRecords) {
  Sql("update \"Default\" set schnittstelle = 99");
  Start();
  EXPECT_EQ(Find<DataControl>("ctlComData").Caption(), QString());
  EXPECT_EQ(Stored("Default", "schnittstelle"), "99");
  // The page shows the first record, and the next start finds it.
  Show(Tab::Interfaces);
  EXPECT_EQ(Find<DataControl>("ctlComData").Caption(), QStringLiteral("1"));
  EXPECT_EQ(Stored("Default", "schnittstelle"), "1");
}

TEST_F(MainWindowTest, WriteProtectedDatabaseIsSaidOnceAndThePortStillOpens) {
  std::filesystem::permissions(folder.Path("kelvo.mdb"), std::filesystem::perms::owner_read);
  std::vector<std::string> shown;
  person.duringMessage = [&] { shown.push_back(person.LastMessage()); };
  Start();
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_NE(shown[0].find("schreibgeschützt"), std::string::npos);
  EXPECT_NE(shown[0].find(folder.Path("kelvo.mdb")), std::string::npos);
  Click("cmdVerbinden");
  Choose("cboCom_13", "Com 2");
  EXPECT_EQ(shown.size(), 2u);
  EXPECT_EQ(port.number, 2);
  EXPECT_TRUE(port.IsOpen());
}

TEST_F(MainWindowTest, MissingFontsAreSaid) {
  std::filesystem::remove(folder.Path("fonts"));
  std::string shown;
  person.duringMessage = [&] { shown = person.LastMessage(); };
  Start();
  EXPECT_NE(shown.find("0, 1, 2, 3, 4, 5, 6, 7, 8, 9"), std::string::npos);
}

TEST_F(MainWindowTest, OptionsAreStoredWhenTheyAreToggled) {
  Start();
  const std::pair<const char*, const char*> options[] = {
      {"mnuOptionenSofortSenden", "sofortsenden"}, {"mnuOptionenZoom", "FensterMitZoomen"}};
  for (const auto& [entry, field] : options) {
    EXPECT_FALSE(Find<QAction>(entry).isChecked());
    Trigger(entry);
    EXPECT_EQ(Stored("Optionen", field), "1");
  }
  window.reset();
  Start();
  for (const auto& [entry, field] : options) {
    EXPECT_TRUE(Find<QAction>(entry).isChecked()) << field;
    Trigger(entry);
    EXPECT_EQ(Stored("Optionen", field), "0");
  }
}

TEST_F(MainWindowTest, LostDeviceEndsTheWaitIsSaidOnceAndCanBeChosenAgain) {
  Start();
  loop.After(milliseconds(10), [&] { port.Lose(); });
  const auto start = loop.Now();
  Click("cmdSetConfig");
  EXPECT_EQ(loop.Now() - start, milliseconds(10));
  ASSERT_EQ(person.notices.size(), 1u);
  EXPECT_NE(person.notices[0].find("Com 6"), std::string::npos);
  EXPECT_EQ(Chosen("cboCom_13"), "(keine)");
  EXPECT_EQ(Text("lblPort"), "nicht verbunden");
  Show(Tab::Interfaces);  // the page's refresh does not bring the port's name back
  EXPECT_EQ(Chosen("cboCom_13"), "(keine)");
  Choose("cboCom_13", "Com 6");
  EXPECT_TRUE(port.IsOpen());
  EXPECT_NE(Text("lblPort").find("Com 6"), std::string::npos);
}

TEST_F(MainWindowTest, HeldLineAndRefusedWorkAreSaidAndThePortStaysOpen) {
  Start();
  EXPECT_TRUE(Find("lblLeitung").isHidden());
  port.held = true;
  Click("cmdDovuAktivieren");
  EXPECT_FALSE(Find("lblLeitung").isHidden());
  EXPECT_EQ(Text("lblLeitung"), "Leitung gehalten (Handshake): noch 5 Zeichen nicht abgenommen");
  port.held = false;
  Click("cmdDovuAktivieren");
  EXPECT_TRUE(Find("lblLeitung").isHidden());
  port.Fail("Input/output error");
  ASSERT_EQ(person.notices.size(), 1u);
  EXPECT_NE(person.notices[0].find("Input/output error"), std::string::npos);
  EXPECT_TRUE(port.IsOpen());
}

TEST_F(MainWindowTest, BusAddressIsSelected) {
  Start();
  Find<QSpinBox>("ctlUpDownAdrDovu").setValue(300);
  Click("cmdDovuAktivieren");
  EXPECT_EQ(Written(), "←!A255;");
}

TEST_F(MainWindowTest, ClosingTheWindowInTheMiddleAsksAndEndsTheEraseQuietly) {
  Start();
  QObject::connect(window.get(), &frmhaupt::Unloaded, window.get(), [&] { loop.closing = true; });
  terminal.Answer("\x1b?V", "1.9;");
  person.answers = {true, false, true};
  loop.After(milliseconds(200), [&] {
    Trigger("mnuDateiEnd");
    EXPECT_TRUE(port.IsOpen());
    EXPECT_TRUE(person.questions.back().starts_with("Das EEPROM wird gelöscht. Das Terminal"));
  });
  loop.After(milliseconds(400), [&] { Trigger("mnuDateiEnd"); });
  const auto start = loop.Now();
  Click("cmdClearEEprom");
  EXPECT_LT(loop.Now() - start, milliseconds(600));
  EXPECT_FALSE(port.IsOpen());
}

TEST_F(MainWindowTest, RestartOfAllTerminalsMakesTheirFlashUnknown) {
  terminal.Answer("\x1b?V", "2.10F;", milliseconds(5));
  StartOn(Tab::Status);
  EXPECT_NE(Text("lblTerminal").find("2.10F"), std::string::npos);
  Show(Tab::Macros);
  Forget();
  Show(Tab::Status);
  EXPECT_EQ(Written(), "");
  Click("cmdToolbar_0");
  EXPECT_EQ(Written(), ";♥♦←!A255;←R");
  Show(Tab::Macros);
  Forget();
  Show(Tab::Status);
  EXPECT_EQ(Written(), "←?V←F??");
}

TEST_F(MainWindowTest, TextModeIsSavedAsAMacroAndASentTextBlanksTheSystemInformation) {
  StartOn(Tab::Text);
  person.inputs = {"Schrift"};
  Click("cmdToolbar_11");
  EXPECT_EQ(Stored("select * from Makro where Bezeichnung = 'Schrift'", "wert"),
            "\x1BTF0;\x1BTA0;\x1BTM0;");
  Find<QPlainTextEdit>("lblSysInfo").setPlainText(QStringLiteral("alt"));
  Click("cmdSenden_1");
  EXPECT_EQ(Find<QPlainTextEdit>("lblSysInfo").toPlainText(), QString());
}

TEST_F(MainWindowTest, ToldToEndItAsksNothingAndKeepsTheDrafts) {
  Sql("update Optionen set FirstRun = 0");
  StartOn(Tab::Macros);
  Trigger("mnuDateiNeu");
  Type("txtMakro", "Entwurf");
  Show(Tab::AtKeyboard);
  Trigger("mnuDateiNeu");  // never used: goes
  window->EndNow();
  loop.closing = true;
  window->EndNow();  // told twice
  loop.closing = false;
  EXPECT_FALSE(window->isVisible());
  EXPECT_FALSE(port.IsOpen());
  EXPECT_TRUE(person.questions.empty());
  window.reset();
  EXPECT_EQ(Stored("select * from Makro where Bezeichnung = '(neuer Name)'", "typ"), "NULL");
  person.answers = {true};
  StartOn(Tab::Macros);
  EXPECT_EQ(Editor("txtMakro"), "Entwurf");
}

}  // namespace
}  // namespace kelvo

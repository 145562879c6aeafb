#include <fcntl.h>
#include <gtest/gtest.h>

#include <QAbstractItemModel>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QToolButton>
#include <filesystem>

#include "simulator/display_view.h"
#include "simulator/wall_window.h"
#include "simulator/window.h"
#include "tests/fakes/open_port.h"

namespace kelvo::sim {
namespace {

const std::string Esc = "\x1B";

/// A window on a station whose line nobody serves: the test is the only one who acts.
class SimulatorWindowTest : public ::testing::Test {
 protected:
  SimulatorWindowTest() {
    station.Wire().SetPaced(false);
    terminal.PowerOn(Station::Now());
    window.Refresh();
  }
  template <typename Control>
  Control& Named(const char* name) {
    auto* control = window.findChild<Control*>(QString::fromLatin1(name));
    if (control == nullptr) throw std::runtime_error(name);
    return *control;
  }
  /// The Terminal receives this, and the window shows what has come of it.
  void Send(const std::string& bytes) {
    for (const char byte : bytes) {
      terminal.Receive(static_cast<unsigned char>(byte), Station::Now());
    }
    window.Refresh();
  }
  /// What the host hears until a character `last`, or as far as it comes.
  std::string HeardUntil(char last) {
    station.With([](Bus&, Line&, Time) {});
    const Handle host(open(port.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    return testing_world::ReadUntil(host.Get(), {&last, 1});
  }
  void Type(int key, const QString& text) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(&Named<QWidget>("display"), &press);
  }

  QTemporaryDir folder;
  std::string port = folder.filePath(QStringLiteral("tty")).toStdString();
  Station station{port, DeviceFonts()};
  Terminal& terminal = *station.Add({});
  SimulatorWindow window{station, port, 0};
};

TEST_F(SimulatorWindowTest, SettingsReachTheTerminal) {
  Named<QLineEdit>("txtVersion").setText(QStringLiteral("1.9"));
  Q_EMIT Named<QLineEdit>("txtVersion").editingFinished();
  Named<QCheckBox>("chkFlash").setChecked(false);
  Named<QSpinBox>("txtAddress").setValue(7);
  Named<QComboBox>("cboEcho").setCurrentIndex(1);
  Named<QComboBox>("cboFault").setCurrentIndex(4);
  EXPECT_EQ(terminal.Setup().version, "1.9");
  EXPECT_FALSE(terminal.Setup().flash);
  EXPECT_EQ(terminal.Setup().address, 7);
  EXPECT_TRUE(terminal.Setup().echoQueries);
  EXPECT_EQ(terminal.Setup().fault, Fault::Late);
  Named<QComboBox>("cboEcho").setCurrentIndex(2);
  EXPECT_TRUE(station.Wire().Echo());
  EXPECT_FALSE(terminal.Setup().echoQueries);

  Named<QComboBox>("cboFault").setCurrentIndex(9);
  EXPECT_FALSE(std::filesystem::exists(port)) << "the adapter is pulled out";
  Named<QComboBox>("cboFault").setCurrentIndex(0);
  EXPECT_TRUE(std::filesystem::exists(port));
  EXPECT_EQ(terminal.Setup().fault, Fault::None);
}

TEST_F(SimulatorWindowTest, SettingsFollowTheTerminal) {
  terminal.SetVersion("3.1", true);
  terminal.SetFault(Fault::Nak);
  window.Refresh();
  EXPECT_EQ(Named<QLineEdit>("txtVersion").text(), QStringLiteral("3.1"));
  EXPECT_EQ(Named<QComboBox>("cboFault").currentIndex(), 2);
  // What is no version is not taken over.
  Named<QLineEdit>("txtVersion").setText(QStringLiteral("a;"));
  Q_EMIT Named<QLineEdit>("txtVersion").editingFinished();
  EXPECT_EQ(terminal.Setup().version, "3.1");
}

TEST_F(SimulatorWindowTest, PortsAreLampsAndSwitches) {
  Named<QCheckBox>("chkP1_7").setChecked(true);
  Named<QCheckBox>("chkP1_1").setChecked(true);
  EXPECT_EQ(terminal.P1(), 130);
  Send(Esc + "!P9;");
  for (int line = 0; line < 8; ++line) {
    const std::string name = "lampP0_" + std::to_string(line);
    const bool on = line == 0 || line == 3;
    EXPECT_EQ(Named<QWidget>(name.c_str()).accessibleName().endsWith(QStringLiteral("ein")), on);
  }
}

TEST_F(SimulatorWindowTest, KeysAndTypingAreSent) {
  EXPECT_FALSE(Named<QToolButton>("cmdKey_1_2").isEnabled());
  Send(Esc + "EWK3,80,31,32,33;" + Esc + "EMK3;" + Esc + "MC0,10,35,0,0,5;" + Esc + "ME");
  EXPECT_EQ(HeardUntil('\x06'), "\x06");
  EXPECT_EQ(Named<QToolButton>("cmdKey_0_2").text(), QStringLiteral("3"));
  Named<QToolButton>("cmdKey_0_2").click();
  Named<QToolButton>("cmdKey_1_2").click();
  EXPECT_EQ(HeardUntil('\x92'), "3\x92");
  Type(Qt::Key_A, QStringLiteral("a"));
  Type(Qt::Key_Return, QStringLiteral("\r"));
  Type(Qt::Key_unknown, QStringLiteral("ü"));
  Type(Qt::Key_unknown, QStringLiteral("€"));  // no character of the Terminal
  Type(Qt::Key_Z, QStringLiteral("z"));
  EXPECT_EQ(HeardUntil('z'), "a\r\xFCz");
}

TEST_F(SimulatorWindowTest, PowerAndMemoryAreShown) {
  Send(Esc + "EWM7,abc\x03");
  EXPECT_EQ(Named<QProgressBar>("barEeprom").value(), 7);
  const QAbstractItemModel& log = *Named<QListView>("lstCommands").model();
  const QString last = log.data(log.index(log.rowCount() - 1, 0)).toString();
  EXPECT_TRUE(last.startsWith(QStringLiteral("<ESC>EWM7,abc"))) << last.toStdString();
  Named<QPushButton>("cmdPower").click();
  EXPECT_FALSE(terminal.Powered());
  window.Refresh();
  EXPECT_FALSE(Named<QPushButton>("cmdReset").isEnabled());
  Named<QPushButton>("cmdPower").click();
  EXPECT_TRUE(terminal.Powered());
}

TEST_F(SimulatorWindowTest, StoredBitmapsAreListedAndShown) {
  auto& list = Named<QListWidget>("lstBitmaps");
  auto& picture = Named<QLabel>("picBitmap");
  EXPECT_TRUE(list.isHidden());
  Send(Esc + "EWB7,1,2,FF81;" + Esc + "EWB9,-12,1,FFF0;");
  EXPECT_EQ(list.item(0)->text(), QStringLiteral("7: 8 x 2"));
  const QImage first = picture.pixmap().toImage();
  list.setCurrentRow(1);
  EXPECT_EQ(list.currentItem()->text(), QStringLiteral("9: 16 x 1"));
  const QImage second = picture.pixmap().toImage();
  EXPECT_NE(second, first);
  // Another one in front of it changes the list, not the choice; one that is larger than its room.
  Send(Esc + "EWB1,100,50," + std::string(10'000, 'A') + ";");
  EXPECT_EQ(list.currentRow(), 2);
  EXPECT_EQ(picture.pixmap().toImage(), second);
  list.setCurrentRow(0);
  EXPECT_EQ(picture.pixmap().width(), picture.width());
  Send(Esc + "EE");
  EXPECT_TRUE(list.isHidden());
}

class SimulatorWall : public ::testing::Test {
 protected:
  QTemporaryDir folder;
  std::string port = folder.filePath(QStringLiteral("tty")).toStdString();
  Station station{port, DeviceFonts()};
};

TEST_F(SimulatorWall, ShowsEachTerminalAndOpensItsWindow) {
  station.Add({.address = 3});
  Terminal& second = *station.Add({.checksum = false, .address = 9, .fault = Fault::Slow});
  WallWindow wall(station, port);
  const auto caption = [&wall](const char* name) {
    return wall.findChild<QPushButton*>(QString::fromLatin1(name))->text().toStdString();
  };
  EXPECT_EQ(caption("cmdTerminal_0"), "1: Adresse 3, Version 2.10");
  EXPECT_EQ(caption("cmdTerminal_1"),
            "2: Adresse 9, Version 2.10, ohne Prüfsumme, antwortet langsam");
  wall.findChild<QPushButton*>(QStringLiteral("cmdTerminal_1"))->click();
  SimulatorWindow& window = wall.Open(1);
  EXPECT_EQ(window.findChild<QSpinBox*>(QStringLiteral("txtAddress"))->value(), 9);
  window.findChild<QSpinBox*>(QStringLiteral("txtAddress"))->setValue(10);
  EXPECT_EQ(second.Setup().address, 10);
  wall.Refresh();
  EXPECT_EQ(caption("cmdTerminal_1").substr(0, 13), "2: Adresse 10");
}

TEST_F(SimulatorWall, SaysHowACaptureWent) {
  Station played({}, DeviceFonts());
  for (const int address : {3, 9}) played.Add({.address = address})->PowerOn(Station::Now());
  const Time at = std::chrono::hours(1);
  played.Play({.steps = {{}, {.line = 1, .at = at, .sent = Esc + "!A9;" + Esc + "?A"}}, .end = at});
  WallWindow wall(played, {});
  SimulatorWindow& window = wall.Open(1);
  const auto said = [](const QWidget& of) {
    return of.findChild<QLabel*>(QStringLiteral("lblPort"))->text().toStdString();
  };
  EXPECT_EQ(said(wall), "Eine Mitschrift wird abgespielt.");
  EXPECT_EQ(window.findChild<QComboBox*>(QStringLiteral("cboFault"))->currentText(), "keine");
  played.PlayAtOnce();
  wall.Refresh();
  EXPECT_EQ(said(window), "Mitschrift abgespielt. Antworten: 1, davon verschieden: 1");
  EXPECT_EQ(said(wall), said(window));
}

TEST_F(SimulatorWall, DisplayOutOfSightIsCaughtUpWithWhenItIsScrolledTo) {
  for (std::size_t i = 0; i < Bus::kMost; ++i) station.Add({})->PowerOn(Station::Now());
  WallWindow wall(station, port);
  wall.show();
  QCoreApplication::processEvents();
  auto& last = *wall.findChild<DisplayView*>(QStringLiteral("display_255"));
  const QImage before = last.grab().toImage();
  station.With([](Bus& bus, Line&, Time now) {
    for (const char c : Esc + "GP10,10;" + Esc + "GfR90,90;") {
      bus.At(255).Receive(static_cast<unsigned char>(c), now);
    }
  });
  wall.Refresh();
  auto& bar = *wall.findChild<QScrollArea*>()->verticalScrollBar();
  bar.setValue(bar.maximum());
  EXPECT_NE(last.grab().toImage(), before);
}

}  // namespace
}  // namespace kelvo::sim

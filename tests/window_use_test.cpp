// The program as it is used by somebody who knows nothing, over simulated Terminals of which some
// are switched off, refuse, or lose their line: what the window says that they show is held to what
// they show. More of it: KELVO_WINDOW_USES=1000.

#include <QDockWidget>
#include <QListWidget>
#include <QSpinBox>
#include <QTimer>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "graphics/wmf.h"
#include "simulator/screen.h"
#include "tests/drawing_samples.h"
#include "tests/fakes/simulated_terminal.h"
#include "tests/random_macros.h"
#include "tests/window_fixture.h"
#include "widgets/display_picture.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

constexpr int kUsesOfOne = 25;
constexpr QSize kTile(240, 128);

const DeviceFonts& Fonts() {
  static const DeviceFonts fonts = [] {
    DeviceFonts loaded;
    loaded.Load(KELVO_PROGRAM_DIR "/fonts");
    return loaded;
  }();
  return fonts;
}

/// The program with its own Terminals, and their past.
class RandomUse : public WindowTest {
 public:
  explicit RandomUse(unsigned number) : random_(number), drawings_(number) {
    port.characterTime = testing_world::nanoseconds(520'833);
    machine.deviceReady = [](const std::string&) { return true; };
    Sql("update Optionen set FirstRun = 0");
    const int count = random_.Number(1, 3);
    for (int i = 0; i < count; ++i) AddTerminal(2 * i + 3);
    QObject::connect(&answering_, &QTimer::timeout, [] { DismissWhatIsOpen(); });
    answering_.start(0);
    Start();
  }
  void TestBody() override {}

  void Use() {
    Answer();
    const std::size_t before = port.writes.size();
    Act();
    last_ += "; " + std::to_string(port.writes.size() - before) + " writes";
    loop.RunFor(milliseconds(2500));
    QApplication::processEvents();
    CloseOthers();
  }
  /// What is said to be reckoned against what the Terminals show.
  void Compare(const std::string& where) {
    const std::string context = where + ": " + last_;
    Refresh("dckAnzeige", "mnuAnsichtAnzeige");
    Refresh("frmAnzeigen", "mnuAnsichtAnzeigen");
    CompareDock(context);
    auto& wall = Find<QListWidget>("ctlAnzeigen");
    for (int row = 0; row < wall.count(); ++row) CompareTile(*wall.item(row), context);
    Find("frmAnzeigen").hide();
  }
  std::string LastWrites() const {
    std::string text;
    const std::size_t shown = std::min<std::size_t>(port.writes.size(), 25);
    for (std::size_t i = port.writes.size() - shown; i < port.writes.size(); ++i) {
      text += std::to_string(port.writeTimes[i] / milliseconds(1)) +
              " ms: " + ReadableText(port.writes[i]) + '\n';
    }
    return text;
  }
  int statements = 0;
  int doubts = 0;

 private:
  void AddTerminal(int address) {
    Sql("insert into DOVU (Adresse, Bezeichnung, Checksum, aktiv) values (" +
        std::to_string(address) + ", 'T', 1, 1)");
    const bool usual = random_.Chance(60);
    sim::Terminal& terminal = *line.bus.Add({.address = address,
                                             .width = usual ? 240 : random_.Number(40, 300),
                                             .height = usual ? 128 : random_.Number(30, 200)},
                                            Fonts());
    for (const int makro : {0, 2, 4}) {
      if (!random_.Chance(40)) continue;
      terminal.Memory().Write(sim::Eeprom::Kind::Macro, static_cast<unsigned char>(makro),
                              random_.Strokes(6));
    }
    terminal.PowerOn(loop.Now());
    for (const char byte : random_.Strokes(6)) {
      terminal.Receive(static_cast<unsigned char>(byte), loop.Now());
    }
    while (terminal.OutputReady()) terminal.TakeOutput();
  }

  static void DismissWhatIsOpen() {
    if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
    if (QWidget* modal = QApplication::activeModalWidget()) modal->close();
  }
  void CloseOthers() {
    for (QWidget* top : QApplication::topLevelWidgets()) {
      if (top != window.get() && top->isVisible()) top->close();
    }
  }
  // Whatever will be asked.
  void Answer() {
    const auto yes = [this] { return random_.Chance(70); };
    person.answers = {yes(), yes(), yes()};
    person.inputs.assign(2, std::to_string(random_.Number(0, 5)));
    person.decisions.assign(1, Decision::Discard);
    person.file.reset();
  }

  // What breaks in is the exception.
  void Act() {
    const int what = random_.Number(0, 99);
    if (what < 18) return SendDrawing();
    if (what < 36) return LookAround();
    if (what < 46) return WriteMakro(random_.Chance(50) ? "cmdSetMakro" : "cmdSetMakroGeprueft");
    if (what < 56) return PlayMakro();
    if (what < 64) return Say(random_.Strokes(10));
    if (what < 84) return PressAnything();
    if (what < 88) return SendToMany();
    if (what < 91) return Select();
    if (what < 93) return PressOn(Tab::Macros, "cmdToolbar_0");
    if (what < 95) return Lose();
    if (what < 97) return SwitchOff();
    if (what < 99) return Misbehave();
    StartAnew();
  }

  void PressOn(Tab tab, const char* button) {
    last_ = button;
    Show(tab);
    Click(button);
  }
  void SendDrawing() {
    Show(Tab::Drawing);
    const std::string path = folder.Path("drawing.wmf");
    std::ofstream(path, std::ios::binary) << WriteWmf(drawings_.Next(), 240, 128).bytes;
    person.file = path;
    Click("cmdToolbar_7");
    person.file.reset();
    PressOn(Tab::Drawing, "cmdToolbar_10");
  }
  void SendToMany() {
    Trigger("mnuDovuSenden");
    auto& send = Find<QPushButton>("cmdSenden");
    last_ = "to many";
    if (send.isEnabled()) send.click();
  }
  void WriteMakro(const char* button) {
    Show(Tab::Macros);
    std::string text = random_.Strokes(8);
    if (random_.Chance(30)) text += RandomMacros::Call(random_.Number(0, 4));
    Type("txtMakro", text);
    lastMakro_ = random_.Number(0, 4);
    Type("txtMakroNr", std::to_string(lastMakro_));
    PressOn(Tab::Macros, button);
  }
  void PlayMakro() {
    const int number = random_.Chance(70) ? lastMakro_ : random_.Number(0, 4);
    Type("txtMakroNrDisplay", std::to_string(number));
    PressOn(Tab::Macros, "cmdPlayMakro");
  }
  void Say(const std::string& commands) {
    Type("txtText", commands);
    PressOn(Tab::Text, random_.Chance(70) ? "cmdSenden_0" : "cmdSenden_1");
  }
  void Select() {
    const int address = random_.Chance(80)   ? Anybody().Setup().address
                        : random_.Chance(50) ? 255
                                             : 100;
    Find<QSpinBox>("ctlUpDownAdrDovu").setValue(address);
    last_ = "select " + std::to_string(address);
    Click("cmdDovuAktivieren");
    if (random_.Chance(60)) Click("cmdVerbindungPruefen");
  }
  // As at the beginning of a day's work.
  void LookAround() {
    if (random_.Chance(60)) Select();
    PressOn(Tab::Status, "cmdGetVersion");
    if (random_.Chance(50)) PressOn(Tab::Text, "cmdTextClear");
    if (random_.Chance(50)) SendDrawing();
  }
  sim::Terminal& Anybody() {
    return line.bus.At(
        static_cast<std::size_t>(random_.Number(0, static_cast<int>(line.bus.Count()) - 1)));
  }
  // It comes back by itself; in the middle of something or not.
  void Lose() {
    const auto lose = [this] {
      if (port.IsOpen()) port.Lose();
    };
    if (random_.Chance(50)) loop.After(milliseconds(random_.Number(1, 80)), lose);
    SendDrawing();
    last_ = "loss";
    lose();
    if (random_.Chance(50)) Anybody().PowerOn(loop.Now());
    loop.RunFor(milliseconds(5000));
  }
  // Noticed, because something is asked meanwhile.
  void SwitchOff() {
    sim::Terminal& terminal = Anybody();
    Find<QSpinBox>("ctlUpDownAdrDovu").setValue(terminal.Setup().address);
    Click("cmdDovuAktivieren");
    loop.RunFor(milliseconds(300));
    if (!terminal.Selected()) return;
    terminal.PowerOff();
    if (random_.Chance(50)) SendDrawing();
    Click("cmdVerbindungPruefen");
    if (random_.Chance(50)) PressOn(Tab::Text, "cmdTextClear");
    loop.RunFor(milliseconds(300));
    last_ = "off and on";
    terminal.PowerOn(loop.Now());
    if (random_.Chance(50)) Click("cmdVerbindungPruefen");
  }
  void Misbehave() {
    static constexpr std::array kFaults = {sim::Fault::Nak, sim::Fault::Silent, sim::Fault::Garbled,
                                           sim::Fault::Slow};
    sim::Terminal& terminal = Anybody();
    terminal.SetFault(kFaults[static_cast<std::size_t>(random_.Number(0, 3))]);
    random_.Chance(50) ? WriteMakro("cmdSetMakro") : PressAnything();
    loop.RunFor(milliseconds(1000));
    terminal.SetFault(sim::Fault::None);
  }
  void StartAnew() {
    if (random_.Chance(70)) window->close();
    window.reset();
    Start();
    last_ = "program started anew";
  }
  // Any button of any page but those that choose another line, with any fields.
  void PressAnything() {
    constexpr std::array kPages = {Tab::Drawing, Tab::Text,       Tab::Status,
                                   Tab::Eeprom,  Tab::AtKeyboard, Tab::MatrixKeyboard,
                                   Tab::Macros,  Tab::Terminals};
    Show(kPages[static_cast<std::size_t>(random_.Number(0, kPages.size() - 1))]);
    QWidget* const page = Find<QTabWidget>("cmdTab").currentWidget();
    for (int i = 0; i < 3; ++i) Fill(*page);
    const auto buttons = page->findChildren<QPushButton*>();
    if (buttons.isEmpty()) return;
    QPushButton* const button = buttons[random_.Number(0, static_cast<int>(buttons.size()) - 1)];
    last_ = button->objectName().toStdString();
    // The learning of keys waits for one.
    loop.After(milliseconds(4000), [this] { Click("cmdATumkodierenEnde"); });
    if (button->isVisible()) button->click();
  }
  void Fill(const QWidget& page) {
    const auto fields = page.findChildren<QWidget*>();
    for (int tries = 0; tries < 20; ++tries) {
      QWidget* const field = fields[random_.Number(0, static_cast<int>(fields.size()) - 1)];
      if (field->isVisible() && field->isEnabled() && FillOne(*field)) return;
    }
  }
  bool FillOne(QWidget& field) {
    const int number = random_.Chance(80) ? random_.Number(0, 6) : random_.Number(-5, 300);
    const std::string text = random_.Chance(70) ? std::to_string(number) : random_.Strokes(3);
    if (auto* const wire = qobject_cast<WireEdit*>(&field)) {
      wire->SetWire(random_.Strokes(6));
    } else if (auto* const edit = qobject_cast<QLineEdit*>(&field)) {
      edit->setText(QString::fromLatin1(text));
      Q_EMIT edit->editingFinished();
    } else if (auto* const box = qobject_cast<QComboBox*>(&field)) {
      if (box->count() > 0) box->setCurrentIndex(number < 0 ? 0 : number % box->count());
    } else if (auto* const tick = qobject_cast<QAbstractButton*>(&field);
               tick != nullptr && tick->isCheckable()) {
      tick->click();
    } else {
      return false;
    }
    return true;
  }

  // What has changed is shown at once by whoever becomes visible.
  void Refresh(const char* widget, const char* action) {
    loop.RunFor(milliseconds(300));
    Find(widget).hide();
    Trigger(action);
  }
  sim::Terminal* At(int address) {
    for (std::size_t i = 0; i < line.bus.Count(); ++i) {
      if (line.bus.At(i).Setup().address == address) return &line.bus.At(i);
    }
    return nullptr;
  }
  const sim::Terminal* OneThatListens() const {
    const sim::Terminal* one = nullptr;
    for (std::size_t i = 0; i < line.bus.Count(); ++i) {
      if (!line.bus.At(i).Selected()) continue;
      if (one != nullptr) return nullptr;
      one = &line.bus.At(i);
    }
    return one;
  }
  void CompareDock(const std::string& context) {
    const QString who = QString::fromStdString(Text("lblAnzeigeWer"));
    const QString state = QString::fromStdString(Text("lblAnzeigeStand"));
    if (!state.startsWith(u"Errechnet")) return;
    const qsizetype place = who.indexOf(u"Adresse ");
    const sim::Terminal* const real =
        place < 0 ? OneThatListens() : At(who.mid(place + 8).section(u' ', 0, 0).toInt());
    if (place < 0 && real == nullptr) return;  // several at once
    ASSERT_NE(real, nullptr) << context << ": " << who.toStdString();
    const sim::Screen& display = real->Display();
    const bool cursor = !state.contains(u"Cursor unbekannt");
    EXPECT_TRUE(Find<DisplayPicture>("ctlAnzeigeBild").Image() ==
                DisplayImage(cursor ? display.Picture(true) : display.Pixels()))
        << context << ": " << who.toStdString();
  }
  static QImage TileOf(const PixelMap& pixels) {
    QImage image = DisplayImage(pixels);
    if (image.width() > kTile.width() || image.height() > kTile.height()) {
      image = image.scaled(kTile, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    return image;
  }
  void CompareTile(const QListWidgetItem& tile, const std::string& context) {
    if (tile.text().endsWith(u"noch nicht angesprochen")) return;
    ++statements;
    if (!tile.text().endsWith(u"\nerrechnet")) {
      ++doubts;
      return;
    }
    const int address = tile.data(Qt::UserRole).toInt();
    const sim::Terminal* const real = At(address);
    ASSERT_NE(real, nullptr) << context << ": nobody has the address " << address;
    const QImage expected = TileOf(real->Display().Pixels());
    const QImage seen = tile.icon().pixmap(kTile).toImage().convertToFormat(expected.format());
    const QImage picture =
        seen.copy((kTile.width() - expected.width()) / 2, (kTile.height() - expected.height()) / 2,
                  expected.width(), expected.height());
    EXPECT_TRUE(picture == expected || picture == TileOf(real->Display().Picture(true)))
        << context << ", address " << address;
  }

  RandomMacros random_;
  RandomDrawings drawings_;
  std::string last_ = "start";
  int lastMakro_ = 1;
  testing_world::SimulatedLine line{loop, port};
  QTimer answering_;
};

TEST(WindowUse, WhatIsSaidOfTheDisplaysIsRight) {
  const char* const more = std::getenv("KELVO_WINDOW_USES");
  const int uses = more != nullptr ? std::atoi(more) : 2 * kUsesOfOne;
  int statements = 0;
  int doubts = 0;
  for (int run = 0; run * kUsesOfOne < uses && !testing::Test::HasFailure(); ++run) {
    RandomUse use(static_cast<unsigned>(run));
    for (int i = 0; i < kUsesOfOne && !testing::Test::HasFailure(); ++i) {
      use.Use();
      use.Compare("program " + std::to_string(run) + ", use " + std::to_string(i));
      if (testing::Test::HasFailure()) std::cout << use.LastWrites();
    }
    statements += use.statements;
    doubts += use.doubts;
  }
  std::cout << statements << " statements, unknown: " << 100 * doubts / std::max(1, statements)
            << " %\n";
  EXPECT_LT(doubts, statements) << "who doubts everything is never wrong";
}

}  // namespace
}  // namespace kelvo

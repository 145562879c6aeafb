#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLabel>
#include <QSpinBox>

#include "base/wire_text.h"
#include "graphics/text_typing.h"
#include "tests/drawing_samples.h"
#include "tests/grafik_desk.h"
#include "widgets/files.h"

namespace kelvo {
namespace {

class GrafikTyping : public Grafik {
 protected:
  TextTyping& Typing() const { return *Find<TextTyping>("txtZeichnungText"); }
  // As a keyboard does: the menus' shortcuts see each key first.
  void Type(const char* keys) { QTest::keyClicks(&Typing(), QString::fromLatin1(keys)); }
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(window->windowHandle(), key, modifiers);
  }
  using Grafik::Press;
  void BeginAt(Point at) {
    Do("toolText");
    Click(at);
  }
  std::string TextOf(std::size_t index) const { return Objects().at(index).text; }
  int Steps() const {
    int steps = 0;
    for (; Find<QAction>("mnuGrafikRueckgaengig")->isEnabled(); ++steps)
      Do("mnuGrafikRueckgaengig");
    return steps;
  }
};

TEST_F(GrafikTyping, LettersGoWhereTheCaretIsAndTheTextIsOneStep) {
  BeginAt({10, 100});
  EXPECT_TRUE(Typing().hasFocus());
  Type("Pxumpe");
  for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Right, Qt::Key_Delete, Qt::Key_Up}) Press(key);
  EXPECT_TRUE(Objects().empty());
  Press(Qt::Key_End);
  Type(" 12");
  Press(Qt::Key_Backspace);
  QApplication::clipboard()->setText(QString::fromUtf8("„Süd“\n"));
  Press(Qt::Key_V, Qt::ControlModifier);
  QInputMethodEvent dead;
  dead.setCommitString(QStringLiteral("â"));
  QApplication::sendEvent(&Typing(), &dead);
  QTest::sendKeyEvent(QTest::Click, &Typing(), Qt::Key_E, QStringLiteral("€"),
                      Qt::GroupSwitchModifier);
  EXPECT_EQ(person.beeps, 1);
  Press(Qt::Key_Return);
  ASSERT_EQ(Objects().size(), 1U);
  EXPECT_EQ(TextOf(0), *WireText("Pumpe 1\"Süd\" â"));
  EXPECT_TRUE(Canvas()->hasFocus());
  EXPECT_EQ(BoundsOf(Objects()[0]), (Box{10, 93, 10 + 14 * 8 - 1, 100}));
  EXPECT_EQ(Steps(), 1);
}

TEST_F(GrafikTyping, ShortcutsOfTheMenusAreTheLettersOwn) {
  DrawBoxes();
  BeginAt({10, 100});
  Type("ab");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Typing().text(), QString());
  Press(Qt::Key_Y, Qt::ControlModifier);
  Press(Qt::Key_A, Qt::ControlModifier);
  Do("mnuGrafikAusschneiden");
  Do("mnuGrafikEinfuegen");
  Do("mnuGrafikEinfuegen");
  EXPECT_EQ(Typing().text(), QStringLiteral("abab"));
  Press(Qt::Key_Tab);
  EXPECT_TRUE(Find<QComboBox>("cboTextStyle")->hasFocus());
  EXPECT_TRUE(Typing().Active());
  Do("mnuGrafikAlles");
  Do("mnuGrafikLoeschen");
  EXPECT_EQ(Objects().size(), 3U);
  Click({200, 100});  // no letters, no object; and the next one begins
  EXPECT_EQ(Objects().size(), 3U);
  EXPECT_TRUE(Typing().Active());
  Press(Qt::Key_Escape);
  EXPECT_FALSE(Typing().Active());
  EXPECT_EQ(Steps(), 3);
}

TEST_F(GrafikTyping, AttributesActAtOnceAndAreTheNextTextsToo) {
  Find<QSpinBox>("txtTextZoomX")->setValue(2);
  EXPECT_EQ(Find<QLabel>("lblTextZoom")->text(), "2 x 1");
  BeginAt({10, 100});
  Type("A");
  Find<QComboBox>("cboTextStyle")->setCurrentIndex(3);
  QTest::mouseClick(Find<QCheckBox>("ctlFontInvers"), Qt::LeftButton, {}, {6, 8});
  EXPECT_TRUE(Typing().hasFocus());
  Type("B");
  Click({120, 60});
  Type("C");
  Click({120, 20});
  ASSERT_EQ(Objects().size(), 2U);
  EXPECT_EQ(TextOf(0), "AB");
  EXPECT_EQ(BoundsOf(Objects()[0]), (Box{10, 85, 10 + 2 * 16 - 1, 100}));
  EXPECT_EQ(Objects()[0].style, (TextAttributes{.font = 3, .zoomX = 2, .inverse = true}));
  EXPECT_EQ(Objects()[0].style, Objects()[1].style);
  EXPECT_EQ(Objects()[0].penMode, PenMode::InverseText);
  EXPECT_EQ(window->CreatePic().substr(0, 35),
            "\x1bGP10,27;\x1bGF3;\x1bGZ2,1;\x1bGA4;\x1bGTAB\x04\x1bGP");
  EXPECT_EQ(Steps(), 2);
}

TEST_F(GrafikTyping, ATextThatIsThereIsTypedOnWhereItIsHit) {
  BeginAt({10, 100});
  Type("Tank");
  Press(Qt::Key_F2);
  QTest::mouseDClick(Canvas(), Qt::LeftButton, {}, Canvas()->ToWidget({10 + 2 * 8, 96}));
  Type("l");
  Press(Qt::Key_Return);
  Press(Qt::Key_F2);
  Type("er");
  Find<QSpinBox>("txtPosX")->setFocus();
  EXPECT_EQ(TextOf(0), "Talnker");
  Canvas()->setFocus();
  Press(Qt::Key_F2);
  Press(Qt::Key_A, Qt::ControlModifier);
  Press(Qt::Key_Delete);
  Press(Qt::Key_Escape);
  EXPECT_EQ(TextOf(0), "Talnker");
  Press(Qt::Key_Return);
  Do("mnuGrafikAlles");
  Do("mnuGrafikLoeschen");
  Press(Qt::Key_Return);
  EXPECT_TRUE(Objects().empty());
  EXPECT_EQ(Steps(), 4);
}

// What is typed belongs to the drawing before anything else happens to it.
TEST_F(GrafikTyping, WhateverElseHappensToTheDrawingEndsTheTypingWell) {
  const std::string path = folder.filePath(QStringLiteral("text.wmf")).toStdString();
  const std::pair<const char*, std::function<void()>> rows[] = {
      {"deleted", [&] { window->DeleteSelection(); }},
      {"cleared", [&] { window->Clear(); }},
      {"saved", [&] { Do("mnuGrafikSpeichern"); }},
      {"loaded", [&] { Do("mnuGrafikLaden"); }},
      {"resized", [&] { window->SetDisplaySize(128, 64); }},
      {"moved", [&] { Find<QSpinBox>("txtPosX")->setValue(33); }},
      {"reordered", [&] { Do("mnuGrafikHinten"); }},
      {"pen", [&] { Find<QAbstractButton>("optLoeschen")->click(); }},
      {"other tool", [&] { Do("toolLinie"); }},
      {"box", [&] { Do("mnuGrafikText"); }},
      {"sent", [&] { EXPECT_NE(window->CreatePic().find("GTab\x04"), std::string::npos); }},
      {"left", [&] {
         window->close();
         window->show();
       }}};
  for (const auto& [name, happens] : rows) {
    SCOPED_TRACE(name);
    Start();
    DrawBoxes();
    person.file = path;
    person.inputs = {std::nullopt};
    person.decisions = {Decision::Discard};
    BeginAt({10, 100});
    Type("ab");
    happens();
    EXPECT_FALSE(Typing().Active());
    while (Find<QAction>("mnuGrafikWiederholen")->isEnabled()) Do("mnuGrafikWiederholen");
    Typing().End();
    std::vector<std::string> texts;
    for (bool more = true; more && texts.empty();) {
      for (const DrawingObject& object : Objects()) {
        if (object.kind == Kind::Text) texts.push_back(object.text);
      }
      more = Find<QAction>("mnuGrafikRueckgaengig")->isEnabled();
      if (texts.empty()) Do("mnuGrafikRueckgaengig");
    }
    EXPECT_EQ(texts, std::vector<std::string>{"ab"});
  }
}

TEST_F(GrafikTyping, TheInputBoxMakesAndChangesTextsToo) {
  person.inputs = {{"Größe €"}, {"Größe"}, {"Dicke"}, {""}};  // no euro on the Terminal
  for (int i = 0; i < 3; ++i) Do("mnuGrafikText");
  ASSERT_EQ(Objects().size(), 1U);
  EXPECT_EQ(TextOf(0), "Dicke");
  EXPECT_EQ(person.beeps, 1);
  EXPECT_EQ(person.prompts, (std::vector<std::string>{
                                "Bitte Text eingeben :|", "Bitte Text eingeben :|Größe €",
                                "Bitte Text eingeben :|Größe", "Bitte Text eingeben :|Dicke"}));
}

}  // namespace
}  // namespace kelvo

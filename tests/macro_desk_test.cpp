#include <QListWidget>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>
#include <random>

#include "settings/macro_desk.h"
#include "settings/macro_edit.h"
#include "settings/macro_page.h"
#include "tests/page_fixture.h"
#include "tests/test_fonts.h"
#include "widgets/contrast.h"
#include "widgets/display_picture.h"

namespace kelvo {
namespace {

class MacroDeskTest : public PageTest {
 protected:
  MacroDeskTest() {
    page = &Put(
        new MacroPage({exchange, person, state, Records("Makro"), Records("Default"), TestFonts(),
                       nullptr, [] { return 1200; }, [this] { return present; }}));
    page->Records().SelectFirst();
    page->resize(1000, 640);
  }
  MacroEdit& Edit() { return Find<MacroEdit>("txtMakro"); }
  QListWidget& Letters() { return Find<QListWidget>("lstMakroBefehle"); }
  std::vector<std::string> Remarks() {
    auto& list = Find<QListWidget>("lstMakroHinweise");
    std::vector<std::string> remarks;
    for (int i = 0; i < list.count(); ++i) remarks.push_back(list.item(i)->text().toStdString());
    return remarks;
  }
  void PutCaret(int position) {
    QTextCursor cursor = Edit().textCursor();
    cursor.setPosition(position);
    Edit().setTextCursor(cursor);
  }
  QTextCharFormat FormatAt(int position) {
    for (const auto& range : Edit().document()->firstBlock().layout()->formats()) {
      if (range.start <= position && position < range.start + range.length) return range.format;
    }
    return {};
  }
  std::string Selected() { return Edit().textCursor().selectedText().toStdString(); }

  PresentTerminal present;
  MacroPage* page = nullptr;
};

TEST_F(MacroDeskTest, LettersAreOfferedAndWrittenOnlyWhenTheyAreChosen) {
  Type("txtMakro", "");
  Click("cmdInsertESC");
  EXPECT_TRUE(Letters().isVisible());
  EXPECT_GT(Letters().count(), 50);
  QTest::keyClicks(&Edit(), "Gf");
  ASSERT_EQ(Letters().count(), 2);
  EXPECT_EQ(Letters().item(0)->text().toStdString(), "GfR gefülltes Rechteck: X 0…239, Y 0…127");
  QTest::keyClick(&Edit(), Qt::Key_Return);  // nothing chosen: a line end like ever
  EXPECT_EQ(Editor("txtMakro"), "\x1bGf\r\n");
  EXPECT_FALSE(Letters().isVisible());
  QTest::keyClick(&Edit(), Qt::Key_Backspace);
  QTest::keyClick(&Edit(), Qt::Key_Down);
  QTest::keyClick(&Edit(), Qt::Key_Down);
  QTest::keyClick(&Edit(), Qt::Key_Return);
  EXPECT_EQ(Editor("txtMakro"), "\x1bGfE");
  Edit().undo();
  EXPECT_EQ(Editor("txtMakro"), "\x1bGf");
  QTest::keyClick(&Edit(), Qt::Key_Space, Qt::ControlModifier);
  EXPECT_TRUE(Letters().isVisible());
  QTest::keyClick(&Edit(), Qt::Key_Escape);
  EXPECT_FALSE(Letters().isVisible());
  QTest::keyClicks(&Edit(), "R1,2;");
  EXPECT_EQ(Editor("txtMakro"), "\x1bGfR1,2;");
  Click("cmdInsertTextende");
  EXPECT_EQ(Editor("txtMakro"), "\x1bGfR1,2;\x04");
}

TEST_F(MacroDeskTest, TheLineBelowSaysWhatTheCaretStandsIn) {
  Type("txtMakro", "ab\r\n\x1bGR10,20;\x1bGTxy\x04");
  const std::pair<int, const char*> places[] = {
      {1, "Text für das Display"},
      {4, "GR Rechteck: X 0…239, Y 0…127; Ende: „;“"},
      {6, "GR Rechteck: <b>X 0…239</b>, Y 0…127; Ende: „;“"},
      {8, "GR Rechteck: <b>X 0…239</b>, Y 0…127; Ende: „;“"},
      {9, "GR Rechteck: X 0…239, <b>Y 0…127</b>; Ende: „;“"},
      {12, "Text für das Display"},
      {15, "GT Grafiktext: <b>Text</b>; Ende: Textende ♦ (Code 4)"}};
  for (const auto& [position, words] : places) {
    PutCaret(position);
    EXPECT_EQ(Text("lblMakroParameter"), words) << position;
  }
}

TEST_F(MacroDeskTest, RemarksLeadToTheirPlaces) {
  Type("txtMakro", "\x1bGP1,2\r\n\x1bTF99;\x1bGL1;x");
  ASSERT_EQ(Remarks().size(), 3u);
  EXPECT_TRUE(Remarks()[1].starts_with("Fehler, Zeichen 12: Schrift 99")) << Remarks()[1];
  PutCaret(0);
  QTest::keyClick(&Edit(), Qt::Key_F8);
  QTest::keyClick(&Edit(), Qt::Key_F8);
  EXPECT_EQ(Selected(), "99");
  QTest::keyClick(&Edit(), Qt::Key_F8);
  EXPECT_EQ(Selected(), "←GL1;");
  QTest::keyClick(&Edit(), Qt::Key_F8);
  EXPECT_TRUE(Selected().starts_with("←GP1,2"));
  QTest::keyClick(&Edit(), Qt::Key_F8, Qt::ShiftModifier);
  EXPECT_EQ(Selected(), "←GL1;");
  auto& list = Find<QListWidget>("lstMakroHinweise");
  Q_EMIT list.itemActivated(list.item(1));
  EXPECT_EQ(Selected(), "99");
  Type("txtMakro", "\x1bGC");
  EXPECT_EQ(Remarks(), std::vector<std::string>{"Keine Anmerkungen zu diesem Text."});
  EXPECT_EQ(Written(), "");
}

TEST_F(MacroDeskTest, TheNumberAndTheDisplayCount) {
  Type("txtMakro", "\x1bR");
  Type("txtMakroNr", "0");
  EXPECT_TRUE(Remarks()[0].starts_with("Fehler")) << Remarks()[0];
  Type("txtMakroNr", "1");
  EXPECT_TRUE(Remarks()[0].starts_with("Warnung")) << Remarks()[0];
  Type("txtMakro", "\x1bGP300,0;");
  EXPECT_NE(Remarks()[0].find("0 bis 239 dieses Displays"), std::string::npos);
}

TEST_F(MacroDeskTest, ColoursFollowTheText) {
  Type("txtMakro", "\x1bGR1,x;");
  EXPECT_EQ(FormatAt(1).fontWeight(), QFont::Bold);
  EXPECT_NE(FormatAt(3).foreground().color(), FormatAt(1).foreground().color());
  EXPECT_EQ(FormatAt(3).underlineStyle(), QTextCharFormat::NoUnderline);
  EXPECT_EQ(FormatAt(5).underlineStyle(), QTextCharFormat::WaveUnderline);
  PutCaret(6);
  QTest::keyClick(&Edit(), Qt::Key_Backspace);
  QTest::keyClicks(&Edit(), "5");
  EXPECT_EQ(Editor("txtMakro"), "\x1bGR1,5;");
  EXPECT_EQ(FormatAt(5).underlineStyle(), QTextCharFormat::NoUnderline);
  Edit().undo();
  Edit().undo();
  EXPECT_EQ(Editor("txtMakro"), "\x1bGR1,x;");
  EXPECT_FALSE(page->Records().DraftNames().empty());
}

// Colours that follow what is typed are in the end those of the text as it is.
TEST(MacroDesk, ColoursAfterAnyChangeAreThoseOfTheWholeText) {
  std::minstd_rand random(7);
  const auto number = [&random](int most) {
    return std::uniform_int_distribution(0, most)(random);
  };
  static const char* const kTyped[] = {"\x1b", "GR", "1,5;", "x", "\r\n", "GTab\x04", ";"};
  const auto looks = [](const QTextDocument& document) {
    QList<QList<QTextLayout::FormatRange>> formats;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
      formats << block.layout()->formats();
    }
    return formats;
  };
  MacroDesk desk;
  MacroEdit& edit = desk.Editor();
  edit.SetWire("\x1bGP1,5;\x1bGL7,8;\r\nText\x1bGC\x1bGTab\x04");
  for (int step = 0; step < 300; ++step) {
    QTextCursor cursor(edit.document());
    cursor.setPosition(number(edit.document()->characterCount() - 1));
    const int selected = number(4);
    cursor.movePosition(QTextCursor::Right, QTextCursor::KeepAnchor, number(2) * selected);
    edit.setTextCursor(cursor);
    edit.InsertWire(number(2) == 0 ? "" : kTyped[number(std::size(kTyped) - 1)]);
    MacroEdit fresh;
    fresh.setPalette(edit.palette());
    fresh.SetWire(edit.Wire());
    fresh.ShowRemarks(edit.Wire(), CheckMacro(edit.Wire(), {}));
    ASSERT_EQ(looks(*edit.document()), looks(*fresh.document())) << step << edit.Wire();
  }
}

TEST_F(MacroDeskTest, EveryColourIsReadOnLightAndDark) {
  Type("txtMakro", "\x1bGR1,5;\x1bxx\x1bGTab\x04\r\x1bGP7,8;");
  for (const auto& [base, text] :
       {std::pair(Qt::white, Qt::black), std::pair(Qt::black, Qt::white)}) {
    QPalette palette;
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::Text, text);
    Edit().setPalette(palette);
    for (int at = 0; at < Edit().document()->firstBlock().length() - 1; ++at) {
      const QTextCharFormat format = FormatAt(at);
      const QColor colour = format.hasProperty(QTextFormat::ForegroundBrush)
                                ? format.foreground().color()
                                : QColor(text);
      EXPECT_GE(Contrast(colour, base), 3) << at << " " << colour.name().toStdString();
    }
    const QColor placeholder = Edit().palette().color(QPalette::PlaceholderText);
    EXPECT_EQ(placeholder.alpha(), 255);
    EXPECT_GE(Contrast(placeholder, base), 3);
    EXPECT_GE(Contrast(ReadableOn(base, QColor(0, 128, 0)), base), 4);
  }
}

TEST_F(MacroDeskTest, ThePreviewRunsWhatIsTypedAndFollowsKnownMacros) {
  const auto dots = [this] {
    const QImage& image = Find<DisplayPicture>("picVorschau").Image();
    int dark = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) dark += qGray(image.pixel(x, y)) < 100 ? 1 : 0;
    }
    return dark;
  };
  QApplication::processEvents();
  Type("txtMakro", "");
  EXPECT_EQ(dots(), 0);
  QTest::keyClicks(&Edit(), "ab");
  EXPECT_GT(dots(), 10);
  EXPECT_EQ(Text("lblVorschauKosten"),
            "Errechnet, nicht gelesen. 2 Zeichen, 0,02 s bei 1200 Bit/s; im EEPROM 2 Byte.");
  // "Rahmen" lies under 2.
  Type("txtMakro",
       ""
       "ECM2;");
  EXPECT_EQ(dots(), 2 * 240 + 2 * 126);
  EXPECT_FALSE(Find("lblVorschauHinweis").isVisible());
  Type("txtMakro",
       ""
       "ECM99;");
  EXPECT_NE(Text("lblVorschauHinweis").find("Makro 99"), std::string::npos);
  Click("chkVorschau");
  EXPECT_FALSE(Find("picVorschau").isVisible());
  Type("txtMakro", "");
  Click("chkVorschau");
  EXPECT_EQ(dots(), 0);
  EXPECT_EQ(Written(), "");
}

TEST_F(MacroDeskTest, ThePreviewBeginsOnThePresentPictureWhereThatIsKnown) {
  auto& start = Find<QComboBox>("cboVorschauStart");
  const auto can = [&start] {
    return start.model()->flags(start.model()->index(1, 0)).testFlag(Qt::ItemIsEnabled);
  };
  Type("txtMakro", "GP0,0;GL0,0;");
  EXPECT_FALSE(can());
  sim::Terminal terminal({.width = 60, .height = 40}, TestFonts());
  terminal.PowerOn({});
  present = {&terminal, false};
  page->Shown();
  EXPECT_TRUE(can());
  start.setCurrentIndex(1);
  EXPECT_EQ(Find<DisplayPicture>("picVorschau").Image().size(), QSize(60, 40));
  EXPECT_NE(Text("lblVorschauHinweis").find("nicht sicher"), std::string::npos);
  present.certain = true;
  page->Shown();
  EXPECT_FALSE(Find("lblVorschauHinweis").isVisible());
}

}  // namespace
}  // namespace kelvo

#include <QImage>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QToolButton>

#include "settings/text_mode.h"
#include "settings/text_page.h"
#include "settings/text_preview.h"
#include "tests/page_fixture.h"
#include "widgets/up_down.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

TEST(TextMode, CreateCursorBuildsOneCommandForEachKind) {
  for (const auto& [cursor, command] :
       std::initializer_list<std::pair<CursorSettings, std::string>>{
           {{0, 1, "5", "3", "4"}, "\x1B!c 0;\x1B!C 0;"},
           {{1, 1, "5", "3", "4"}, "\x1B!c 1,1;\x1B!C 1;\x1BTP3,4;"},
           {{2, 0, "5", "3", "4"}, "\x1B!c 2,0;\x1B!C 2;\x1BTP3,4;"},
           {{3, 1, "5", "10", "20"}, "\x1B!c 3,5;\x1B!C 3;\x1BGP10,20;"},
           {{4, 0, "0", "0", "0"}, "\x1B!c 4,0;\x1B!C 4;\x1BGP0,0;"},
           {{6, 1, "5", "1", "2"}, "\x1B!c 6,1;\x1B!C 6;\x1BGP1,2;"}}) {
    EXPECT_EQ(CreateCursor(cursor), command);
  }
}

TEST(TextMode, ReadsReplies) {
  EXPECT_EQ(ReadCursorShape(1, "1"), 1);
  EXPECT_EQ(ReadCursorShape(5, "7,1"), 1);
  // The comma is looked for from the second character on.
  EXPECT_EQ(ReadCursorShape(6, ",0,1"), 1);
  EXPECT_EQ(ReadCursorShape(2, "9"), std::nullopt);
  EXPECT_EQ(ReadCursorShape(3, "1"), std::nullopt);
  EXPECT_EQ(ReadCursorSize("3,12"), 12);
  EXPECT_EQ(ReadCursorSize("3"), 3);
  EXPECT_EQ(ReadPosition("12,34").x, 12);
  EXPECT_EQ(ReadPosition("12,34").y, 34);
  EXPECT_EQ(ReadPosition("7").y, 7);
  EXPECT_EQ(ReadPosition("TimeOut").x, 0);
  EXPECT_EQ(ReadDigit("42"), 4);
  EXPECT_EQ(ReadDigit(""), 0);
  EXPECT_EQ(ReadZoom("2,3").x, 2);
  EXPECT_EQ(ReadZoom("2,3").y, 3);
  EXPECT_EQ(ReadZoom("2,").y, 0);
}

DeviceFonts LoadedFonts() {
  DeviceFonts fonts;
  EXPECT_TRUE(fonts.Load(KELVO_PROGRAM_DIR "/fonts").empty());
  return fonts;
}

class TextPageTest : public PageTest {
 protected:
  TextPageTest() { page.resize(1000, 700); }

  static constexpr milliseconds kSoon{5};

  void AnswerAll(const std::string& kind, const std::string& shape, const std::string& position) {
    const std::pair<const char*, std::string> answers[] = {
        {"?C", kind},  {"?c", shape}, {"T?P", position}, {"G?P", position},
        {"T?F", "39"}, {"T?A", "5"},  {"T?M", "2"},      {"T?Z", "2,3"}};
    for (const auto& [query, reply] : answers) terminal.Answer(query, reply + ";", kSoon);
  }
  void ChooseIndex(const char* list, int index) { Find<QComboBox>(list).setCurrentIndex(index); }

  DeviceFonts fonts = LoadedFonts();
  TextPage& page = Put(new TextPage({exchange, person, fonts, new QWidget}));
};

TEST_F(TextPageTest, ListsNameWhatTheirPlaceInThemMeansAndThePreviewFollows) {
  const std::pair<const char*, std::vector<std::string>> lists[] = {
      {"cboCursor",
       {"aus", "blinkend an Text-Cursor-Position", "stehend an Text-Cursor-Position",
        "blinkendes Fadenkreuz an Grafik-Position", "stehendes Fadenkreuz an Grafik-Position",
        "blinkender Textcursor an Grafik-Position", "stehender Textcursor an Grafik-Position"}},
      {"cboTextStyle_0",
       {"8 x 8", "8 x 10", "8 x 14", "8 x 16", "4 x 6 Mini Zahlen", "8 x 8 fett", "8 x 10 fett",
        "8 x 14 fett", "8 x 16 fett", "16 x 32 Maxi Zahlen"}},
      {"cboTextStyle_1",
       {"Normal", "Unterstrichen", "Fett", "Fett+Unterstrichen", "Invers", "Unterstr.+Invers",
        "Fett+Invers", "Fett+Untersr.+Invers"}},
      {"cboTextStyle_2", {"Ersetzen", "Invertieren", "Löschen", "Setzen"}}};
  for (const auto& [list, entries] : lists) EXPECT_EQ(Entries(list), entries);
  TextPreview direct(fonts);
  Type("txtText", "Ab");
  for (int i = 0; i < 8; ++i) {
    ChooseIndex("cboTextStyle_0", i);
    ChooseIndex("cboTextStyle_1", i);
    ChooseIndex("cboTextStyle_2", i % 4);
    direct.Show(
        "Ab", {{i, 1, 1, (i & 2) != 0, (i & 4) != 0, (i & 1) != 0}, static_cast<TextMode>(i % 4)});
    const QImage shown = Find("ctlVorschau").grab().toImage();
    direct.resize(shown.size());
    EXPECT_EQ(shown, direct.grab().toImage().convertToFormat(shown.format())) << i;
  }
}

TEST_F(TextPageTest, AsksTheTerminalWhenItIsShown) {
  AnswerAll("5", "0,1", "12,34");
  page.Shown();
  Forget();
  EXPECT_EQ(Chosen("cboCursor"), "blinkender Textcursor an Grafik-Position");
  EXPECT_TRUE(Find<QRadioButton>("chkCursor_1").isChecked());
  EXPECT_EQ(Text("txtCursorX") + "/" + Text("txtCursorY"), "12/34");
  EXPECT_EQ(Chosen("cboTextStyle_0"), "8 x 16");
  EXPECT_EQ(Chosen("cboTextStyle_1"), "Unterstr.+Invers");
  EXPECT_EQ(Chosen("cboTextStyle_2"), "Löschen");
  EXPECT_EQ(Text("lblTextZoom_0") + Text("lblTextZoom_1"), "23");
}

TEST_F(TextPageTest, AsksForThePositionThatBelongsToTheKind) {
  page.Shown();
  Forget();
  for (const auto& [kind, query] : std::initializer_list<std::pair<const char*, const char*>>{
           {"0", "G?P"}, {"1", "T?P"}, {"2", "T?P"}, {"3", "G?P"}}) {
    AnswerAll(kind, "0,8", "1,2");
    Forget();
    Click("cmdGetCursor");
    EXPECT_EQ(port.written, std::string("\x1B?C\x1B?c\x1B") + query) << kind;
  }
  EXPECT_EQ(Text("txtCursorSize"), "8");
}

// The page gives way where it only fills itself, not where it was told to read.
TEST_F(TextPageTest, ReadsAllThatItWasToldToInHasteToo) {
  Forget();
  loop.After(milliseconds(10), [this] { Click("cmdGetText"); });
  Click("cmdGetCursor");
  QCoreApplication::processEvents();
  EXPECT_EQ(Written(), "←?C←?c←G?P←T?F←T?A←T?M←T?Z");
}

TEST_F(TextPageTest, SendsWhatThePageShows) {
  page.Shown();
  Forget();
  ChooseIndex("cboCursor", 1);
  EXPECT_EQ(Text("lblCursorX") + "/" + Text("lblCursorY"), "Spalte/Zeile");
  EXPECT_TRUE(Find("chkCursor_0").isVisible() && !Find("txtCursorSize").isVisible());
  Find<QRadioButton>("chkCursor_1").setChecked(true);
  Type("txtCursorX", "007");
  Type("txtCursorY", "x");
  Click("cmdSetCursor");
  EXPECT_EQ(Written(), ReadableText("\x1B!c 1,1;\x1B!C 1;\x1BTP7,0;"));
  Forget();
  Click("cmdSetCursorHome");
  EXPECT_EQ(Text("txtCursorX") + Text("txtCursorY"), "11");
  ChooseIndex("cboCursor", 3);
  EXPECT_EQ(Text("lblCursorX") + "/" + Text("lblCursorY"), "X-Pos/Y-Pos");
  EXPECT_TRUE(!Find("chkCursor_0").isVisible() && Find("txtCursorSize").isVisible());
  Click("cmdSetCursorHome");
  EXPECT_EQ(Text("txtCursorX") + Text("txtCursorY"), "00");
  ChooseIndex("cboCursor", 0);
  Click("cmdSetCursorHome");
  EXPECT_EQ(Written(), ReadableText("\x1BTH\x1BGH"));
}

TEST_F(TextPageTest, ZoomStaysWithinItsLimits) {
  page.Shown();
  Forget();
  ChooseIndex("cboTextStyle_0", 3);
  for (int step = 0; step < 12; ++step) {
    Click("ctlUpDown_0_Up");
    Click("ctlUpDown_1_Up");
  }
  Click("cmdSetText");
  EXPECT_EQ(Written(), ReadableText("\x1BTF3;\x1BTA0;\x1BTM0;\x1BTZ4,8;"));
  for (int step = 0; step < 12; ++step) Click("ctlUpDown_1_Down");
  EXPECT_EQ(Text("lblTextZoom_1"), "1");
  for (const int font : {4, 9}) {
    ChooseIndex("cboTextStyle_0", font);
    EXPECT_EQ(Text("lblTextZoom_0"), "1");
    EXPECT_FALSE(Find("ctlUpDown_0").isVisible());
    ChooseIndex("cboTextStyle_0", 0);
    EXPECT_TRUE(Find("ctlUpDown_1").isVisible());
  }
}

TEST_F(TextPageTest, ZoomThatIsNeitherReadNorChosenIsNotSent) {
  page.Shown();
  EXPECT_EQ(Text("lblTextZoom_0") + Text("lblTextZoom_1"), "00");
  EXPECT_TRUE(Text("lblTextZoomStand").starts_with("keine Antwort"));
  EXPECT_EQ(Text("lblCursorStand") + Text("lblTextStand"), "keine Antwortkeine Antwort");
  for (const char* button : {"cmdSetText", "cmdSenden_1"}) {
    Forget();
    Click(button);
    EXPECT_EQ(Written(), "←TF0;←TA0;←TM0;");
    EXPECT_NE(Text("lblTextZoomStand").find("nicht gesendet"), std::string::npos);
  }
  QApplication::processEvents();
  const int place = Find("cmdSetText").y();
  Click("ctlUpDown_0_Up");
  EXPECT_NE(Text("lblTextZoomStand"), "");
  Click("ctlUpDown_1_Up");
  EXPECT_EQ(Text("lblTextZoomStand"), "");
  QApplication::processEvents();
  EXPECT_EQ(Find("cmdSetText").y(), place) << "nothing moves";
  EXPECT_EQ(page.TextModeCommand(), "\x1BTF0;\x1BTA0;\x1BTM0;\x1BTZ1,1;");
  AnswerAll("0", "0", "1,1");
  Click("cmdGetText");
  EXPECT_EQ(Text("lblTextZoomStand"), "");
}

TEST_F(TextPageTest, WhatIsChangedByHandIsNotWhatWasRead) {
  AnswerAll("1", "1", "3,4");
  page.Shown();
  EXPECT_TRUE(Text("lblCursorStand").starts_with("gelesen")) << Text("lblCursorStand");
  Choose("cboTextStyle_1", "Fett");
  EXPECT_EQ(Text("lblTextStand"), "von Hand geändert");
  EXPECT_TRUE(Text("lblCursorStand").starts_with("gelesen"));
  auto& column = Find<QLineEdit>("txtCursorX");
  column.selectAll();
  QTest::keyClicks(&column, QStringLiteral("0"));
  EXPECT_EQ(Text("lblCursorStand"), "von Hand geändert");
  EXPECT_EQ(Text("lblCursorEinheit"), "ab 1 – die Werte liegen davor");
  Click("cmdSetCursor");
  EXPECT_EQ(Text("lblCursorStand"), "");
  Type("txtCursorX", "1");
  EXPECT_EQ(Text("lblCursorEinheit"), "ab 1");
}

TEST_F(TextPageTest, SendsTextAsItStands) {
  page.Shown();
  Forget();
  bool sent = false;
  QObject::connect(&page, &TextPage::TextSent, &page, [&sent] { sent = true; });
  ChooseIndex("cboTextStyle_0", 4);
  Type("txtText", "\x1BGCGr\xFC\xDF");
  Click("cmdSenden_1");
  EXPECT_EQ(port.written, "\x1BTF4;\x1BTA0;\x1BTM0;\x1BTZ1,1;\x1BGCGr\xFC\xDF");
  EXPECT_TRUE(sent);
  for (const char* button : {"cmdTextClear", "cmdTextClr2"}) {
    Type("txtText", "x");
    Forget();
    Click(button);
    EXPECT_EQ(port.written, "\x1BGC");
    EXPECT_EQ(Editor("txtText"), "");
  }
}

TEST_F(TextPageTest, FixedTextSelectsTerminalOneOrZero) {
  page.Shown();
  Forget();
  Click("chkFesttextB_0");
  Click("cmdSetFesttext");
  EXPECT_EQ(port.written, "");
  Click("chkFesttextA_0");
  Click("cmdSetFesttext");
  Click("chkFesttextA_1");
  Click("cmdSetFesttext");
  EXPECT_EQ(Written(), ReadableText("\x1B!A1;\x1B!A0;"));
}

TEST_F(TextPageTest, AppendsWhatTheTerminalSends) {
  page.Shown();
  Forget();
  Type("txtText", "ab");
  // The two halves of a line end may come apart.
  port.Arrive("\xE4\r");
  port.Arrive("\n\x1B;");
  EXPECT_EQ(Editor("txtText"), "ab\xE4\r\n\x1B;");
  EXPECT_EQ(Find<QPlainTextEdit>("txtText").toPlainText().toStdString(), "abä\n←;");
}

TEST(TextPreview, ShowsFontAttributeModeAndZoom) {
  const DeviceFonts fonts = LoadedFonts();
  TextPreview preview(fonts);
  preview.resize(300, 80);
  const auto picture = [&preview](const std::string& text, TextStyle style) {
    preview.Show(text, style);
    return preview.grab().toImage();
  };
  const QImage pictures[] = {
      picture("Ab", {}),
      picture("Ab", {{.font = 3}}),
      picture("Ab", {{.zoomX = 2}}),
      picture("Ab", {{.underline = true}}),
      picture("Ab", {{}, TextMode::Invert}),
      picture("Ab", {{}, TextMode::Clear}),
      picture("Ab", {{}, TextMode::Set}),
  };
  for (std::size_t i = 0; i < std::size(pictures); ++i) {
    for (std::size_t j = 0; j < i; ++j) EXPECT_NE(pictures[i], pictures[j]) << i << " " << j;
  }
  // An empty text, one of many rows and a zoom that the Terminal did not tell.
  picture("", {{0, 0, 0}});
  EXPECT_EQ(picture(std::string(3000, '\n') + "x", {}), picture("\n", {}));
  // The display is the Terminal's, not the desktop's.
  preview.setPalette(QPalette(Qt::black));
  EXPECT_EQ(picture("Ab", {}), pictures[0]);
}

}  // namespace
}  // namespace kelvo

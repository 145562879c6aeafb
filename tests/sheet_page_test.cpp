#include <QPrinter>

#include "bus/tick_list.h"
#include "sheet_page/sheet_dialog.h"
#include "sheet_page/sheet_output.h"
#include "sheet_page/sheet_view.h"
#include "tests/page_fixture.h"
#include "tests/pdf_text.h"
#include "tests/sheet_samples.h"
#include "tests/test_fonts.h"

namespace kelvo {
namespace {

// A text without anything that lines are parted by.
std::string Close(const QString& text) {
  QString close;
  for (const QChar sign : text) {
    if (!sign.isSpace()) close += sign;
  }
  return close.toStdString();
}

class SheetPagesTest : public testing::Test, protected SheetSample {
 protected:
  SheetPagesTest() {
    const TerminalId tor = AddTerminal(3,
                                       "Tor am Ende der langen Halle hinter der Waage, "
                                       "Schaltschrank 17, obere Reihe, ganz außen links");
    AddTerminal(7, "Pult");
    std::string all;
    for (int code = 0; code < 256; ++code) {
      if (code != 3) all += static_cast<char>(code);
    }
    Written(tor, WriteMakro(0, all), "Alle <Zeichen> & „mehr“");
    for (int number = 1; number < 40; ++number) {
      Written(tor, WriteMakro(number, "\x1BGC\x1BGP10,20;\x1BGTfertig fließt\x04"),
              "Finale Affäre " + std::to_string(number));
    }
    Written(tor, WriteMakro(99, "\x1BGB0,0,80,100," + std::string(16000, 'A') + ";"), "Riese");
    std::string keys;
    for (int code = 128; code < 192; ++code) keys += "," + CodeOf(code == 173 ? 200 : code);
    Written(tor, WriteKeyTable("3", "80", keys), "Feld");
    std::string recoded;
    for (int code = 1; code < 120; ++code) recoded += "," + CodeOf(code + 120);
    Written(tor, WriteKeyTable("4", "1", recoded), "Um");
    Written(tor, Command(CommandName::WriteBitmap, {"5", "-12,3,8000FFF04010"}), "Punkte");
    records = {{1, "Grafik", "Skizze", -1, "\x1BGR20,30;"}};
    sheet = Made(Sources(), TestFonts());
    SheetLayout layout(sheet);
    while (layout.Step()) {
    }
    pages = layout.Laid();
  }
  static std::string CodeOf(int code) { return QString::number(code, 16).toUpper().toStdString(); }
  std::string Pdf(const char* name) {
    SheetOutput output(pages, folder.Path(name));
    while (output.Step()) {
    }
    EXPECT_EQ(output.End(), std::nullopt);
    return folder.Path(name);
  }

  testing_world::TemporaryFolder folder;
  Sheet sheet;
  SheetPages pages;
};

TEST_F(SheetPagesTest, EveryTextStandsInTheFileAndTheSameEachTime) {
  const QString text = TextInPdf(Pdf("eins.pdf"));
  const std::string close = Close(text);
  std::size_t found = 0;
  for (const std::string& some : TextsOf(sheet)) {
    const std::string sought = Close(QString::fromStdString(some));
    if (sought.size() > 2000) continue;  // goes over pages
    EXPECT_NE(close.find(sought), std::string::npos) << some;
    ++found;
  }
  EXPECT_GT(found, 1000u);
  EXPECT_GE(text.count(QStringLiteral("AAAAAAAAAAAAAAAAAAAA")), 400) << "the giant's text is whole";
  EXPECT_EQ(text, TextInPdf(Pdf("zwei.pdf")));
}

TEST_F(SheetPagesTest, NothingStandsOutsideItsPageAndTitlesAreRepeated) {
  ASSERT_GT(pages.pages.size(), 20u);
  int tables = 0;
  for (const SheetPage& page : pages.pages) {
    EXPECT_FALSE(page.texts.empty()) << "an empty page";
    EXPECT_FALSE(page.name.isEmpty());
    for (const SheetPage::Text& text : page.texts) {
      const double end =
          text.at.x() + QFontMetricsF(FontOf(text.font)).horizontalAdvance(text.text);
      EXPECT_TRUE(text.at.x() >= kSheetLeft && end <= kSheetRight + kUnitsPerMm)
          << text.text.toStdString();
      EXPECT_TRUE(text.at.y() > kSheetTop && text.at.y() <= kSheetBottom)
          << text.text.toStdString();
    }
    for (const SheetPage::Picture& picture : page.pictures) {
      EXPECT_TRUE(picture.place.right() <= kSheetRight && picture.place.bottom() <= kSheetBottom);
    }
    if (page.texts.front().text == QStringLiteral("Taste")) ++tables;
  }
  EXPECT_GE(tables, 1) << "goes on with its titles";
}

TEST_F(SheetPagesTest, ContentsTellThePagesOfTheHeadings) {
  int entries = 0;
  for (const SheetPage& page : pages.pages) {
    for (std::size_t i = 0; i + 1 < page.texts.size(); ++i) {
      const SheetPage::Text& number = page.texts[i + 1];
      const bool entry = number.at.y() == page.texts[i].at.y() &&
                         number.at.x() > kSheetRight - 200 &&
                         page.texts[i].at.x() < kSheetLeft + 200;
      if (!entry || number.font != SheetFont::Plain) continue;
      ++entries;
      const auto& there = pages.pages.at(number.text.toULong() - 1).texts;
      const QString title = page.texts[i].text.left(20);
      EXPECT_TRUE(std::any_of(there.begin(), there.end(), [&](const SheetPage::Text& text) {
        return text.font != SheetFont::Plain && text.text.startsWith(title);
      })) << title.toStdString();
    }
  }
  EXPECT_EQ(entries, 2 * 8 + 4)
      << "each Terminal with its chapters, the database with two, the signs";
}

class SheetDialogTest : public PageTest {
 protected:
  SheetDialogTest() {
    tor = sample.AddTerminal(3, "Tor");
    sample.AddTerminal(7, "Pult");
    sample.Written(tor, WriteMakro(1, "\x1BGC\x1BGTHallo\x04"), "Gruß");
  }
  SheetDialog& Open(const std::optional<TerminalId>& terminal) {
    auto& dialog = Put(
        new SheetDialog({loop, person, TestFonts(), [this] { return sample.Sources().terminals; },
                         [this](std::vector<SheetTerminal> terminals) {
                           SheetSources sources = sample.Sources();
                           sources.inventories.clear();
                           for (const auto& some : terminals)
                             sources.inventories.push_back(sample.Journal().Of(some.id));
                           sources.terminals = std::move(terminals);
                           return sources;
                         },
                         [this](QPrinter& printer, QWidget*) {
                           printer.setOutputFileName(QString::fromStdString(printed));
                           if (lastPage > 0) printer.setFromTo(2, lastPage);
                           return !printed.empty();
                         }}));
    QObject::connect(&dialog, &SheetDialog::Finished, &dialog,
                     [this](const QString& result) { finished.push_back(result.toStdString()); });
    dialog.Present(terminal);
    return dialog;
  }
  // Until nothing is done any more.
  void Rest() {
    QApplication::processEvents();
    while (Find<QProgressBar>("ctlDatenblattFortschritt").isVisible()) {
      QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
  }
  std::string Stand() { return Text("lblDatenblattStand"); }

  SheetSample sample;
  TerminalId tor;
  std::string printed;
  int lastPage = 0;  // chosen for the printer, from the second one on
  std::vector<std::string> finished;
};

TEST_F(SheetDialogTest, MakesTheSheetOfWhatIsTickedAndWritesIt) {
  Open(tor);
  Rest();
  EXPECT_TRUE(Find<TickList>("ctlDatenblattListe").Ticked(0));
  EXPECT_FALSE(Find<TickList>("ctlDatenblattListe").Ticked(1));
  person.file = folder.Path("tor.pdf");
  Click("cmdDatenblattPdf");
  Rest();
  ASSERT_EQ(finished.size(), 1u);
  EXPECT_TRUE(finished[0].starts_with("Datenblatt gespeichert: ")) << finished[0];
  const QString text = TextInPdf(*person.file);
  EXPECT_TRUE(text.contains(QStringLiteral("Tor, Adresse 3")));
  EXPECT_FALSE(text.contains(QStringLiteral("Pult")));
  EXPECT_TRUE(text.contains(QStringLiteral("Bitmaps")));
  EXPECT_FALSE(text.contains(QStringLiteral("Erstellt am")));

  Click("cmdDatenblattAlle");
  Find<QCheckBox>("chkDatenblattKapitel_4").setChecked(false);
  Find<QCheckBox>("chkDatenblattDatum").setChecked(true);
  Rest();
  printed = folder.Path("alle.pdf");
  Click("cmdDatenblattDrucken");
  Rest();
  EXPECT_TRUE(finished.back().starts_with("Datenblatt gedruckt: ")) << finished.back();
  const QString both = TextInPdf(printed);
  EXPECT_TRUE(both.contains(QStringLiteral("Pult")) &&
              both.contains(QStringLiteral("Erstellt am")));
  EXPECT_FALSE(both.contains(QStringLiteral("Bitmaps")));
  lastPage = 3;
  Click("cmdDatenblattDrucken");
  Rest();
  EXPECT_EQ(finished.back(), "Datenblatt gedruckt: 2 Seiten.");
  EXPECT_TRUE(TextInPdf(printed).contains(QStringLiteral("Seite 3 von")));
  EXPECT_FALSE(TextInPdf(printed).contains(QStringLiteral("Seite 1 von")));
  EXPECT_TRUE(port.written.empty()) << "no Terminal is asked";
}

TEST_F(SheetDialogTest, SaysWhatCannotBeDoneAndCanBeStopped) {
  Open(std::nullopt);
  EXPECT_TRUE(Find<TickList>("ctlDatenblattListe").Ticked(1)) << "all of the list";
  EXPECT_FALSE(Find("cmdDatenblattPdf").isEnabled()) << "not made yet";
  Rest();
  auto& page = Find<QSpinBox>("txtDatenblattSeite");
  page.setValue(page.maximum());
  auto& view = Find<SheetView>("ctlDatenblatt");
  EXPECT_EQ(view.ShownPage() + 1, static_cast<std::size_t>(page.maximum()));
  Click("cmdDatenblattKeine");
  EXPECT_EQ(Stand(), "Kein Terminal ist angekreuzt.");
  EXPECT_FALSE(Find("cmdDatenblattPdf").isEnabled());
  Click("cmdDatenblattAlle");
  Rest();
  person.file = folder.Path("fehlt/tor.pdf");
  Click("cmdDatenblattPdf");
  Rest();
  EXPECT_TRUE(person.LastMessage().starts_with("Die Datei \"")) << person.LastMessage();
  person.file = folder.Path("halb.pdf");
  Click("cmdDatenblattPdf");
  Click("cmdDatenblattSchliessen");
  EXPECT_EQ(Stand(), "Abgebrochen.");
  EXPECT_TRUE(shown->isVisible());
  EXPECT_FALSE(std::filesystem::exists(*person.file));
  Click("cmdDatenblattSchliessen");
  EXPECT_FALSE(shown->isVisible());
}

}  // namespace
}  // namespace kelvo

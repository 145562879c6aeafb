#include <QAction>
#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QHelpContentWidget>
#include <QHelpIndexWidget>
#include <QHelpLink>
#include <QHelpSearchEngine>
#include <QInputDialog>
#include <QKeyEvent>
#include <QListWidget>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTextBrowser>
#include <QTextDocument>
#include <filesystem>
#include <fstream>
#include <functional>

#include "help/frmHilfe.h"
#include "help/help_file.h"
#include "help/help_search.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

const QString helpPath = QStringLiteral(KELVO_PROGRAM_DIR "/kelvo.hlp");

QString Chapter(const QUrl& address) {
  const QString name = address.fileName();
  return address.hasFragment() ? name + u'#' + address.fragment() : name;
}

class HelpTest : public WindowTest {
 protected:
  void StartWithManual() {
    std::filesystem::copy_file(helpPath.toStdString(), folder.Path("kelvo.hlp"));
    Start();
  }
  static QWidget* HelpWindow() {
    for (QWidget* top : QApplication::topLevelWidgets()) {
      if (top->objectName() == QStringLiteral("frmHilfe")) return top;
    }
    return nullptr;
  }
  template <typename Control>
  static Control& InHelp(const char* name) {
    return *HelpWindow()->findChild<Control*>(QString::fromUtf8(name));
  }
  static QString ShownChapter() { return Chapter(InHelp<QTextBrowser>("ctlSeite").source()); }
  // The window in front gets the key, as from a keyboard.
  static void PressF1(QWidget& widget) {
    QWidget* const front = widget.window();
    front->show();
    front->activateWindow();
    Until([front] { return QApplication::activeWindow() == front; });
    QKeyEvent key(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
    QApplication::sendEvent(&widget, &key);
  }
  static void Until(const std::function<bool()>& done) {
    while (!done()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
};

TEST_F(HelpTest, F1LeadsToTheChapterOfThePageOrWindow) {
  StartWithManual();
  const char* const chapters[kTabCount] = {
      "zeichnung.html",       "schnittstellen.html", "text.html",
      "status.html",          "eeprom.html",         "at-tastatur.html",
      "matrix-tastatur.html", "makros.html",         "willkommen.html",
      "terminals.html"};
  for (int tab = 0; tab < kTabCount; ++tab) {
    Show(static_cast<Tab>(tab));
    Trigger("mnuHilfe_Seite");
    EXPECT_EQ(ShownChapter().toStdString(), chapters[tab]);
  }
  const std::pair<const char*, const char*> windows[] = {
      {"frmDovu", "senden-an-alle.html"},
      {"frmAnschluesse", "anschluesse.html"},
      {"frmVerbindungSuchen", "schnittstellen.html#suchen"},
      {"frmDatenverkehr", "datenverkehr.html"}};
  for (const auto& [name, chapter] : windows) {
    PressF1(*Find(name).findChild<QWidget*>());
    Find(name).hide();
    EXPECT_EQ(ShownChapter().toStdString(), chapter) << name;
  }
  Trigger("mnuAnsichtAnzeige");
  Find<QDockWidget>("dckAnzeige").widget()->setFocus();
  Trigger("mnuHilfe_Seite");
  EXPECT_EQ(ShownChapter().toStdString(), "nachbildung.html");
}

TEST_F(HelpTest, F1InAMessageBringsItsOwnRowIntoView) {
  StartWithManual();
  const struct {
    const char *title, *text, *row;
  } messages[] = {
      {"", "unknown 21 / cmdSetMakro", "unknown 65 / …"},
      {"Fehler beim EEPROM", "EEPROM / cmdSetMakro", "Fehler beim EEPROM"},
      {"", "TimeOut", "TimeOut"},
      {"", "Schnittstellenfehler380", "Schnittstellenfehler380"},
      {"", "Makro 'Uhr' löschen ?", "Makro 'Begrüßung' löschen ?"},
      {"", "Die Datenbank \"/tmp/kelvo.mdb\" ist beschädigt.",
       "Die Datenbank \"…\" ist beschädigt."},
      {"", "Nicht übernommen wurden: 1 x Text", "Nicht übernommen wurden: 2 x Flächenfüllung"},
      {"", "Die Hilfedatei \"kelvo.hlp\" fehlt.", "Die Hilfedatei \"…\" fehlt."}};
  for (const auto& message : messages) {
    QMessageBox box;
    box.setWindowTitle(QString::fromUtf8(message.title));
    box.setText(QString::fromUtf8(message.text));
    PressF1(box);
    const auto& page = InHelp<QTextBrowser>("ctlSeite");
    const auto expectRowInView = [&] {
      QApplication::processEvents();
      EXPECT_EQ(page.textCursor().selectedText().toStdString(), message.row);
      EXPECT_TRUE(page.viewport()->rect().contains(page.cursorRect())) << message.text;
    };
    expectRowInView();
    HelpWindow()->resize(500, 300);  // too narrow for the pictures
    expectRowInView();
    HelpWindow()->close();
  }
  // The row that a box leads to by its cause.
  PressF1(Find("cmdTab"));
  dynamic_cast<frmHilfe&>(*HelpWindow())
      .ShowChapter(QStringLiteral("meldungen.html#ursache-abgelehnt"));
  QApplication::processEvents();
  const auto& shown = InHelp<QTextBrowser>("ctlSeite");
  EXPECT_EQ(shown.textCursor().selectedText().toStdString(), "Das Terminal hat abgelehnt (NAK)");
  EXPECT_TRUE(shown.viewport()->rect().contains(shown.cursorRect()));
  QInputDialog input;
  input.setLabelText(QStringLiteral("Nr dieser Bitmap im EEProm :"));
  PressF1(input);
  EXPECT_TRUE(ShownChapter().startsWith(QStringLiteral("meldungen.html")));
  PressF1(Find("cmdTab"));
  EXPECT_EQ(ShownChapter(), QStringLiteral("willkommen.html"));
  const auto size = [] { return InHelp<QTextBrowser>("ctlSeite").font().pointSizeF(); };
  const qreal before = size();
  InHelp<QAction>("cmdHilfeGroesser").trigger();
  EXPECT_GT(size(), before);
}

TEST_F(HelpTest, KeywordsAndWordsOfTheTextLeadToTheirChapters) {
  StartWithManual();
  Trigger("mnuHilfe_index");
  ASSERT_TRUE(HelpWindow()->isVisible());
  auto& keywords = InHelp<QHelpIndexWidget>("ctlStichwoerter");
  Until([&] { return keywords.model()->rowCount() > 0; });
  InHelp<QLineEdit>("txtStichwort").setText(QStringLiteral("dialout"));
  ASSERT_EQ(keywords.model()->rowCount(), 1);
  Q_EMIT InHelp<QLineEdit>("txtStichwort").returnPressed();
  EXPECT_EQ(ShownChapter(), QStringLiteral("anschliessen.html#rechte"));

  auto& found = InHelp<QListWidget>("ctlTreffer");
  auto& state = InHelp<QLabel>("lblTreffer");
  const auto search = [&](const char* words) {
    InHelp<QLineEdit>("txtSuche").setText(QString::fromUtf8(words));
    InHelp<QAbstractButton>("cmdSuchen").click();
    Until([&] { return !state.text().isEmpty() && !state.text().endsWith(u'…'); });
  };
  search("Tastenfe Portleit");
  ASSERT_EQ(found.count(), 1);
  Q_EMIT found.itemActivated(found.item(0));
  EXPECT_EQ(ShownChapter(), QStringLiteral("matrix-tastatur.html"));
  search("Donaudampfschiff \"?!;* OR");
  EXPECT_EQ(found.count(), 0);
  HelpWindow()->close();
  EXPECT_FALSE(std::filesystem::exists(folder.Path(".hilfe")));
}

// Whoever pastes half a page gets an answer, and a search behind it is not kept waiting for it.
TEST(HelpSearchTest, LongQuestionsAreCutAndOneIsLookedForAtATime) {
  const auto manual = HelpFile::Open(helpPath);
  ASSERT_NE(manual, nullptr);
  QHelpSearchEngine& engine = *manual->Engine().searchEngine();
  HelpSearch window(engine);
  const auto& state = *window.findChild<QLabel*>(QStringLiteral("lblTreffer"));
  int finished = 0;
  bool indexed = false;
  QObject::connect(&engine, &QHelpSearchEngine::searchingFinished, [&finished] { ++finished; });
  QObject::connect(&engine, &QHelpSearchEngine::indexingFinished, [&indexed] { indexed = true; });
  const auto until = [](const std::function<bool()>& done) {
    while (!done()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  };
  const auto search = [&window](const QString& words) {
    window.findChild<QLineEdit*>(QStringLiteral("txtSuche"))->setText(words);
    window.findChild<QAbstractButton*>(QStringLiteral("cmdSuchen"))->click();
  };
  until([&] { return indexed; });
  QStringList many;
  for (int i = 0; i < 400; ++i) many << QStringLiteral("w%1").arg(i);
  for (const QString& words :
       {many.join(u' '), QString::fromLatin1("Terminal"), QString::fromLatin1("Portleitung")}) {
    search(words);
    EXPECT_EQ(engine.searchInput().count(u'"'), 2 * 12) << "still the first";
  }
  until([&] { return !state.text().isEmpty(); });
  EXPECT_EQ(finished, 2) << "what nobody waits for any more is not looked for";
  EXPECT_GT(window.findChild<QListWidget*>()->count(), 0);
  search(many.join(u' '));
  until([&] { return !state.text().isEmpty(); });
  EXPECT_TRUE(state.text().endsWith(QStringLiteral("die ersten 12 Wörter.")));
}

TEST_F(HelpTest, HelpFileThatIsMissingOrDamagedIsSaidOnce) {
  Sql("update Optionen set FirstRun = 0");
  Start();
  Trigger("mnuHilfe_index");
  EXPECT_EQ(person.LastMessage(), "Die Hilfedatei \"" + folder.Path("kelvo.hlp") + "\" fehlt.");
  const std::string manual = testing_world::ReadFile(helpPath.toStdString());
  for (const std::string& contents :
       {std::string(), std::string("SQLite format 3"), manual.substr(0, manual.size() / 2)}) {
    std::ofstream(folder.Path("kelvo.hlp"), std::ios::binary) << contents;
    Forget();
    person.duringMessage = [&] { PressF1(Find("cmdTab")); };
    Trigger("mnuHilfe_Inhalt");
    ASSERT_EQ(person.messages.size(), 1u) << contents.size();
    EXPECT_NE(person.LastMessage().find("kann nicht gelesen werden."), std::string::npos);
    EXPECT_EQ(HelpWindow(), nullptr);
  }
  std::ofstream(folder.Path("kelvo.hlp"), std::ios::binary) << manual;
  Trigger("mnuHilfe_Inhalt");
  EXPECT_EQ(ShownChapter(), QStringLiteral("index.html"));
}

TEST(ManualTest, EveryLinkPictureAndKeywordHasItsPlace) {
  const auto manual = HelpFile::Open(helpPath);
  ASSERT_NE(manual, nullptr);
  const QDir source(QStringLiteral(KELVO_SOURCE_DIR "/help/handbuch"));
  const QStringList chapters = source.entryList({QStringLiteral("*.html")});
  ASSERT_GT(chapters.size(), 20);
  const QRegularExpression reference(QStringLiteral("(?:href|src)=\"([^\"]+)\""));
  const auto expectPlace = [&](const QUrl& target, const QString& from) {
    const QByteArray page = manual->Data(target.adjusted(QUrl::RemoveFragment));
    EXPECT_FALSE(page.isEmpty()) << from.toStdString() << " -> " << qPrintable(target.toString());
    const QByteArray anchor = "<a name=\"" + target.fragment().toUtf8() + "\">";
    EXPECT_TRUE(!target.hasFragment() || page.contains(anchor))
        << from.toStdString() << " -> " << qPrintable(target.toString());
  };
  for (const QString& chapter : chapters) {
    const QUrl address = manual->Page(chapter);
    const QString page = QString::fromUtf8(manual->Data(address));
    EXPECT_TRUE(page.contains(QStringLiteral("<h1>"))) << qPrintable(chapter);
    for (auto it = reference.globalMatch(page); it.hasNext();) {
      expectPlace(address.resolved(QUrl(it.next().captured(1))), chapter);
    }
  }
  QFile project(source.filePath(QStringLiteral("kelvo.qhp")));
  ASSERT_TRUE(project.open(QIODevice::ReadOnly));
  const QString text = QString::fromUtf8(project.readAll());
  const QRegularExpression entry(QStringLiteral("ref=\"([^\"]+)\""));
  const QUrl index = manual->Page(QStringLiteral("index.html"));
  for (auto it = entry.globalMatch(text); it.hasNext();) {
    expectPlace(index.resolved(QUrl(it.next().captured(1))), QStringLiteral("kelvo.qhp"));
  }
}

// The literal texts of the program's boxes: of each call that shows one or describes a failure, the
// string literals up to its end.
QStringList ShownTexts(const QString& source) {
  static const QRegularExpression call(
      QStringLiteral("(?:\\b(?:Message|Notify|Ask|Input|Refuse|LoadProject|StoreError|BadFile|"
                     "CannotWrite|runtime_error)\\("
                     "|report << tr\\(|RecordKind\\{)([^;]*);"));
  static const QRegularExpression literal(QStringLiteral("\"((?:[^\"\\\\]|\\\\.)*)\""));
  static const QRegularExpression broken(QStringLiteral("(?<!\\\\)\"\\s*\""));
  QStringList texts;
  for (auto it = call.globalMatch(source); it.hasNext();) {
    const QString arguments = it.next().captured(1).replace(broken, QString());
    for (auto part = literal.globalMatch(arguments); part.hasNext();) {
      texts << part.next().captured(1);
    }
  }
  return texts;
}

TEST(ManualTest, EveryMessageOfTheProgramHasItsCauseAndCure) {
  QFile file(QStringLiteral(KELVO_SOURCE_DIR "/help/handbuch/meldungen.html"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  QTextDocument page;
  page.setHtml(QString::fromUtf8(file.readAll()));
  const QString manual = page.toPlainText().simplified();
  int checked = 0;
  for (const char* room : {"adapters", "bus", "graphics", "help", "interfaces", "inventory_page",
                           "keyboards", "project", "project_page", "settings", "sheet_page",
                           "shell", "store", "terminal", "widgets"}) {
    const QDir folder(QStringLiteral(KELVO_SOURCE_DIR "/") + QLatin1String(room));
    for (const QString& name : folder.entryList({QStringLiteral("*.cpp")})) {
      if (name == QStringLiteral("make_fonts.cpp")) continue;  // a tool of the build
      QFile source(folder.filePath(name));
      ASSERT_TRUE(source.open(QIODevice::ReadOnly));
      for (QString text : ShownTexts(QString::fromUtf8(source.readAll()))) {
        text = text.replace(QStringLiteral("\\n"), QStringLiteral(" ")).remove(u'\\').simplified();
        // Where a value is put in, each side of it counts for itself.
        for (const QString& part : text.split(QRegularExpression(QStringLiteral("%\\d|^\"|\"$")))) {
          const QString words = part.simplified();
          if (!words.contains(u' ') || words.startsWith(u'/')) continue;
          ++checked;
          EXPECT_TRUE(manual.contains(words)) << qPrintable(name) << ": " << qPrintable(words);
        }
      }
    }
  }
  EXPECT_GT(checked, 60);
}

}  // namespace
}  // namespace kelvo

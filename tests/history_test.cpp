#include <QListWidget>
#include <QSpinBox>
#include <QStatusBar>

#include "tests/window_fixture.h"
#include "widgets/form.h"

namespace kelvo {
namespace {

class HistoryTest : public WindowTest {};

TEST_F(HistoryTest, EachActionLeavesItsLineInTheStatusBarAndInTheHistory) {
  StartOn(Tab::Macros);
  terminal.Answer("E?F", "8142;");
  terminal.Answer("\x03", "\x06");
  Type("txtMakro", "Hallo");
  Click("cmdSetMakro");
  EXPECT_EQ(Text("lblAktivitaet"),
            "✓ Makro 1 geschrieben: 5 Byte, bestätigt, vorher 8142 Byte frei");
  Click("cmdClearConfig");
  EXPECT_EQ(Text("lblAktivitaet"), "✗ Konfiguration löschen: keine Antwort");
  window->statusBar()->showMessage(QStringLiteral("hint"));
  Click("cmdClearConfig");
  EXPECT_EQ(InStatusBar(), "") << "the newer line shows";
  Trigger("mnuAnsichtVerlauf");
  auto& history = Find<QListWidget>("ctlVerlauf");
  const auto line = [&](int row) { return history.item(row)->text().mid(10).toStdString(); };
  EXPECT_EQ(line(0).substr(0, 26), "✓ Anschluss offen: Com 6");
  EXPECT_EQ(line(history.count() - 1), "✗ Konfiguration löschen: keine Antwort");
  Type("txtmaxDovu", "2");
  const int before = history.count();
  Click("cmdDovusuchen");
  EXPECT_EQ(history.count(), before + 1);
  EXPECT_EQ(line(before), "✓ Suche: " + Text("lblDovuStand"));
  port.Lose();
  EXPECT_EQ(Text("lblAktivitaet"), "✗ Die Verbindung zu Com 6 ist verloren gegangen.");
  EXPECT_NE(line(history.count() - 2), "✓ Anschluss geschlossen") << "the loss says it";
}

TEST_F(HistoryTest, OfADeedOfSeveralCommandsTheWeightiestStaysInTheStatusBar) {
  StartOn(Tab::Status);
  const std::pair<const char*, const char*> cases[] = {
      {"\x06", "✓ Konfiguration gespeichert, bestätigt"},
      {"\x15", "✗ Konfiguration speichern: abgelehnt (NAK)"},
      {"", "✗ Konfiguration speichern: keine Antwort"}};
  for (const auto& [answer, words] : cases) {
    terminal.Answer("EWC", answer);
    Click("cmdSetRes");
    EXPECT_EQ(Text("lblAktivitaet"), words);
  }
  Click("cmdSetPort");
  EXPECT_EQ(Text("lblAktivitaet"), "✓ Ausgänge P0 auf 0 setzen: gesendet");
}

TEST_F(HistoryTest, WhatIsRefusedOnThisSideLeavesItsLineToo) {
  Sql("delete from Makro");
  StartOn(Tab::Macros);
  const auto after = [this](const char* button) {
    Click(button);
    return Text("lblAktivitaet");
  };
  Type("txtMakroNr", "300");
  EXPECT_EQ(after("cmdSetMakro"), "✗ Keine gültige Makro-Nummer");
  EXPECT_NE(person.messages.back().hint.find("ganze Zahl von 0 bis 255"), std::string::npos);
  Type("txtMakroNr", "3");
  Type("txtMakro", std::string(1024, 'x'));
  EXPECT_EQ(after("cmdSetMakro"), "✗ Makro zu lang (max. 1024 Zeichen)");
  Type("txtMakro", "x");
  EXPECT_EQ(after("cmdSetMakro"), "✗ nicht geschrieben: Der freie Platz ist nicht bekannt");
  terminal.Answer("E?F", "12;");
  EXPECT_EQ(after("cmdSetMakro"), "✗ nicht genügend Platz im EEprom");
  terminal.Answer("E?F", "8142;");
  EXPECT_EQ(after("cmdSetATTab"), "✗ Die Tabelle ist leer");
  EXPECT_EQ(after("cmdSetMakroGeprueft"), "✗ Welches Terminal hört, ist nicht bekannt.");
  EXPECT_NE(person.messages.back().hint.find("„Terminal wählen“"), std::string::npos);
  for (int line = 0; line < 8; ++line) {
    Find<QCheckBox>(qPrintable(ArrayName("chkTastSpalte", line))).setChecked(false);
  }
  EXPECT_EQ(after("cmdMatrixEnable"), "✗ Es ist keine Spalte angekreuzt");
  EXPECT_NE(person.messages.back().hint.find("keine Tasten"), std::string::npos);
  Find<QSpinBox>("ctlUpDownAdrDovu").setValue(7);
  Click("cmdDovuAktivieren");
  EXPECT_EQ(after("cmdGrafikBildGeprueft"), "✗ Die Zeichnung enthält kein Bild.");
  EXPECT_NE(person.messages.back().hint.find("Bild einfügen"), std::string::npos);
  EXPECT_EQ(after("cmdVerbinden"), "✓ Anschluss geschlossen");
  EXPECT_EQ(after("cmdSetMakro"), "✗ stellen Sie zuerst eine Schnittstelle ein");
  port.openError = static_cast<PortError>(8000);
  EXPECT_EQ(after("cmdVerbinden"), "✗ Schnittstellenfehler8000");
  EXPECT_EQ(after("cmdVerbinden"), "✗ zuerst Anschluß wählen");
}

TEST_F(HistoryTest, AButtonThatCanDoNothingSaysWhy) {
  Sql("delete from DOVU");
  StartOn(Tab::Text);
  const std::pair<const char*, const char*> cases[] = {
      {"cmdSetFesttext", "Nichts gesendet: Bei A ist kein Terminal gewählt."},
      {"cmdSenden_0", "Nichts gesendet: Es ist nichts eingegeben."},
      {"cmdClearDovuData", "Nichts gelöscht: Es sind keine Terminals gespeichert."},
      {"cmdDovuUebernehmen", "Nichts übernommen: Es ist noch nichts gesucht worden."},
      {"cmdATPaarEntfernen", "Nichts entfernt: In der Liste ist keine Zeile gewählt."}};
  for (const auto& [button, words] : cases) {
    Click(button);
    EXPECT_EQ(InStatusBar(), words) << button;
  }
  Click("chkFesttextB_0");
  Click("cmdSetFesttext");
  EXPECT_TRUE(InStatusBar().starts_with("Nichts gesendet: Zu B gehört kein Befehl"));
  EXPECT_EQ(Written(), "");
  Type("txtmaxDovu", "1");
  Click("cmdDovusuchen");
  Click("cmdDovuUebernehmen");
  EXPECT_EQ(InStatusBar(), "Nichts übernommen: Es ist kein gefundenes Terminal angekreuzt.");
  Click("cmdBefehlSenden");
  EXPECT_NE(Text("lblAktivitaet").find("ESC ohne Befehl"), std::string::npos);
}

TEST_F(HistoryTest, ACheckThatFailsIsOneLine) {
  Start();
  Trigger("mnuAnsichtVerlauf");
  auto& history = Find<QListWidget>("ctlVerlauf");
  const int before = history.count();
  Click("cmdVerbindungPruefen");
  EXPECT_EQ(history.count(), before + 1);
  EXPECT_EQ(Text("lblAktivitaet"), "✗ Es hat kein Terminal geantwortet.");
}

TEST_F(HistoryTest, DraftsWithoutANameAreToldByTheirPage) {
  StartOn(Tab::Macros);
  for (const char* text : {"a", "b"}) {
    Trigger("mnuDateiNeu");
    Type("txtMakro", text);
  }
  Show(Tab::MatrixKeyboard);
  Trigger("mnuDateiNeu");
  Type("txtTastMatrix_0", "A");
  Q_EMIT Find<QLineEdit>("txtTastMatrix_0").textEdited({});
  window->close();
  EXPECT_EQ(person.questions.at(0),
            "Nicht gespeicherte Änderungen: 2 x „(neuer Name)“ der Makros, „(neuer Name)“ der "
            "Matrix-Tastatur.");
}

}  // namespace
}  // namespace kelvo

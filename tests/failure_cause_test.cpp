#include "link/failure_cause.h"

#include <QFile>
#include <QSpinBox>
#include <QTextDocument>

#include "tests/window_fixture.h"

namespace kelvo {
namespace {

class FailureCauseTest : public WindowTest {
 protected:
  FailureCauseTest() { Sql("update Optionen set FirstRun = 0"); }
  /// What stands below the text of the box that comes after this.
  std::string Hint(const char* button, const std::string& text) {
    Forget();
    Click(button);
    if (person.LastMessage() != text) return "not said: " + person.LastMessage();
    return person.messages.back().hint;
  }
};

TEST_F(FailureCauseTest, TheTextStaysAndBelowItStandsWhatHasHappened) {
  StartOn(Tab::Eeprom);
  const std::string silent = "keine Reaktion /  cmdSetConfig";
  EXPECT_NE(Hint("cmdSetConfig", silent).find("Welches Terminal hört, ist nicht bekannt"),
            std::string::npos);
  const struct {
    int address;
    const char* answer;
    std::string text;
    const char* hint;
  } cases[] = {{7, "", silent, "Das Terminal mit der Adresse 7 hat in der Zeit nicht"},
               {255, "", silent, "Gewählt sind alle Terminals"},
               {254, "", silent, "Es ist kein Terminal gewählt"},
               {7, "\x15", "Fehler beim EEPROM", "abgelehnt (NAK); die Verbindung ist gut"},
               {7, "k", "unknown 107 /  cmdSetConfig", "Statt einer Quittung kam „k“ (6B)"}};
  for (const auto& row : cases) {
    Find<QSpinBox>("ctlUpDownAdrDovu").setValue(row.address);
    Click("cmdDovuAktivieren");
    terminal.Answer("EWC", row.answer);
    EXPECT_NE(Hint("cmdSetConfig", row.text).find(row.hint), std::string::npos)
        << row.hint << ": " << person.messages.back().hint;
  }
  Show(Tab::Terminals);
  terminal.Answer("\x1b?A", "");
  Type("txtmaxDovu", "3");
  Click("cmdDovuSchnellsuche");
  EXPECT_EQ(Text("lblHoerer"), "keines gewählt");
  EXPECT_NE(Hint("cmdVerbindungPruefen", "Es hat kein Terminal geantwortet.")
                .find("Es ist kein Terminal gewählt"),
            std::string::npos);
  Show(Tab::Macros);
  Type("txtMakro", "x");
  EXPECT_NE(Hint("cmdSetMakro", "nicht genügend Platz im EEprom").find("Löschen hilft nicht"),
            std::string::npos);
  terminal.Answer("E?F", "12;");
  EXPECT_NE(Hint("cmdSetMakro", "nicht genügend Platz im EEprom").find("passt nicht mehr hinein"),
            std::string::npos);
  terminal.Answer("EM?", "3,4");
  EXPECT_NE(Hint("cmdMatrixRead", "TimeOut").find("Es kam „3,4“"), std::string::npos);
  loop.After(testing_world::milliseconds(10), [&] { port.Lose(); });
  EXPECT_NE(Hint("cmdClearConfig", "keine Reaktion / cmdClearConfig").find("verschwunden"),
            std::string::npos);
  EXPECT_NE(Hint("cmdClearConfig", "stellen Sie zuerst eine Schnittstelle ein            ")
                .find("verschwunden; seitdem ist kein Anschluss offen"),
            std::string::npos);
  Click("cmdVerbinden");
  EXPECT_NE(person.messages.back().hint.find("verschwunden"), std::string::npos);
}

TEST_F(FailureCauseTest, ADeviceThatHasGoneIsTheCauseBeforeTheProgramIsToldOfIt) {
  StartOn(Tab::Eeprom);
  const auto hint = [this](const char* button, const std::string& text) {
    loop.After(testing_world::milliseconds(10),
               [&] { port.Vanish(testing_world::milliseconds(5)); });
    return Hint(button, text);
  };
  EXPECT_TRUE(hint("cmdSetConfig", "keine Reaktion /  cmdSetConfig")
                  .starts_with("Das Gerät ist vom Rechner verschwunden."));
  loop.RunFor(testing_world::milliseconds(20));
  port.Open();
  Show(Tab::Macros);
  Type("txtMakro", "x");
  EXPECT_NE(hint("cmdSetMakro", "nicht genügend Platz im EEprom").find("vom Rechner verschwunden"),
            std::string::npos);
}

TEST_F(FailureCauseTest, OnlyAfterACommandItIsInDoubtWhetherItWasCarriedOut) {
  Start();
  const auto doubted = [this](const char* button) {
    Click(button);
    return person.messages.back().hint.find("ausgeführt") != std::string::npos;
  };
  EXPECT_TRUE(doubted("cmdSetConfig"));
  EXPECT_TRUE(doubted("cmdClearMatrixTast"));
  EXPECT_FALSE(doubted("cmdVerbindungPruefen"));
  EXPECT_FALSE(doubted("cmdMatrixRead"));
}

TEST_F(FailureCauseTest, WhatWasRefusedSaysWhetherItWasForTheRoom) {
  StartOn(Tab::Macros);
  terminal.Answer("EDM-1;", "\x15");
  terminal.Answer("EDM3;", "\x15");
  terminal.Answer("\x03", "\x15");
  terminal.Answer("E?F", "8142;");
  Type("txtMakroNrDisplay", "-1");
  const std::string refused = "Fehler beim EEPROM";
  EXPECT_NE(Hint("cmdClearMakro", refused).find("Nummer „-1“ gibt es dort nicht, nur 0 bis 255"),
            std::string::npos)
      << person.messages.back().hint;
  Type("txtMakroNrDisplay", "3");
  EXPECT_NE(Hint("cmdClearMakro", refused).find("gibt es dort vielleicht nicht"),
            std::string::npos);
  EXPECT_NE(Hint("cmdSetMakro", refused).find("Zuerst den freien Platz"), std::string::npos);
}

TEST_F(FailureCauseTest, AHeldLineIsTheCauseWhileItIsHeld) {
  Start();
  port.characterTime = testing_world::milliseconds(1);
  port.held = true;
  EXPECT_NE(Hint("cmdSetConfig", "keine Reaktion /  cmdSetConfig").find("hält die Leitung"),
            std::string::npos);
}

TEST_F(FailureCauseTest, EveryFailureTextAndEveryCauseHasItsPlaceInTheManual) {
  QFile file(QStringLiteral(KELVO_SOURCE_DIR "/help/handbuch/meldungen.html"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QString html = QString::fromUtf8(file.readAll());
  QTextDocument page;
  page.setHtml(html);
  const std::string manual = page.toPlainText().simplified().toStdString();
  for (const FailureText& text : FailureTexts()) {
    const auto words = QString::fromStdString(std::string(text.beginning)).trimmed().toStdString();
    EXPECT_NE(manual.find(words), std::string::npos) << words;
  }
  for (const CausePlace& place : CausePlaces()) {
    EXPECT_EQ(AnchorOf(place.cause), place.anchor);
    EXPECT_TRUE(html.contains(QStringLiteral("<a name=\"%1\">").arg(QLatin1String(place.anchor))))
        << place.anchor;
  }
}

}  // namespace
}  // namespace kelvo

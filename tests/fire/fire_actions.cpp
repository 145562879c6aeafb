#include "tests/fire/fire_actions.h"

#include <QTreeWidget>
#include <fstream>

#include "bus/transfer.h"
#include "graphics/wmf.h"
#include "link/commands.h"
#include "simulator/keyboards.h"

namespace kelvo::fire {
namespace {

using Action = FireProgram::Action;
using Memory = sim::Eeprom::Kind;

constexpr char kMakroText[] = "\x1bGC\x1bGP8,40;\x1bGR20,60;Halt";
constexpr int kMakro = 7;
constexpr int kTable = 3;

void Nothing(FireProgram&) {}

std::function<void(FireProgram&)> Showing(Tab tab) {
  return [tab](FireProgram& program) { program.Show(tab); };
}
std::function<void(FireProgram&)> Clicking(const char* button) {
  return [button](FireProgram& program) { program.Click(button); };
}

// ---- what is asked ----

/// A value on a page, with what says that it was read.
struct Reading {
  const char* name;
  Tab tab;
  const char* button;
  const char* mark;
  const char* field;
  std::string (*truth)(FireProgram&);
};

std::string Number(int number) { return std::to_string(number); }

constexpr auto kVersion = [](FireProgram&) -> std::string { return "2.10F"; };
constexpr auto kAddress = [](FireProgram& p) { return Number(p.Chosen().Setup().address); };
constexpr auto kInputs = [](FireProgram& p) { return Number(p.Chosen().P1()); };
constexpr auto kSectors = [](FireProgram&) -> std::string { return "64"; };
constexpr auto kFree = [](FireProgram& p) { return Number(p.Chosen().Memory().Free()); };

const Reading kReadings[] = {
    {"version", Tab::Status, "cmdGetVersion", "lblVersionStand", "lblVersion", kVersion},
    {"address", Tab::Status, "cmdGetAdresse", "lblAdresseStand", "txtAdresse", kAddress},
    {"inputs", Tab::Status, "cmdGetPort", "lblPortP1Stand", "lblPortP1", kInputs},
    {"flash", Tab::Status, "cmdGetFlashInfo", "lblFlashStand", "lblSektorAnzahl", kSectors},
    {"free bytes", Tab::Eeprom, "cmdGetFreeBytes", "lblFreeBytesStand", "lblFreeBytes", kFree},
};

Action ActionOf(const Reading& reading) {
  return {reading.name, Showing(reading.tab), Clicking(reading.button),
          [&reading](FireProgram& program) {
            if (!program.Text(reading.mark).starts_with("gelesen")) return;
            program.Hold(program.Text(reading.field) == reading.truth(program), reading.name);
          }};
}

// A page that asks when it is shown, and the table that the Terminal uses.
void JudgeTable(FireProgram& program) {
  const std::string truth =
      program.Chosen().Keys().Answer(sim::Command::AskMatrixTable).value_or("");
  if (program.Told("TimeOut") || !program.person.LastMessage().size()) return;
  if (program.Failed("Antwort unlesbar")) return;
  program.Hold(program.Told(truth), "the table that was read");
}

// ---- what is written ----

std::string Held(FireProgram& program, Memory kind, int number) {
  const auto record = program.Chosen().Memory().Read(kind, static_cast<unsigned char>(number));
  return record.value_or("-");
}

void TypeMakro(FireProgram& program) {
  program.Show(Tab::Macros);
  program.Type("txtMakro", kMakroText);
  program.Type("txtMakroNr", Number(kMakro));
  program.Type("txtMakroNrDisplay", Number(kMakro));
}
void MakroIsThere(FireProgram& program) {
  TypeMakro(program);
  program.Chosen().Memory().Write(Memory::Macro, kMakro, "other");
}
// Whoever is to be proven must be known.
void MakroToProve(FireProgram& program) {
  MakroIsThere(program);
  program.Select(program.Chosen().Setup().address);
}
void JudgeMakro(FireProgram& program) {
  const bool held = Held(program, Memory::Macro, kMakro) == kMakroText;
  if (program.Noted("Makro 7 geschrieben")) program.Hold(held, "macro written");
}
void JudgeAutostart(FireProgram& program) {
  const bool held = Held(program, Memory::Macro, 0) == kMakroText;
  if (program.Noted("Makro 0 geschrieben")) program.Hold(held, "autostart written");
}
void JudgeProven(FireProgram& program) {
  const bool held = Held(program, Memory::Macro, kMakro) == kMakroText;
  if (program.Text("lblMakroGeprueft").find("empfangen und bestätigt") != std::string::npos) {
    const auto sum = ExpectedChecksum(WriteMakro(kMakro, kMakroText).Text());
    program.HoldProven(held, 0, sum, "macro proven");
  }
  if (program.Told("angekommen ist etwas anderes")) program.Hold(!held, "macro is another");
  if (program.Told("nicht geschrieben")) {
    program.Hold(Held(program, Memory::Macro, kMakro) == "other", "macro not written");
  }
}
// The Terminal refuses it.
void DeleteRefused(FireProgram& program) {
  program.Chosen().SetFault(sim::Fault::Nak);
  program.Click("cmdClearMakro");
  program.Chosen().SetFault(sim::Fault::None);
}
void JudgeRefused(FireProgram& program) {
  program.Hold(!program.Noted("Makro 7 gelöscht"), "macro deleted, but refused");
  if (!program.GoodLine() || program.Line().Struck() > 0) return;
  program.Hold(program.Told("Fehler beim EEPROM"), "nobody has told of the refusal");
}
void JudgeDeleted(FireProgram& program) {
  const bool held = Held(program, Memory::Macro, kMakro) != "-";
  if (program.Noted("Makro 7 gelöscht")) program.Hold(!held, "macro deleted");
}
void JudgeConfig(FireProgram& program) {
  const bool held = Held(program, Memory::Config, 0) != "-";
  if (program.Noted("Konfiguration gespeichert")) program.Hold(held, "configuration stored");
  if (program.Noted("Konfiguration gelöscht")) program.Hold(!held, "configuration deleted");
}
void SomethingToErase(FireProgram& program) {
  program.Show(Tab::Eeprom);
  program.Chosen().Memory().Write(Memory::Macro, kMakro, "other");
}
void JudgeErased(FireProgram& program) {
  const bool held = Held(program, Memory::Macro, kMakro) != "-";
  if (program.Noted("EEPROM gelöscht")) program.Hold(!held, "EEPROM erased");
  JudgeConfig(program);
}
// With all keys of the new table.
void TypeTable(FireProgram& program) {
  program.Show(Tab::MatrixKeyboard);
  for (const char* line : {"chkTastZeile_0", "chkTastZeile_1", "chkTastSpalte_0"}) {
    auto* const box = &program.Find<QCheckBox>(line);
    box->setChecked(true);
  }
  program.Type("txtTastMatrix_0", "A");
  program.Type("txtTastMatrix_1", "B");
  program.Type("txtTastTabNr", Number(kTable));
  program.Chosen().Memory().Delete(Memory::KeyTable, kTable);
}
void TableIsThere(FireProgram& program) {
  program.Show(Tab::MatrixKeyboard);
  program.Type("txtTastTabNr", Number(kTable));
  program.Chosen().Memory().Write(Memory::KeyTable, kTable, "xx");
}
void JudgeTableWritten(FireProgram& program) {
  const bool held = Held(program, Memory::KeyTable, kTable) != "-";
  if (program.Noted("Tabelle 3 geschrieben")) program.Hold(held, "table written");
  if (program.Noted("Tabelle 3 gelöscht")) program.Hold(!held, "table deleted");
}

void Erase(FireProgram& program) {
  program.person.answers = {true, false};
  program.Click("cmdClearEEprom");
}
void EraseAndStore(FireProgram& program) {
  program.person.answers = {true, true};
  program.Click("cmdClearEEprom");
}

std::vector<Action> MakeScript() {
  std::vector<Action> script;
  for (const Reading& reading : kReadings) script.push_back(ActionOf(reading));
  const Action others[] = {
      {"check", Nothing, Clicking("cmdVerbindungPruefen"), Nothing},
      {"text page", Showing(Tab::Drawing), Showing(Tab::Text), Nothing},
      {"set text", Showing(Tab::Text), Clicking("cmdSetText"), Nothing},
      {"set outputs", Showing(Tab::Status), Clicking("cmdSetPort"), Nothing},
      {"clear display", Showing(Tab::Text), Clicking("cmdTextClear"), Nothing},
      {"store config", Showing(Tab::Eeprom), Clicking("cmdSetConfig"), JudgeConfig},
      {"delete config", Showing(Tab::Eeprom), Clicking("cmdClearConfig"), JudgeConfig},
      {"resolution", Showing(Tab::Status), Clicking("cmdSetRes"), JudgeConfig},
      {"second interface", Showing(Tab::Interfaces), Clicking("cmdSetCom2"), JudgeConfig},
      {"erase", SomethingToErase, Erase, JudgeErased},
      {"erase and store", SomethingToErase, EraseAndStore, JudgeErased},
      {"write macro", TypeMakro, Clicking("cmdSetMakro"), JudgeMakro},
      {"delete refused macro", MakroIsThere, DeleteRefused, JudgeRefused, false, true},
      {"write autostart", TypeMakro, Clicking("cmdSetAutostartMakro"), JudgeAutostart},
      {"prove macro", MakroToProve, Clicking("cmdSetMakroGeprueft"), JudgeProven},
      {"run macro", TypeMakro, Clicking("cmdPlayMakro"), Nothing},
      {"delete macro", MakroIsThere, Clicking("cmdClearMakro"), JudgeDeleted},
      {"write table", TypeTable, Clicking("cmdSetMatrixTab"), JudgeTableWritten},
      {"read table", Showing(Tab::MatrixKeyboard), Clicking("cmdMatrixRead"), JudgeTable},
      {"delete table", TableIsThere, Clicking("cmdClearMatrixTast"), JudgeTableWritten},
  };
  script.insert(script.end(), std::begin(others), std::end(others));
  return script;
}

// ---- the bus ----

void Search(FireProgram& program) {
  program.Type("txtmaxDovu", "5");
  program.Click("cmdDovusuchen");
}
void QuickSearch(FireProgram& program) {
  program.Type("txtmaxDovu", "5");
  program.Click("cmdDovuSchnellsuche");
}
void JudgeSearch(FireProgram& program) {
  const auto& list = program.Find<QTreeWidget>("ctlDovuSuchListe");
  for (int address = 0; address < list.topLevelItemCount(); ++address) {
    bool present = false;
    for (std::size_t i = 0; i < program.Line().Bus().Count(); ++i) {
      present = present || program.At(i).Setup().address == address;
    }
    const std::string verdict = list.topLevelItem(address)->text(1).toStdString();
    const bool strange = !program.GoodLine() && (present || verdict != "ok");
    program.Hold(strange || verdict == (present ? "ok" : "nicht vorhanden"),
                 "address " + Number(address) + " " + verdict);
  }
  program.Select(program.Chosen().Setup().address);
}

// Another drawing each time.
void DrawForMany(FireProgram& program) {
  program.Show(Tab::Drawing);
  program.person.file = program.folder.Path("drawing.wmf");
  std::ofstream(*program.person.file, std::ios::binary)
      << WriteWmf(program.drawings.Next(), 240, 128).bytes;
  program.person.decisions = {Decision::Discard};
  program.Click("cmdToolbar_7");
  program.Trigger("mnuDovuSenden");
}
// The display of a Terminal that has heard nothing else.
PixelMap DisplayAfter(FireProgram& program, const std::string& payload, const PixelMap& like) {
  sim::Terminal reference({.width = like.Width(), .height = like.Height()}, program.Fonts());
  reference.PowerOn(program.loop.Now());
  for (const char character : payload) {
    reference.Receive(static_cast<unsigned char>(character), program.loop.Now());
  }
  return reference.Display().Pixels();
}
// What a Terminal has heard since it was asked for its sum.
std::string HeardSinceProof(FireProgram& program) {
  const std::string& heard = program.Line().Of(Way::ToTerminals).got;
  const std::size_t question = heard.rfind(AskChecksum().Text());
  return question == std::string::npos ? "" : heard.substr(question + AskChecksum().Text().size());
}
// What counts is the display when the Terminal is said to be good: a later one may be drawn there.
void SendToMany(FireProgram& program) {
  const std::string payload = TransferPayload(FireProgram::Grafik().CreatePic());
  auto& list = program.Find<QTreeWidget>("ctlDovuAktivliste");
  const auto judging =
      QObject::connect(&list, &QTreeWidget::itemChanged, [&](QTreeWidgetItem* item, int column) {
        if (column != 3 || !item->text(3).startsWith(QStringLiteral("gut"))) return;
        const auto index = static_cast<std::size_t>(list.indexOfTopLevelItem(item));
        const PixelMap& shown = program.At(index).Display().Pixels();
        const std::string heard = payload + HeardSinceProof(program);
        program.HoldProven(shown == DisplayAfter(program, heard, shown), index,
                           ExpectedChecksum(payload), "drawing is good");
      });
  program.Click("cmdDovuAlleAktiv");
  program.Click("cmdSenden");
  QObject::disconnect(judging);
}
void JudgeMany(FireProgram& program) {
  auto& list = program.Find<QTreeWidget>("ctlDovuAktivliste");
  for (int row = 0; row < list.topLevelItemCount(); ++row) {
    const std::string state = list.topLevelItem(row)->text(3).toStdString();
    if (program.GoodLine()) program.Hold(state.starts_with("gut"), "drawing " + state);
  }
  program.Find("frmDovu").hide();
  program.Select(program.Chosen().Setup().address);
}

std::vector<Action> MakeBusScript() {
  return {
      {"drawing to many", DrawForMany, SendToMany, JudgeMany, true},
      {"search", Showing(Tab::Terminals), Search, JudgeSearch, true},
      {"quick search", Showing(Tab::Terminals), QuickSearch, JudgeSearch, true},
  };
}

}  // namespace

const std::vector<Action>& Script() {
  static const std::vector<Action> script = MakeScript();
  return script;
}

const std::vector<Action>& BusScript() {
  static const std::vector<Action> script = MakeBusScript();
  return script;
}

}  // namespace kelvo::fire

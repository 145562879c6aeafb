#include "tests/fire/fire_program.h"

#include <algorithm>
#include <set>

#include "link/command_table.h"
#include "link/exchange.h"
#include "link/failure_cause.h"

namespace kelvo::fire {
namespace {

constexpr int kBaud = 19200;
constexpr nanoseconds kCharacter{520'833};
constexpr char kAckCharacter = '\x06';
constexpr char kNakCharacter = '\x15';
// A refusal that crosses no line: where an action begins in the history.
constexpr char kMarker[] = "Keine gültige Makro-Nummer";

// At least so long each answer is waited for.
constexpr milliseconds kSurelyWaited{480};

// At most so long is waited behind a text that ends with such a command, beside the text's own
// time: the interval, the listening behind an overdue answer, the pause, the rest of a proof.
nanoseconds LongestWait(std::string_view text) {
  const CommandRow* const last = LastCommand(text);
  if (last == nullptr) return milliseconds(300);
  if (last->name == CommandName::EraseEEprom) return milliseconds(31'000);
  if (last->name == CommandName::EraseEEpromCounting) return milliseconds(30'000);
  return milliseconds(3600);
}

}  // namespace

void Tally::Add(const Tally& other) {
  actions += other.actions;
  exchanges += other.exchanges;
  strikes += other.strikes;
  words += other.words;
  boxes += other.boxes;
  failures += other.failures;
  for (const auto& [why, count] : other.excused) excused[why] += count;
}

std::string Tally::Line() const {
  std::string text = std::to_string(actions) + " actions, " + std::to_string(exchanges) +
                     " exchanges, " + std::to_string(strikes) + " faults, " +
                     std::to_string(words) + " words held to the truth, " + std::to_string(boxes) +
                     " boxes; unavoidable:";
  for (const auto& [why, count] : excused) {
    text += " " + std::to_string(count) + " " + kExcuseNames[static_cast<std::size_t>(why)];
  }
  return text + (excused.empty() ? " none" : "");
}

FireProgram::FireProgram(const std::vector<int>& addresses, unsigned start, int baud)
    : drawings(start),
      addresses_(addresses),
      good_(baud == kBaud &&
            std::set(addresses.begin(), addresses.end()).size() == addresses.size()) {
  fonts_.Load(KELVO_PROGRAM_DIR "/fonts");
  port.characterTime = kCharacter;
  machine.deviceReady = [](const std::string&) { return true; };
  if (baud != kBaud) line_.Wires().SetHostFraming({.baud = kBaud, .bits = 8});
  Sql("update Optionen set FirstRun = 0");
  for (const int address : addresses) {
    line_.Bus().Add({.address = address, .baud = baud}, fonts_)->PowerOn(loop.Now());
    Sql("insert into DOVU (Adresse, Bezeichnung, Checksum, aktiv) values (" +
        std::to_string(address) + ", 'T', 1, 1)");
  }
  Start();
  Trigger("mnuAnsichtVerlauf");
  person.duringMessage = [this] { boxes_.push_back({person.LastMessage(), loop.Now()}); };
  Select(addresses.front());
  loop.RunFor(rest);
}

FireProgram::~FireProgram() = default;

void FireProgram::Select(int address) {
  Find<QSpinBox>("ctlUpDownAdrDovu").setValue(address);
  Click("cmdDovuAktivieren");
}

void FireProgram::Begin(const std::vector<Strike>& strikes) {
  const std::string number = Text("txtMakroNrDisplay");
  Type("txtMakroNrDisplay", "-1");
  Click("cmdPlayMakro");
  Type("txtMakroNrDisplay", number);
  Forget();
  port.writeTimes.clear();
  person.notices.clear();
  boxes_.clear();
  line_.Begin(strikes);
  strikes_ = strikes;
  images_.clear();
  for (std::size_t i = 0; i < line_.Bus().Count(); ++i) images_.push_back(At(i).Memory().Save());
  openedBefore_ = port.opened;
  begun_ = loop.Now();
}

void FireProgram::Do(const Action& action, const std::vector<Strike>& strikes,
                     const std::string& where) {
  line_.Begin({});
  action.prepare(*this);
  loop.RunFor(milliseconds(700));
  where_ = where + ", " + action.name;
  Begin(strikes);

  const int guard = ++guard_;
  loop.After(std::chrono::minutes(10), [this, guard] {
    if (guard == guard_) hung_ = loop.closing = true;
  });
  action.act(*this);
  ++guard_;
  const nanoseconds took = loop.Now() - begun_;
  QApplication::processEvents();
  ReadHistory();
  ++tally.actions;
  tally.exchanges += static_cast<int>(port.writes.size());
  tally.boxes += static_cast<int>(boxes_.size());
  JudgeTime(took);
  JudgeBoxes();
  JudgeAcknowledged();
  JudgeNamed(action);
  JudgeSilence();
  JudgeGoodLine(action);
  if (!tainted_) action.judge(*this);
  loop.RunFor(rest);  // what nobody waits for is still on the line, and may be struck
  tally.strikes += line_.Struck();
  tainted_ = tainted_ || line_.Struck() > 0;
}

std::pair<std::size_t, std::size_t> FireProgram::Lengths(const Action& action) {
  Do(action, {}, "good line");
  return {line_.Of(Way::ToTerminals).put.size(), line_.Of(Way::ToHost).put.size()};
}

void FireProgram::Recover() {
  line_.Begin({});
  loop.RunFor(milliseconds(100));
  for (std::size_t i = 0; i < line_.Bus().Count(); ++i) {
    sim::Terminal& terminal = At(i);
    terminal.PowerOff();
    terminal.Memory().Load(images_[i]);
    terminal.PowerOn(loop.Now());
  }
  Select(addresses_.front());
  loop.RunFor(milliseconds(300));
  tainted_ = false;
}

// ---- what was told ----

void FireProgram::ReadHistory() {
  history_.clear();
  const auto& list = Find<QListWidget>("ctlVerlauf");
  for (int row = 0; row < list.count(); ++row) {
    const std::string text = list.item(row)->text().mid(10).toStdString();  // behind the time
    history_.push_back(text);
    if (text.ends_with(kMarker)) history_.clear();
  }
}

bool FireProgram::Told(const std::string& part) const {
  return std::any_of(boxes_.begin(), boxes_.end(),
                     [&part](const Box& box) { return box.text.find(part) != std::string::npos; });
}

bool FireProgram::Noted(const std::string& beginning) const {
  return std::any_of(history_.begin(), history_.end(),
                     [&](const std::string& line) { return line.starts_with("✓ " + beginning); });
}

bool FireProgram::Failed(const std::string& end) const {
  return std::any_of(history_.begin(), history_.end(), [&](const std::string& line) {
    return line.starts_with("✗") && line.ends_with(end);
  });
}

std::string FireProgram::Story() const {
  std::string text = where_;
  for (const Strike& strike : strikes_) text += "\n  " + StrikeText(strike);
  for (std::size_t i = 0; i < port.writes.size(); ++i) {
    text += "\n  " + std::to_string((port.writeTimes[i] - begun_) / milliseconds(1)) + " ms " +
            ReadableText(port.writes[i].substr(0, 200));
  }
  text += "\n  Terminals heard " + ReadableText(line_.Of(Way::ToTerminals).got.substr(0, 400));
  text += "\n  sent  " + ReadableText(line_.Of(Way::ToHost).put.substr(0, 300));
  text += "\n  heard " + ReadableText(line_.Of(Way::ToHost).got.substr(0, 300));
  for (const Box& box : boxes_) text += "\n  box: " + box.text;
  for (const std::string& line : history_) text += "\n  " + line;
  return text;
}

void FireProgram::Fail(const std::string& what) {
  ++tally.failures;
  ADD_FAILURE() << what << "\n" << Story();
}

// ---- what is held to the truth ----

void FireProgram::Hold(bool truth, const std::string& word) {
  ++tally.words;
  if (truth) return;
  if (line_.Altered(Way::ToHost)) {
    ++tally.excused[Excuse::Forged];
  } else if (line_.Altered(Way::ToTerminals)) {
    ++tally.excused[Excuse::Misheard];
  } else if (line_.Late()) {
    ++tally.excused[Excuse::Late];
  } else {
    Fail("a false word: " + word);
  }
}

void FireProgram::HoldProven(bool truth, std::size_t terminal, std::uint16_t sum,
                             const std::string& word) {
  ++tally.words;
  const auto answers = [this, sum](std::size_t index) {
    return At(index).Selected() && At(index).ChecksumNow() == sum;
  };
  if (truth) return;
  if (line_.Altered(Way::ToTerminals) && answers(terminal)) {
    ++tally.excused[Excuse::EqualSum];
    return;
  }
  for (std::size_t other = 0; other < line_.Bus().Count(); ++other) {
    if (!line_.Altered(Way::ToTerminals) || !answers(other)) continue;
    ++tally.excused[Excuse::Mistaken];
    return;
  }
  Fail("a false proof: " + word);
}

bool FireProgram::Heard(char character, nanoseconds from, nanoseconds to) const {
  const FaultyLine::Lane& lane = line_.Of(Way::ToHost);
  for (std::size_t i = 0; i < lane.got.size(); ++i) {
    if (lane.got[i] == character && lane.times[i] > from && lane.times[i] <= to) return true;
  }
  return false;
}

nanoseconds FireProgram::EndOf(std::size_t write) const {
  return port.writeTimes[write] + kCharacter * static_cast<long>(port.writes[write].size());
}

// Beside the prescribed waits a line that is held is given up after five seconds, each time that
// something is to be sent.
void FireProgram::JudgeTime(nanoseconds took) {
  nanoseconds longest = std::chrono::seconds(2);
  const bool held = std::any_of(strikes_.begin(), strikes_.end(),
                                [](const Strike& strike) { return strike.kind == Kind::Hold; });
  for (const std::string& text : port.writes) {
    longest += kCharacter * static_cast<long>(text.size()) + LongestWait(text) +
               std::chrono::seconds(held ? 10 : 0);
  }
  if (hung_) Fail("it does not end");
  loop.closing = hung_ = false;
  if (took > longest) Fail("it takes " + std::to_string(took / milliseconds(1)) + " ms");
  if (!port.IsOpen()) Fail("the port was given up");
}

void FireProgram::JudgeBoxes() {
  for (const Box& box : boxes_) {
    const auto after = std::find_if(port.writeTimes.rbegin(), port.writeTimes.rend(),
                                    [&box](nanoseconds time) { return time < box.time; });
    if (after == port.writeTimes.rend()) continue;
    const auto write = static_cast<std::size_t>(port.writeTimes.rend() - after - 1);
    ++tally.words;
    if (box.text.starts_with("keine Reaktion")) {
      if (Heard(kAckCharacter, EndOf(write), box.time)) Fail("an acknowledge was not seen");
      if (box.time - port.writeTimes[write] < milliseconds(500)) Fail("it was not waited for");
    }
    if (box.text == "Fehler beim EEPROM" && !Heard(kNakCharacter, begun_, box.time)) {
      Fail("nobody has refused");
    }
  }
}

void FireProgram::JudgeAcknowledged() {
  const auto& lines = history_;
  const auto told = std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
    return line.find(", bestätigt") != std::string::npos;
  });
  const std::string& heard = line_.Of(Way::ToHost).got;
  tally.words += static_cast<int>(told);
  if (told > std::count(heard.begin(), heard.end(), kAckCharacter)) Fail("nobody has acknowledged");
}

// Each question and each acknowledged command to which nothing has come is told as failed.
void FireProgram::JudgeNamed(const Action& action) {
  if (action.saysItself) return;
  const auto failed = std::any_of(history_.begin(), history_.end(),
                                  [](const std::string& line) { return line.starts_with("✗"); });
  if (failed || !boxes_.empty()) return;
  for (std::size_t i = 0; i < port.writes.size(); ++i) {
    const CommandRow* const last = LastCommand(port.writes[i]);
    if (last == nullptr) continue;
    const nanoseconds next = i + 1 < port.writes.size() ? port.writeTimes[i + 1] : loop.Now();
    const char end = last->answer == Answer::Acknowledge ? kAckCharacter : ';';
    const bool asks = last->answer == Answer::Acknowledge || last->answer == Answer::Value;
    if (asks && !Heard(end, port.writeTimes[i], next)) Fail("a failure was not named");
  }
}

// Silence is told of a question only to which not one character came in its time. The echo of a
// line is no answer.
void FireProgram::JudgeSilence() {
  if (line_.Wires().Echo()) return;
  const auto told = std::count_if(history_.begin(), history_.end(), [](const std::string& line) {
    // Between the numbers that an erase counts, each is awaited anew.
    return line.starts_with("✗") && line.ends_with("keine Antwort") &&
           line.find("löschen mit Fortschritt") == std::string::npos;
  });
  const FaultyLine::Lane& lane = line_.Of(Way::ToHost);
  int silent = 0;
  for (std::size_t i = 0; i < port.writes.size(); ++i) {
    const CommandRow* const last = LastCommand(port.writes[i]);
    if (last == nullptr || last->answer == Answer::None) continue;
    const bool came = std::any_of(lane.times.begin(), lane.times.end(), [&](nanoseconds time) {
      return time > port.writeTimes[i] && time < EndOf(i) + kSurelyWaited;
    });
    if (!came) ++silent;
  }
  tally.words += static_cast<int>(told);
  if (told > silent) Fail("an answer was not seen");
}

void FireProgram::JudgeGoodLine(const Action& action) {
  if (tainted_ || line_.Struck() > 0 || !good_ || action.refused) return;
  bool anybody = false;
  for (std::size_t i = 0; i < line_.Bus().Count(); ++i) anybody = anybody || At(i).Selected();
  for (const std::string& line : history_) {
    const bool refused = line.find("nichts anderes gesendet") != std::string::npos;
    const bool askedNobody = !anybody && line.ends_with("keine Antwort");  // a search ends so
    if (line.starts_with("✗") && !refused && !askedNobody) Fail("a failure on a good line");
  }
  for (const Box& box : boxes_) {
    const bool failure = std::any_of(
        FailureTexts().begin(), FailureTexts().end(),
        [&box](const FailureText& known) { return box.text.starts_with(known.beginning); });
    if (failure) Fail("a failure on a good line");
  }
}

}  // namespace kelvo::fire

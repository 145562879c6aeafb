#include "inventory/readings.h"

#include <algorithm>

#include "inventory/line_text.h"
#include "link/addresses.h"
#include "link/chronicle.h"

namespace kelvo {
namespace {

using Query = CommandName;

constexpr Question kQuestions[] = {{"Adresse", Query::AskAddress, true},
                                   {"Version", Query::AskVersion, true},
                                   {"Flash-Speicher", Query::AskFlash, true},
                                   {"Freier Platz im EEPROM", Query::AskFreeBytes, false},
                                   {"Eingänge P1", Query::AskPort, false},
                                   {"Aktive Matrix-Tabelle", Query::AskMatrixTable, true},
                                   {"Aktive AT-Tabelle", Query::AskAtTable, true},
                                   {"Cursor", Query::AskCursor, false},
                                   {"Cursorform", Query::AskCursorShape, false},
                                   {"Textposition", Query::AskTextPosition, false},
                                   {"Textschrift", Query::AskTextFont, false},
                                   {"Textattribut", Query::AskTextAttribute, false},
                                   {"Textmodus", Query::AskTextMode, false},
                                   {"Textzoom", Query::AskTextZoom, false}};

constexpr std::size_t kReadingFields = 5;
constexpr char kNoAnswer[] = "keine Antwort";

std::optional<CommandName> QueryOf(std::string_view letters) {
  for (const Question& question : kQuestions) {
    if (RowOf(question.query).letters == letters) return question.query;
  }
  return std::nullopt;
}

}  // namespace

std::span<const Question> Questions() { return kQuestions; }

std::string ReadingLine(const Reading& reading) {
  return Sealed(TimeText(reading.time) + '\t' + EscapedText(reading.terminal.device) + '\t' +
                std::to_string(reading.terminal.address) + '\t' +
                std::string(RowOf(reading.query).letters) + '\t' + EscapedWire(reading.reply)) +
         '\n';
}

std::optional<Reading> ReadReadingLine(std::string_view line) {
  const auto unsealed = Unsealed(line);
  if (!unsealed) return std::nullopt;
  const std::vector<std::string_view> fields = SplitAt(*unsealed, '\t');
  if (fields.size() != kReadingFields) return std::nullopt;
  const auto time = TimeIn(fields[0]);
  const auto device = PlainText(fields[1]);
  const auto address = NumberIn<int>(fields[2]);
  const auto query = QueryOf(fields[3]);
  auto reply = PlainWire(fields[4]);
  if (!time || !device || !address || !query || !reply) return std::nullopt;
  return Reading{*time, {*device, *address}, *query, *std::move(reply)};
}

Readings::Readings(const std::string& path) : file_(path) {
  for (const std::string& line : file_->Read().lines) {
    if (auto reading = ReadReadingLine(line)) readings_.push_back(*std::move(reading));
  }
}

void Readings::Take(const Reading& reading) {
  readings_.push_back(reading);
  silences_.erase({reading.terminal, reading.query});
}

std::optional<std::string> Readings::Add(const Reading& reading) {
  Take(reading);
  return file_ ? file_->Append(ReadingLine(reading)) : std::nullopt;
}

void Readings::AddSilence(const TerminalId& terminal, CommandName query, Silence silence) {
  silences_.insert_or_assign({terminal, query}, std::move(silence));
}

const Silence* Readings::SilenceOf(const TerminalId& terminal, CommandName query) const {
  const auto silence = silences_.find({terminal, query});
  return silence == silences_.end() ? nullptr : &silence->second;
}

const Reading* Readings::Last(const TerminalId& terminal, CommandName query) const {
  return Latest(terminal, query, 0);
}

const Reading* Readings::Before(const TerminalId& terminal, CommandName query) const {
  return Latest(terminal, query, 1);
}

const Reading* Readings::Latest(const TerminalId& terminal, CommandName query, int behind) const {
  const auto found = std::find_if(readings_.rbegin(), readings_.rend(), [&](const Reading& some) {
    return some.terminal == terminal && some.query == query && behind-- == 0;
  });
  return found == readings_.rend() ? nullptr : &*found;
}

ReadRun::Result ReadRun::Run(const std::string& device, const std::vector<int>& addresses,
                             std::optional<int> selectAfter, const Listener& listener) {
  stopping_ = false;
  Result result;
  for (const int address : addresses) {
    services_.loop.ProcessPending();  // a wish to stop
    if (!GoesOn()) break;
    listener(address);
    AskAll({device, address}, result);
  }
  result.complete = GoesOn();
  result.lost = !services_.exchange.Alive();
  // To select once more who has just kept silent would only make that forgotten.
  const bool there = result.complete && selectAfter && !addresses.empty() &&
                     addresses.back() == *selectAfter && KeptSilent({device, *selectAfter});
  if (services_.exchange.Alive() && !there) {
    services_.exchange.SendString(SelectAddress(selectAfter.value_or(kClosingAddress)));
  }
  return result;
}

bool ReadRun::KeptSilent(const TerminalId& terminal) const {
  const Silence* const silence = services_.readings.SilenceOf(terminal, Query::AskAddress);
  return silence != nullptr && silence->why == kNoAnswer;
}

// Who is silent to its address is asked nothing else; what is not answered is not known.
void ReadRun::AskAll(const TerminalId& terminal, Result& result) {
  ProvenWrite reach(services_.exchange, services_.loop);
  const WriteResult there = reach.Ask(terminal.address);
  if (!services_.exchange.Alive()) return;
  const bool answers = there.verdict == WriteVerdict::Proven;
  if (!answers) {
    result.silent.push_back(terminal.address);
    return TakeSilence(terminal, there.verdict);
  }
  const auto keep = [&](CommandName query, const Reply& reply) {
    const auto reason =
        services_.readings.Add({services_.loop.WallClock(), terminal, query, reply.text});
    if (reason) result.notKept = reason;
  };
  keep(Query::AskAddress, there.reply);
  for (const Question& question : kQuestions) {
    if (question.query == Query::AskAddress) continue;
    if (!GoesOn()) return result.partly.push_back(terminal.address);
    const Reply reply = services_.exchange.SendQuery(Command(question.query));
    if (!reply.Failed() && reply.readable) {
      keep(question.query, reply);
    } else if (services_.exchange.Alive()) {
      services_.readings.AddSilence(
          terminal, question.query,
          {services_.loop.WallClock(), reply.readable ? kNoAnswer : FailureWords(reply)});
    }
  }
  auto& reached = services_.exchange.Alive() ? result.answered : result.partly;
  reached.push_back(terminal.address);
}

// None of its questions has an answer.
void ReadRun::TakeSilence(const TerminalId& terminal, WriteVerdict verdict) {
  const char* const why =
      verdict == WriteVerdict::OtherAnswer ? "andere Adresse antwortet" : kNoAnswer;
  for (const Question& question : kQuestions) {
    services_.readings.AddSilence(terminal, question.query, {services_.loop.WallClock(), why});
  }
}

}  // namespace kelvo

#include "link/chronicle.h"

#include <utility>

#include "base/val.h"
#include "base/wire_text.h"
#include "link/command_words.h"
#include "link/control_characters.h"

namespace kelvo {
namespace {

constexpr std::size_t kLongestAnswer = 20;

constexpr char kDrawing[] = "Zeichnung gesendet: ";

bool IsDrawing(const CommandRow* row) {
  return row != nullptr && row->name > CommandName::ClearDisplay &&
         row->name <= CommandName::GraphicText;
}

bool IsSelection(const CommandRow& row) { return row.name == CommandName::SelectAddress; }

int SelectedIn(std::string_view text) {
  const std::string_view letters = RowOf(CommandName::SelectAddress).letters;
  return RoundToEven(Val(text.substr(text.rfind(letters) + letters.size())));
}

bool IsQuestion(const CommandRow& row) {
  return row.answer == Answer::Value || row.answer == Answer::FreeText;
}

}  // namespace

std::string FailureWords(const Reply& reply) {
  if (!reply.readable) return "Antwort unlesbar";
  switch (reply.kind) {
    case ReplyKind::Silent:
      return "keine Antwort";
    case ReplyKind::Unfinished:
      return "Antwort unvollständig";
    case ReplyKind::Refused:
      return "abgelehnt (NAK)";
    case ReplyKind::Unexpected:
      return "statt der Quittung „" + ReadableText(reply.received.substr(0, kLongestAnswer)) + "“";
    case ReplyKind::PortClosed:
      return "kein Anschluss offen";
    default:
      return {};
  }
}

std::string MarkWords(const Reply& reply, const Exchange& exchange) {
  if (reply.kind == ReplyKind::PortClosed) return "Anschluss geschlossen";
  if (reply.kind == ReplyKind::Silent && exchange.LineHeld()) return "Leitung gehalten";
  return FailureWords(reply);
}

Chronicle::Chronicle(LineWatch& line, std::function<Moment()> clock, std::function<bool()> busy)
    : clock_(std::move(clock)), busy_(std::move(busy)) {
  line.FollowTraffic([this](Direction direction, std::string_view characters) {
    if (direction == Direction::ToTerminal) Sent(characters);
  });
  line.FollowOutcomes([this](const Outcome& outcome) { Settle(outcome); });
}

// What is answered is told when it has been; what only asks is none of the operator's doings.
void Chronicle::Sent(std::string_view text) {
  const bool goesOn = std::exchange(whole_, text.size() != kPieceLength) == false;
  const CommandRow* const last = LastCommand(text);
  if (!busy_()) target_.reset();
  if (busy_() && last != nullptr && IsSelection(*last)) target_ = SelectedIn(text);
  if (goesOn || IsDrawing(last)) return SentDrawing(text.size(), goesOn);
  if (last != nullptr && last->answer != Answer::None) return;
  if (busy_() && (last == nullptr || last->done.empty() || IsSelection(*last))) return;
  const bool open = EndsOpen(text);
  const std::string done = open ? std::string() : DoneWords(text);
  if (last != nullptr && IsSelection(*last) && !open) return Note(done);
  NoteSent((done.empty() ? CommandWords(text, 1) : done) + ": gesendet" +
           (open ? ", Befehl noch offen: Trennzeichen fehlt" : ""));
}

// One that is sent again and again, as it is drawn, is one line.
void Chronicle::SentDrawing(std::size_t length, bool goesOn) {
  if (busy_()) return;
  length_ = goesOn ? length_ + length : length;
  const bool again = !lines_.empty() && lines_.back().text.starts_with(kDrawing);
  if (again) lines_.pop_back();
  NoteSent(kDrawing + std::to_string(length_) + " Zeichen");
}

// Of what nobody confirms is known that it was sent, and perhaps what is against its arrival.
void Chronicle::NoteSent(const std::string& what) {
  const std::string doubt = doubt_ ? doubt_() : std::string();
  Add(doubt.empty() ? what : what + ", " + doubt, doubt.empty() ? Weight::Sent : Weight::Doubtful);
}

void Chronicle::Settle(const Outcome& outcome) {
  const CommandRow* const asked = LastCommand(outcome.sent);
  if (asked == nullptr || asked->answer == Answer::None) return;
  if (!IsQuestion(*asked)) return NoteAcknowledged(outcome);
  freeBytes_.reset();
  const bool answered = !outcome.reply.Failed() && outcome.reply.readable;
  if (answered && asked->name == CommandName::AskFreeBytes) freeBytes_ = outcome.reply.Number();
  if (answered || asking_ > 0 || busy_()) return;
  Note(CommandWords(outcome.sent, 1) + ": " + FailureWords(outcome.reply), true);
}

void Chronicle::NoteAcknowledged(const Outcome& outcome) {
  const Reply reply = JudgedAcknowledge(outcome.reply);
  if (reply.kind == ReplyKind::Sent) return;  // it still counts
  if (reply.Failed()) {
    const std::string what = TargetWords() + CommandWords(outcome.sent, 1) + ": ";
    // What is waited for behind a refusal cannot come.
    const bool over = LastCommand(outcome.sent)->answer == Answer::CountDown &&
                      reply.kind == ReplyKind::Silent && !lines_.empty() &&
                      lines_.back().weight == Weight::Refused &&
                      lines_.back().text.starts_with(what);
    if (over) return;
    Add(what + FailureWords(reply),
        reply.kind == ReplyKind::Refused ? Weight::Refused : Weight::Failed);
  } else {
    const std::string before =
        freeBytes_ ? ", vorher " + NumberText(*freeBytes_) + " Byte frei" : std::string();
    Note(TargetWords() + DoneWords(outcome.sent) + ", bestätigt" + before);
  }
  freeBytes_.reset();
}

// Of an undertaking that writes to several.
std::string Chronicle::TargetWords() const {
  return busy_() && target_ ? "Adresse " + std::to_string(*target_) + ": " : std::string();
}

void Chronicle::Note(const std::string& text, bool failed) {
  Add(text, failed ? Weight::Failed : Weight::Done);
}

void Chronicle::Add(const std::string& text, Weight weight) {
  const bool failed = weight == Weight::Doubtful || weight >= Weight::Failed;
  lines_.push_back({clock_(), failed, text, weight});
  if (lines_.size() > kLines) lines_.pop_front();
  if (listener_) listener_(lines_.back());
}

}  // namespace kelvo

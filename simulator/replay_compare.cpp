#include <algorithm>
#include <map>

#include "base/wire_text.h"
#include "simulator/question.h"
#include "simulator/replay.h"

namespace kelvo::sim {
namespace {

// What an adapter and a busy machine may hold characters back.
constexpr Time kHeldBack = std::chrono::milliseconds(250);
constexpr std::size_t kLongestQuote = 60;
constexpr std::size_t kMostLines = 10;  // named

// Characters of the capture that were not asked for.
struct Unasked {
  std::size_t line;
  std::size_t characters;
};
// How many characters may be taken by what was recorded, and what of it is passed over then.
using Ways = std::map<std::size_t, std::vector<Unasked>>;

struct Matched {
  Ways ways;
  std::size_t failed = 0;  // the first text of the capture that fits nowhere, if there is no way
};

void AddWay(Ways& ways, std::size_t length, std::vector<Unasked> unasked,
            std::optional<Unasked> more = std::nullopt) {
  if (more) unasked.push_back(*more);
  ways.try_emplace(length, std::move(unasked));
}

int AnswersIn(std::string_view heard) {
  int answers = 0;
  for (std::size_t length = 1; length <= heard.size(); ++length) {
    answers += EndsAnswer(heard.substr(0, length)) ? 1 : 0;
  }
  return answers;
}

// A key that is pressed while an answer arrives, or shortly after, stands in the same line behind
// it.
bool IsBehindAnswer(const ReplayStep& step, std::string_view heard, std::string_view recorded) {
  return step.questions > 0 && EndsAnswer(heard) && heard.size() < recorded.size() &&
         recorded.starts_with(heard) && AnswersIn(heard) >= step.questions;
}

// All ways to find the texts of the capture in `heard`, from its first character on and without a
// gap. Those that were not asked for may be missing.
Matched Match(const ReplayStep& step, std::string_view heard) {
  Matched matched{{{0, {}}}};
  for (const ReplayReceived& text : step.received) {
    const std::string_view recorded = text.characters;
    Ways next;
    for (auto& [length, unasked] : matched.ways) {
      const std::string_view left = heard.substr(length);
      if (left.starts_with(recorded)) {
        AddWay(next, length + recorded.size(), unasked);
      } else if (IsBehindAnswer(step, left, recorded)) {
        AddWay(next, heard.size(), unasked, Unasked{text.line, recorded.size() - left.size()});
      }
      if (text.asked) continue;
      AddWay(next, length, std::move(unasked), Unasked{text.line, recorded.size()});
    }
    if (next.empty()) return {{}, matched.failed};
    matched.ways = std::move(next);
    ++matched.failed;
  }
  return matched;
}

class Comparison {
 public:
  Comparison(const ReplayPlan& plan, const std::vector<ReplayHeard>& heard)
      : plan_(plan), heard_(heard) {}

  ReplayReport Run() {
    for (const ReplayReceived& text : plan_.steps[0].received) {
      NoteUnasked({text.line, text.characters.size()});
    }
    for (step_ = 1; step_ < plan_.steps.size(); ++step_) CompareStep();
    return std::move(report_);
  }

 private:
  void CompareStep() {
    const ReplayStep& step = plan_.steps[step_];
    text_ = std::move(rest_);
    rest_.clear();
    at_ = std::move(restAt_);
    restAt_.clear();
    text_ += heard_[step_].characters;
    at_.insert(at_.end(), heard_[step_].at.begin(), heard_[step_].at.end());
    if (!step.compared) {
      ++report_.notCompared;
      return;
    }
    const Matched matched = Match(step, text_);
    const auto way = std::find_if(matched.ways.rbegin(), matched.ways.rend(),
                                  [this](const auto& one) { return Fits(one.first); });
    if (way == matched.ways.rend()) return NoteDifference(matched.failed);
    for (const Unasked& unasked : way->second) NoteUnasked(unasked);
    if (way->first > 0) ++report_.answers;
    rest_ = text_.substr(way->first);
    restAt_.assign(at_.begin() + static_cast<std::ptrdiff_t>(way->first), at_.end());
  }

  // Whether all behind these characters belongs to a later text.
  bool Fits(std::size_t length) const {
    if (length == text_.size()) return true;
    for (std::size_t later = step_ + 1; later < plan_.steps.size(); ++later) {
      const ReplayStep& step = plan_.steps[later];
      if (step.received.empty()) continue;
      const ReplayReceived& next = step.received.front();
      const std::size_t both = std::min(next.characters.size(), text_.size() - length);
      return step.compared && next.at <= at_[length] + kHeldBack &&
             text_.compare(length, both, next.characters, 0, both) == 0;
    }
    return false;
  }

  void NoteUnasked(const Unasked& unasked) {
    report_.unaskedCharacters += unasked.characters;
    report_.unaskedLines.push_back(unasked.line);
  }

  void NoteDifference(std::size_t failed) {
    const ReplayStep& step = plan_.steps[step_];
    ReplayDifference difference{.line = step.line, .sentLine = step.line, .sent = step.sent};
    if (!step.received.empty()) {
      difference.line = step.received[std::min(failed, step.received.size() - 1)].line;
    }
    difference.recorded = step.Received();
    difference.replayed = text_;
    report_.differences.push_back(std::move(difference));
    ++report_.answers;
  }

  const ReplayPlan& plan_;
  const std::vector<ReplayHeard>& heard_;
  std::size_t step_ = 0;
  std::string text_;  // what has come back to this step
  std::vector<Time> at_;
  std::string rest_;  // of it what belongs to a later one
  std::vector<Time> restAt_;
  ReplayReport report_;
};

// The characters from shortly before `from` on, readable and as numbers.
std::string Quote(const std::string& text, std::size_t from) {
  if (text.empty()) return "nichts";
  const std::size_t begin =
      text.size() <= kLongestQuote ? 0 : from - std::min<std::size_t>(from, 8);
  const std::string part = text.substr(begin, kLongestQuote);
  return std::string(begin > 0 ? "…" : "") + "„" + ReadableText(part) + "“" +
         (begin + part.size() < text.size() ? "…" : "") + "  " + HexText(part);
}

std::string DifferenceText(const ReplayDifference& difference) {
  const std::string& a = difference.recorded;
  const std::string& b = difference.replayed;
  const auto from = static_cast<std::size_t>(
      std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
  const std::string sent = ReadableText(difference.sent.substr(0, kLongestQuote)) +
                           (difference.sent.size() > kLongestQuote ? "…" : "");
  return "Zeile " + std::to_string(difference.line) + ": andere Antwort auf „" + sent +
         "“ (Zeile " + std::to_string(difference.sentLine) +
         ")\n  aufgezeichnet: " + Quote(a, from) + "\n  abgespielt:    " + Quote(b, from) + "\n";
}

std::string LinesText(const std::vector<std::size_t>& lines) {
  std::string text = lines.size() == 1 ? "Zeile " : "Zeilen ";
  for (std::size_t i = 0; i < lines.size() && i < kMostLines; ++i) {
    text += (i > 0 ? ", " : "") + std::to_string(lines[i]);
  }
  return text + (lines.size() > kMostLines ? " …" : "");
}

}  // namespace

ReplayReport CompareReplay(const ReplayPlan& plan, const std::vector<ReplayHeard>& heard) {
  return Comparison(plan, heard).Run();
}

std::string ReplayText(const ReplayReport& report) {
  std::string text;
  for (const ReplayDifference& difference : report.differences) text += DifferenceText(difference);
  const std::size_t different = report.differences.size();
  text += "Antworten: " + std::to_string(report.answers) +
          ", davon verschieden: " + std::to_string(different) + "\n";
  if (report.unaskedCharacters > 0) {
    text += "Unverlangt aufgezeichnete Zeichen, die nicht verglichen wurden: " +
            std::to_string(report.unaskedCharacters) + " (" + LinesText(report.unaskedLines) +
            ")\n";
  }
  if (report.notCompared > 0) {
    text += "Nicht verglichen, weil der Anschluss weg war: " + std::to_string(report.notCompared) +
            "\n";
  }
  return text;
}

}  // namespace kelvo::sim

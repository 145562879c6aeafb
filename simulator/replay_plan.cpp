#include "simulator/replay_plan.h"

#include <algorithm>
#include <utility>

#include "link/capture_text.h"
#include "simulator/question.h"

namespace kelvo::sim {
namespace {

// A clock that is set right for the first time jumps half a century; times count up to 292 years.
constexpr std::chrono::seconds kLongestGap = std::chrono::years(100);

bool HasAllColumns(std::string_view line) {
  return std::count(line.begin(), line.end(), '\t') >=
         std::count(kCaptureHead.begin(), kCaptureHead.end(), '\t');
}

class PlanReader {
 public:
  explicit PlanReader(ReplayPlan& plan) : plan_(plan) { plan_.steps.emplace_back(); }

  /// `cut`: nothing ends the line, so that its end may be missing.
  void Add(std::string_view text, std::size_t number, bool cut) {
    if (error_) return;
    if (cut && !HasAllColumns(text)) {
      error_ = "Zeile " + std::to_string(number) + " ist abgeschnitten";
      return;
    }
    const std::optional<CaptureLine> line = ReadCaptureLine(text);
    if (!line) {
      error_ = "Zeile " + std::to_string(number) + " ist keine Zeile einer Mitschrift";
      return;
    }
    if (!first_) first_ = line->time;
    const auto since = line->time - *first_;
    if (since > kLongestGap) {
      error_ = "Zeile " + std::to_string(number) + " liegt mehr als 100 Jahre hinter der ersten";
      return;
    }
    // A clock that was set back meanwhile does not turn the order round.
    if (since > since.zero()) plan_.end = std::max<Time>(plan_.end, since);
    if (line->characters.empty()) return;  // nothing has crossed the line
    if (line->direction == Direction::FromTerminal) {
      AddReceived(*line, number);
    } else {
      AddSent(*line, number);
    }
  }

  std::optional<std::string> End() {
    if (!error_ && plan_.steps.size() == 1) error_ = "darin ist nichts gesendet worden";
    return error_;
  }

 private:
  void AddSent(const CaptureLine& line, std::size_t number) {
    ReplayStep step{.line = number, .at = plan_.end, .sent = line.characters};
    step.compared = line.result != kCaptureClosed;
    step.questions = question_.AskedBy(line.characters);
    asked_ = step.questions > 0;
    plan_.steps.push_back(std::move(step));
  }

  // The answer is what is noted as such. Where nothing is, nobody waited for it, and it is what
  // comes to a question.
  void AddReceived(const CaptureLine& line, std::size_t number) {
    ReplayStep& step = plan_.steps.back();
    if (line.result == kCaptureClosed) step.compared = false;
    std::vector<ReplayReceived>& received = step.received;
    const bool noted = !line.result.empty();
    if (noted && asked_) {
      for (ReplayReceived& piece : received) piece.asked = false;
      asked_ = false;
    }
    received.push_back({number, plan_.end, WithoutHandshake(line.characters), noted || asked_});
  }

  ReplayPlan& plan_;
  std::optional<WallTime> first_;
  std::optional<std::string> error_;
  Question question_;
  bool asked_ = false;  // and nothing is noted as the answer yet
};

}  // namespace

std::size_t ReplayStep::AwaitedLength() const {
  std::size_t length = 0;
  std::size_t awaited = 0;
  for (const ReplayReceived& text : received) {
    length += text.characters.size();
    if (text.asked) awaited = length;
  }
  return awaited;
}

std::string ReplayStep::Received() const {
  std::string all;
  for (const ReplayReceived& text : received) all += text.characters;
  return all;
}

std::optional<std::string> ReadReplay(std::string_view capture, ReplayPlan& plan) {
  plan = {};
  PlanReader reader(plan);
  EachCaptureLine(capture, [&](std::string_view line, std::size_t number) {
    const bool last = !line.empty() && line.data() + line.size() == capture.data() + capture.size();
    reader.Add(line, number, last);
  });
  return reader.End();
}

std::string WithoutHandshake(std::string_view characters) {
  std::string text(characters);
  std::erase_if(text, [](char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return code == kXon || code == kXoff;
  });
  return text;
}

}  // namespace kelvo::sim

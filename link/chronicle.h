#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "link/line_watch.h"

namespace kelvo {

/// What has been done and what came of it, a German line each, made from what crosses the line:
/// what is acknowledged when it is, what fails, and what was sent that nobody acknowledges.
class Chronicle {
 public:
  using Moment = std::chrono::sys_time<std::chrono::milliseconds>;
  /// How much a line matters beside the others of one deed, the least first. An acknowledge takes
  /// the doubt from what was sent before it.
  enum class Weight : std::uint8_t { Sent, Doubtful, Done, Failed, Refused };
  struct Line {
    Moment time;
    bool failed = false;
    std::string text;  ///< UTF-8
    Weight weight = Weight::Done;
  };
  static constexpr std::size_t kLines = 50;

  /// `busy`: one undertaking sends by itself (a search, a transfer) and says itself what came of
  /// it.
  Chronicle(LineWatch& line, std::function<Moment()> clock, std::function<bool()> busy);
  Chronicle(const Chronicle&) = delete;
  Chronicle& operator=(const Chronicle&) = delete;

  /// Something that the line alone does not tell.
  void Note(const std::string& text, bool failed = false);
  /// While it lives, questions that fail leave no line: who asks them says what they mean.
  class Asking {
   public:
    explicit Asking(Chronicle& chronicle) : chronicle_(chronicle) { ++chronicle_.asking_; }
    ~Asking() { --chronicle_.asking_; }
    Asking(const Asking&) = delete;
    Asking& operator=(const Asking&) = delete;

   private:
    Chronicle& chronicle_;
  };
  /// Told each line when it is made.
  void SetListener(std::function<void(const Line&)> listener) { listener_ = std::move(listener); }
  /// Asked why what nobody confirms may not have arrived: "aber es ist kein Terminal gewählt";
  /// empty where nothing is known against it.
  void SetDoubt(std::function<std::string()> doubt) { doubt_ = std::move(doubt); }
  /// The last kLines, the oldest first.
  const std::deque<Line>& Lines() const { return lines_; }

 private:
  void Sent(std::string_view text);
  void SentDrawing(std::size_t length, bool goesOn);
  void NoteSent(const std::string& what);
  void Add(const std::string& text, Weight weight);
  void Settle(const Outcome& outcome);
  void NoteAcknowledged(const Outcome& outcome);
  std::string TargetWords() const;

  std::function<Moment()> clock_;
  std::function<bool()> busy_;
  int asking_ = 0;
  std::deque<Line> lines_;
  bool whole_ = true;                // the text sent last has not been one piece of several
  std::size_t length_ = 0;           // of the drawing sent last
  std::optional<int> target_;        // selected last by the undertaking that sends by itself
  std::optional<double> freeBytes_;  // as read by the question before
  std::function<void(const Line&)> listener_;
  std::function<std::string()> doubt_;
};

/// What has come in place of a good answer: "keine Antwort"; empty when it was one.
std::string FailureWords(const Reply& reply);
/// The same, short enough to stand beside a field; it also tells what keeps the line.
std::string MarkWords(const Reply& reply, const Exchange& exchange);

}  // namespace kelvo

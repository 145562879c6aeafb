#pragma once

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/event_loop.h"
#include "inventory/entry.h"
#include "inventory/journal_file.h"
#include "inventory/proven_write.h"
#include "link/exchange.h"

// What Terminals have told of themselves when they were asked for it, and when.

namespace kelvo {

/// The file of the readings in the data folder.
inline constexpr char kReadingsFile[] = "gelesen.txt";

/// A question that is asked for the comparison.
struct Question {
  const char* what;  ///< German, UTF-8
  CommandName query;
  bool lasting;  ///< another reply than before means that the Terminal is another or was changed
};
std::span<const Question> Questions();

/// A reply, a wire text.
struct Reading {
  JournalTime time;
  TerminalId terminal;
  CommandName query = CommandName::AskVersion;
  std::string reply;
};

/// A reply as a line of the file, with its end:
///
///   time TAB device TAB address TAB query TAB reply TAB check
std::string ReadingLine(const Reading& reading);
/// Nothing for a line (without its end) that is torn or no reading.
std::optional<Reading> ReadReadingLine(std::string_view line);

/// A question that was not answered.
struct Silence {
  JournalTime time;
  std::string why;  ///< German, UTF-8
};

/// In the file a line each, UTF-8, for people too. The form of the replies is the device's own;
/// they are kept as they came.
class Readings {
 public:
  /// Without a file.
  Readings() = default;
  explicit Readings(const std::string& path);

  /// Nothing when it is kept, else the reason why it is not in the file, UTF-8.
  std::optional<std::string> Add(const Reading& reading);
  /// The same without the file.
  void Take(const Reading& reading);
  /// Takes that a question was asked and not answered. It is known until the program ends.
  void AddSilence(const TerminalId& terminal, CommandName query, Silence silence);
  /// What came of the last question, where that was not answered; nullptr otherwise.
  const Silence* SilenceOf(const TerminalId& terminal, CommandName query) const;
  /// The newest reply; nullptr without any.
  const Reading* Last(const TerminalId& terminal, CommandName query) const;
  /// The one before that; nullptr without any.
  const Reading* Before(const TerminalId& terminal, CommandName query) const;

 private:
  const Reading* Latest(const TerminalId& terminal, CommandName query, int behind) const;

  std::optional<JournalFile> file_;
  std::vector<Reading> readings_;
  std::map<std::pair<TerminalId, CommandName>, Silence> silences_;
};

/// Asks Terminals of one line everything, one after the other. It serves the event loop all the
/// time; it ends early when it is stopped or the line is lost.
class ReadRun {
 public:
  struct Services {
    Exchange& exchange;
    EventLoop& loop;
    Readings& readings;
  };
  explicit ReadRun(Services services) : services_(services) {}

  /// Told in front of each address.
  using Listener = std::function<void(int address)>;
  struct Result {
    std::vector<int> answered;
    std::vector<int> partly;  ///< answer, but were not asked everything
    std::vector<int> silent;  ///< nobody, or somebody else, answers there
    bool complete = false;
    bool lost = false;                   ///< the line, before all were asked
    std::optional<std::string> notKept;  ///< why not all is in the file, UTF-8
  };
  /// Afterwards the Terminal `selectAfter` is selected, without one nobody.
  Result Run(const std::string& device, const std::vector<int>& addresses,
             std::optional<int> selectAfter, const Listener& listener);
  void Stop() { stopping_ = true; }

 private:
  bool GoesOn() const { return !stopping_ && services_.exchange.Alive(); }
  bool KeptSilent(const TerminalId& terminal) const;
  void AskAll(const TerminalId& terminal, Result& result);
  void TakeSilence(const TerminalId& terminal, WriteVerdict verdict);

  Services services_;
  bool stopping_ = false;
};

}  // namespace kelvo

#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/event_loop.h"
#include "base/serial_port.h"
#include "link/line_watch.h"
#include "simulator/command_parser.h"
#include "simulator/terminal.h"
#include "twin/knowledge.h"

namespace kelvo {

/// What is known of a Terminal's EEPROM from elsewhere.
struct KnownMemory {
  /// The texts of macros; nothing where it is known that there is none.
  std::map<int, std::optional<std::string>> makros;
};

/// The model of one Terminal, and what is known of it.
struct Twin {
  Twin(const sim::TerminalSetup& setup, const DeviceFonts& fonts)
      : terminal(setup, fonts), knowledge(terminal) {}

  sim::Terminal terminal;
  Knowledge knowledge;
  /// When its picture was last cleared, restarted or otherwise begun anew with certainty.
  std::optional<WallTime> since;
  std::uint64_t beginnings = 0;
  std::optional<WallTime> answered;

  /// The picture, and with it whatever it came from, is certain. What the display has no room for
  /// is not seen: of a size that is only assumed no picture is.
  bool Certain() const { return Drawn() && knowledge.KnowsSize(); }
  /// It would be, if the size is the one assumed.
  bool OnlySizeAssumed() const { return Drawn() && !knowledge.KnowsSize(); }

 private:
  bool Drawn() const { return knowledge.Knows(Knowledge::Picture); }
};

/// Models of the Terminals on the line, made of everything that crosses it, whoever sends it. Their
/// answers go nowhere, and nothing is asked for them. What has been written moves the models when
/// it has left the line, and only when somebody looks or an answer has come.
class Twins : private sim::CommandParser::Handler {
 public:
  struct Services {
    const DeviceFonts& fonts;
    /// The display's width and height as the operator has set them; assumed until better is known.
    std::function<std::pair<int, int>()> size{};
    /// Nobody's address is nothing: the one that listens while none has been selected.
    std::function<KnownMemory(std::optional<int> address)> memory{};
  };

  /// All of these must outlive it.
  Twins(LineWatch& line, SerialPort& port, const EventLoop& loop, Services services);
  Twins(const Twins&) = delete;
  Twins& operator=(const Twins&) = delete;

  /// Told when characters have been handed to the line, an answer has come or the port has changed.
  void SetListener(std::function<void()> listener) { listener_ = std::move(listener); }

  /// The number of the port that is open; 0 for none.
  void PortIs(int number);
  /// Its device has gone.
  void PortLost();
  /// What the EEPROMs hold is known better now.
  void MemoryKnownAnew();

  /// Lets the models take what has left the line by now.
  void CatchUp();
  /// Characters are still on their way.
  bool Behind() const { return !line_.empty(); }

  /// Whom the last selection has chosen; 255 for all, nothing when nobody has been selected.
  std::optional<int> Listening() const { return listening_; }
  /// The one of this address; null when it has never been spoken with.
  const Twin* Of(int address) const;
  /// The one whose display is of interest now: it has been selected, or it listens though none was.
  /// Null when that one has never been spoken with.
  const Twin* Present() const;
  /// Its address, if that is known.
  std::optional<int> PresentAddress() const { return present_; }
  const std::map<int, std::unique_ptr<Twin>>& All() const { return twins_; }

 private:
  void OnCommand(const sim::CommandRow& row, std::string_view parameters) override;
  void OnText(unsigned char byte) override;
  void OnGraphicText(unsigned char) override {}

  std::unique_ptr<Twin> MakeTwin(std::optional<int> address);
  Twin& MakeOf(int address);
  void TellMemory(Twin& twin, std::optional<int> address) const;
  void ForEach(const std::function<void(Twin&)>& act);
  void Feed(std::string_view characters);
  void FeedTwin(Twin& twin, std::string_view characters) const;
  void Selected(int address);
  void SpokenTo(std::string_view command);
  void Settle(const Outcome& outcome);
  void SettleSilence();
  Twin* Answerer(const Outcome& outcome);
  void Answered(Twin& twin, const Outcome& outcome, CommandName asked);
  void Told(int address);
  void Broken(LineBreak how);
  void DropAll();
  void Tell() const;

  SerialPort& port_;
  const EventLoop& loop_;
  Services services_;
  std::string line_;  // written, and not yet with the Terminals
  std::map<int, std::unique_ptr<Twin>> twins_;
  std::unique_ptr<Twin> nameless_;  // whoever listens while nobody has been selected
  sim::CommandParser parser_;       // reads along who is selected
  std::optional<int> listening_;
  std::optional<int> present_;
  int lastPort_ = 0;
  bool lost_ = false;
  std::function<void()> listener_;
};

}  // namespace kelvo

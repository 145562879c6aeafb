#pragma once

#include <bitset>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/terminal.h"

namespace kelvo {

/// Why it is not known what a Terminal shows.
enum class TwinDoubt : std::uint8_t {
  None,
  NeverAnswered,  ///< not since this program follows the line
  FromBefore,     ///< it has answered, but what was sent before is not known
  Silent,         ///< to a question or an acknowledged command
  Garbled,        ///< what it answered was no whole answer
  LineLost,
  LineSetAnew,      ///< other settings of the port; the Terminal may have heard something else
  OwnLineSetAnew,   ///< it has restarted with other settings of its interface
  AllSelected,      ///< and whoever listened alone was not known
  SendingCut,       ///< what was on its way has been discarded
  UnknownMakro,     ///< number: which one has run
  UnknownStart,     ///< it has restarted, and its macro 0 is not known
  EndlessMakro,     ///< number: macros run each other in a circle
  OtherAnswer,      ///< a value that it told is another than the one reckoned
  OtherSum,         ///< its checksum is another than that of what was sent
  UnknownSettings,  ///< drawn or printed with settings that are not known
};

/// What is known of a Terminal of which only that is known what was sent to it. It follows a model
/// of that Terminal: the model's state is as good as what it began with, and this tells which part
/// of it is certain. Doubt spreads: what is drawn with an unknown pen is unknown, a cleared display
/// and whatever is set are known again.
class Knowledge : public sim::TerminalFollower {
 public:
  /// Parts of the state that the picture depends on; a set of them is their sum.
  enum Part : unsigned {
    Picture = 1U << 0U,
    Pen = 1U << 1U,
    Column = 1U << 2U,
    Row = 1U << 3U,
    TextFont = 1U << 4U,
    TextAttribute = 1U << 5U,
    TextMode = 1U << 6U,
    TextZoom = 1U << 7U,
    GraphicPoint = 1U << 8U,
    GraphicFont = 1U << 9U,
    GraphicAttribute = 1U << 10U,
    GraphicZoom = 1U << 11U,
    CursorKind = 1U << 12U,
    CursorBlock = 1U << 13U,
    CursorCross = 1U << 14U,
    Everything = (1U << 15U) - 1U,
  };
  using Parts = unsigned;
  /// What a stored configuration brings back of them.
  static constexpr Parts kConfigurationParts =
      TextFont | TextAttribute | TextMode | TextZoom | CursorKind | CursorBlock | CursorCross;

  /// Switches this Terminal on and follows it; nothing is known of it. It must outlive this.
  explicit Knowledge(sim::Terminal& terminal);
  Knowledge(const Knowledge&) = delete;
  Knowledge& operator=(const Knowledge&) = delete;

  /// Nothing of its state is certain any more; what is sent from now on is received.
  void Forget(TwinDoubt doubt, int number = 0);
  /// The same, and until it has been heard again nobody knows whether it receives anything.
  void Deafen(TwinDoubt doubt, int number = 0);
  /// It has answered.
  void Heard();
  bool Deaf() const { return deaf_; }

  bool Knows(Parts parts) const { return (unknown_ & parts) == 0; }
  Parts Unknown() const { return unknown_; }
  /// Whether the place and look of the cursor are certain.
  bool KnowsCursor() const;
  TwinDoubt Why() const { return why_; }
  int WhyNumber() const { return whyNumber_; }
  /// With TwinDoubt::UnknownSettings: which ones.
  Parts WhyParts() const { return whyParts_; }
  /// The size was told or set, not assumed.
  bool KnowsSize() const { return sizeKnown_; }

  /// Another Terminal may be there: its EEPROM is not known any more.
  void ForgetMemory();
  /// Grows whenever the picture begins anew with certainty.
  std::uint64_t Beginnings() const { return beginnings_; }
  /// The Terminal's macro is certain: its text, or that there is none.
  void Holds(int number, const std::optional<std::string>& text);
  bool KnowsMakro(int number) const { return makros_[static_cast<std::size_t>(number)]; }

  /// What came of a text that ended in a question or an acknowledged command.
  void Acknowledged(std::string_view sent, bool done);
  void Answered(std::string_view sent, std::string_view values);
  void SizeTold(int width, int height);

  void Does(const sim::CommandRow& row, const sim::Parameters& parameters) override;
  void Prints(unsigned char byte) override;
  void PrintsGraphic(unsigned char byte) override;
  void HasRestarted() override;
  void Calls(int number) override;
  void Called(int number, sim::MacroRun run) override;
  void GivesUp() override;

 private:
  /// A command that changes the EEPROM and is not acknowledged yet.
  struct Pending {
    std::string wire;
    sim::Command command;
    int number;
    Parts configuration;  // what of it was unknown
  };
  /// The question asked last, and what the model answers.
  struct Asked {
    const sim::CommandRow* row;
    Parts parts;
    std::string answer;
    bool certain;
    std::uint64_t step;
  };

  void Know(Parts parts);
  void Doubts(Parts parts) { unknown_ |= parts; }
  void Draws(Parts uses);
  bool DoesText(sim::Command command, const sim::Parameters& parameters);
  bool DoesGraphic(sim::Command command, const sim::Parameters& parameters);
  void MovesText(const sim::Parameters& parameters);
  void Stores(const sim::CommandRow& row, const sim::Parameters& parameters);
  void Asks(const sim::CommandRow& row);
  void Keep(const Pending& pending);
  void SumDiffers();
  void TakeOver(const Asked& asked, std::string_view values);

  sim::Terminal& terminal_;
  bool deaf_ = true;
  std::uint64_t steps_ = 0;  // commands and characters that it has carried out
  std::uint64_t beginnings_ = 0;
  Parts unknown_ = Everything;
  TwinDoubt why_ = TwinDoubt::NeverAnswered;
  int whyNumber_ = 0;
  Parts whyParts_ = 0;
  bool sizeKnown_ = false;
  bool nextSizeKnown_ = false;  // from the next restart on
  std::bitset<256> makros_;
  std::optional<Parts> configuration_;  // what of the stored one is unknown; nothing: all of it
  std::vector<Pending> pending_;
  std::optional<Asked> asked_;
  bool sumKnown_ = false;
  std::bitset<256> unproven_;  // macros that have been written since the sum was reset
  bool configurationUnproven_ = false;
  sim::InterfaceSettings interface_;  // before the restart
};

}  // namespace kelvo

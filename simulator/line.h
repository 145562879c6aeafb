#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/bus.h"

namespace kelvo::sim {

/// What makes the host's driver pause.
enum class HostHandshake { None, XonXoff, RtsCts };

/// How the host's port is set.
struct HostFraming {
  int baud = 0;      ///< bits a second; 0 = not known, then characters take no time
  int stopBits = 1;  ///< 1 or 2
  int bits = 0;      ///< 7 or 8; 0 = bits and parity are not known, as on a pseudo-terminal
  int parity = 0;    ///< numbered as in "!B"
  HostHandshake handshake = HostHandshake::None;

  Frame LineFrame() const { return {baud, bits, parity}; }

  bool operator==(const HostFraming&) const = default;
};

/// The wire between the host and the Terminals, in the time that it really takes. Both directions
/// have a clock of their own, which runs on from character to character and is set anew only when
/// the wire was idle: so a late caller shifts nothing, and no error adds up.
class Line {
 public:
  /// The bus must outlive the line.
  explicit Line(Bus& bus) : bus_(bus) {}

  /// Without pacing every character takes no time at all.
  void SetPaced(bool paced) { paced_ = paced; }
  /// With echo the host hears everything that it sends, as on a two-wire bus.
  void SetEcho(bool echo) { echo_ = echo; }
  bool Echo() const { return echo_; }
  /// Both directions share one pair of wires, and a Terminal takes so long to turn its driver on
  /// and off: its answer begins that much after the question and keeps the wires that much longer
  /// than its last bit. What is sent against it meanwhile arrives wrong at both ends. 0, as at
  /// first: each direction has wires of its own.
  void SetTurnAround(Time span) { turnAround_ = span; }
  /// Holds for what the host sends from now on.
  void SetHostFraming(HostFraming framing) { host_ = framing; }
  HostFraming Framing() const { return host_; }

  /// The host's driver begins to send these at `now`, or behind what it has still to send.
  void FromHost(std::string_view bytes, Time now);
  /// Characters that the host has still to send.
  std::size_t WaitingFromHost() const { return incoming_.size(); }
  /// The host gives up what has not begun to leave.
  void DiscardFromHost(Time now);
  /// The host's port has been opened anew: an XOFF from before stops its driver no more.
  void ForgetXoff(Time now);
  /// Lets time pass up to `now` and returns what has reached the host by then.
  std::string Advance(Time now);
  /// When Advance has something to do; nothing while the line is idle.
  std::optional<Time> NextEvent() const;
  /// Whether a Terminal is in the middle of sending, or may begin now.
  bool Answering() const;
  /// The Terminals act on events at their own times; this is the latest that has been reached.
  Time Now() const { return now_; }

 private:
  struct Incoming {
    unsigned char byte;
    Frame frame;
    Time length;    // start bit to stop bit
    Time earliest;  // when the host has written it
  };
  struct Outgoing {
    unsigned char byte;
    Time end;
    Time begin;
  };

  Time CharacterTime(const Frame& frame, int stopBits) const;
  Time FrontBegin() const;
  std::optional<Time> FrontEnd() const;
  std::optional<Time> EchoTime() const;
  std::optional<Time> SlotTime() const;
  bool Driven(Time begin, Time end) const;
  void Step(Time time, std::string& toHost);
  void DeliverToBus();
  void BeginCharacter(Time time);
  void EndCharacter(Time time, std::string& toHost);
  void FollowHandshake(Time time);

  Bus& bus_;
  bool paced_ = true;
  bool echo_ = false;
  HostFraming host_;
  Time now_{};
  std::deque<Incoming> incoming_;  // on the wire or waiting in the host's driver
  bool frontEchoed_ = false;
  Time hostEnd_{};                    // of the last character that has arrived
  bool xoff_ = false;                 // has come and no XON since
  std::optional<Time> heldSince_;     // the host's driver begins no character from then on
  std::optional<Outgoing> outgoing_;  // on the wire
  Time terminalEnd_{};
  Time turnAround_{};
  Time drivenFrom_{};  // the last time that a Terminal drove the wires
  Time drivenTo_{};
};

}  // namespace kelvo::sim

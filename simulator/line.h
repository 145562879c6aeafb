#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/bus.h"

namespace kelvo::sim {

/// How the host's port is set.
struct HostFraming {
  int baud = 0;      ///< bits a second; 0 = not known, then characters take no time
  int stopBits = 1;  ///< 1 or 2

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
  /// Holds for what the host sends from now on.
  void SetHostFraming(HostFraming framing) { host_ = framing; }
  HostFraming Framing() const { return host_; }

  /// The host's driver begins to send these at `now`, or behind what it has still to send.
  void FromHost(std::string_view bytes, Time now);
  /// Characters that the host has still to send.
  std::size_t WaitingFromHost() const { return incoming_.size(); }
  /// The host gives up what has not begun to leave.
  void DiscardFromHost(Time now);
  /// Lets time pass up to `now` and returns what has reached the host by then.
  std::string Advance(Time now);
  /// When Advance has something to do; nothing while the line is idle.
  std::optional<Time> NextEvent() const;
  /// The Terminals act on events at their own times; this is the latest that has been reached.
  Time Now() const { return now_; }

 private:
  struct Incoming {
    unsigned char byte;
    int baud;
    Time length;  // start bit to stop bit
    Time end;
  };
  struct Outgoing {
    unsigned char byte;
    Time end;
  };

  Time CharacterTime(int baud, int stopBits) const;
  std::optional<Time> EchoTime() const;
  std::optional<Time> SlotTime() const;
  void Step(Time time, std::string& toHost);
  void DeliverToBus();
  void BeginCharacter(Time time);

  Bus& bus_;
  bool paced_ = true;
  bool echo_ = false;
  HostFraming host_;
  Time now_{};
  std::deque<Incoming> incoming_;  // on the wire or waiting in the host's driver
  bool frontEchoed_ = false;
  Time hostEnd_{};
  std::optional<Outgoing> outgoing_;  // on the wire
  Time terminalEnd_{};
};

}  // namespace kelvo::sim

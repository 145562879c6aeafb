#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "link/buffered_port.h"
#include "tests/fakes/virtual_time.h"

namespace kelvo::testing_world {

/// A serial port with a line that takes its time. What is at the other end is told, character by
/// character, when one has arrived there, and answers with Arrive().
class VirtualPort : public BufferedPort {
 public:
  explicit VirtualPort(VirtualLoop& loop) : loop_(loop) {
    loop.Add({[this] { return NextDeparture(); }, [this] { Depart(); }, false});
    loop.onReleased = [this] { RaiseReceiveEvents(); };
  }

  /// The other end: called with each character that has left the line.
  std::function<void(char)> onCharacter;
  /// The other end of the line learns how this one is set.
  std::function<void(const std::string& settings)> onSetUp;
  /// Time of one character on the line; 0 for a line without delay.
  nanoseconds characterTime{0};
  /// A bridge that takes no notice of the rate: the other end has everything at once.
  bool unpaced = false;
  /// A handshake that lets nothing pass.
  bool held = false;
  /// Unplugged, which nobody has noticed yet.
  bool gone = false;
  /// The line brings back each character, so long after it has left.
  std::optional<nanoseconds> echo;
  /// What Open and SetPortNumber answer, and SetUp's refusal.
  PortError openError = PortOk;
  PortError numberError = PortOk;
  std::string refusal;

  // What a test looks at.
  std::string written;              ///< all that was handed to the port
  std::vector<std::string> writes;  ///< the same, write by write
  std::vector<nanoseconds> writeTimes;
  std::string settings;
  Handshaking handshaking = Handshaking::XOnXOff;
  int number = 0;
  int opened = 0;

  /// Characters arrive from the line.
  void Arrive(const std::string& text) {
    if (!open_) return;
    Received(text, loop_.Now());
    loop_.Wake();
    if (!loop_.Held()) RaiseReceiveEvents();
  }
  /// The same, but the program has not been served them: it finds them when it looks.
  void ArriveUnserved(const std::string& text) { unserved_ += text; }
  void ArriveAfter(nanoseconds delay, const std::string& text) {
    loop_.After(delay, [this, text] { Arrive(text); });
  }
  /// The device is unplugged.
  void Lose() {
    Close();
    if (lost_) lost_();
  }
  /// As a real device goes: who waits is free at once, and the program is told later.
  void Vanish(nanoseconds told) {
    Close();
    loop_.After(told, [this] {
      if (lost_) lost_();
    });
  }
  /// The device refuses work.
  void Fail(const std::string& description) {
    if (error_) error_(description);
  }

  PortError SetPortNumber(std::int16_t value) override {
    number = value;
    return numberError;
  }
  PortError Open() override {
    if (openError == PortOk) {
      open_ = true;
      ++opened;
    }
    return openError;
  }
  void Close() override {
    if (open_) Discarding();
    open_ = false;
    ClearInput();
    line_.clear();
  }
  bool IsOpen() const override { return open_; }
  bool CheckDevice() override {
    if (open_ && gone) Lose();
    return open_;
  }
  std::string SetUp(const std::string& text, Handshaking shake) override {
    SettingUp(text, shake);
    settings = text;
    handshaking = shake;
    if (onSetUp) onSetUp(text);
    return open_ ? refusal : "Das Gerät ist verschwunden.";
  }

  void Write(std::string_view text) override {
    if (!open_) throw std::logic_error("written to a closed port");
    Look();
    written += text;
    writes.emplace_back(text);
    writeTimes.push_back(loop_.Now());
    if (line_.empty()) {
      departure_ = loop_.Now() + characterTime;
    } else {
      Delayed(loop_.Now() + OutBufferTime());  // a line that was held since brings it back later
    }
    line_ += text;
    Written(text, loop_.Now(), loop_.Now() + OutBufferTime());
    if (!unpaced) return;
    for (const char character : text) Reach(character);
  }
  std::size_t OutBufferCount() const override { return line_.size(); }
  void DiscardOutput() override {
    Discarding();
    line_.clear();
  }
  nanoseconds OutBufferTime() const override {
    return std::max(nanoseconds(1), characterTime * static_cast<long>(line_.size()));
  }
  bool Held() const override { return held && !line_.empty(); }

  void SetLostHandler(std::function<void()> handler) override { lost_ = std::move(handler); }
  void SetErrorHandler(std::function<void(const std::string&)> handler) override {
    error_ = std::move(handler);
  }

 protected:
  void Look() override {
    if (open_) Received(std::exchange(unserved_, {}), loop_.Now());
  }

 private:
  nanoseconds NextDeparture() const {
    return line_.empty() || held ? VirtualLoop::kNever : departure_;
  }
  void Depart() {
    const char character = line_.front();
    line_.erase(0, 1);
    departure_ = std::max(departure_, loop_.Now()) + characterTime;
    if (!unpaced) Reach(character);
  }
  void Reach(char character) {
    if (echo) ArriveAfter(*echo, {character});
    if (onCharacter) onCharacter(character);
  }

  VirtualLoop& loop_;
  bool open_ = false;
  std::string unserved_;
  std::string line_;
  nanoseconds departure_{0};
  std::function<void()> lost_;
  std::function<void(const std::string&)> error_;
};

/// A Terminal of few words: answers fixed texts to fixed commands, when the command is complete.
class ScriptedTerminal {
 public:
  explicit ScriptedTerminal(VirtualPort& port) : port_(port) {
    port.onCharacter = [this](char c) { Receive(c); };
  }
  /// Answers `reply` whenever the received text ends in `command`, `delay` later; an answer takes
  /// its time on the line too, so that is never nothing.
  void Answer(const std::string& command, const std::string& reply,
              nanoseconds delay = milliseconds(1)) {
    answers_[command] = {reply, delay};
  }

 private:
  void Receive(char c) {
    received_ += c;
    for (const auto& [command, answer] : answers_) {
      if (!received_.ends_with(command)) continue;
      port_.ArriveAfter(answer.second, answer.first);
    }
  }

  VirtualPort& port_;
  std::string received_;
  std::map<std::string, std::pair<std::string, nanoseconds>> answers_;
};

}  // namespace kelvo::testing_world

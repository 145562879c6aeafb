#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "base/serial_port.h"
#include "tests/fakes/virtual_time.h"

namespace kelvo::testing_world {

/// A serial port with a line that takes its time. What is at the other end is told, character by
/// character, when one has arrived there, and answers with Arrive().
class VirtualPort : public SerialPort {
 public:
  explicit VirtualPort(VirtualLoop& loop) : loop_(loop) {
    loop.Add({[this] { return NextDeparture(); }, [this] { Depart(); }, false});
  }

  /// The other end: called with each character that has left the line.
  std::function<void(char)> onCharacter;
  /// Time of one character on the line; 0 for a line without delay.
  nanoseconds characterTime{0};
  /// A handshake that lets nothing pass.
  bool held = false;
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
    input_ += text;
    if (traffic_) traffic_(Direction::FromTerminal, text);
    Raise();
  }
  void ArriveAfter(nanoseconds delay, const std::string& text) {
    loop_.After(delay, [this, text] { Arrive(text); });
  }
  /// The device is unplugged.
  void Lose() {
    Close();
    if (lost_) lost_();
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
    open_ = false;
    input_.clear();
    line_.clear();
  }
  bool IsOpen() const override { return open_; }
  std::string SetUp(const std::string& text, Handshaking shake) override {
    settings = text;
    handshaking = shake;
    return refusal;
  }

  void Write(std::string_view text) override {
    if (!open_) throw std::logic_error("written to a closed port");
    written += text;
    if (traffic_) traffic_(Direction::ToTerminal, text);
    writes.emplace_back(text);
    writeTimes.push_back(loop_.Now());
    if (line_.empty()) departure_ = loop_.Now() + characterTime;
    line_ += text;
  }
  std::size_t OutBufferCount() const override { return line_.size(); }
  void DiscardOutput() override { line_.clear(); }
  nanoseconds OutBufferTime() const override {
    return std::max(nanoseconds(1), characterTime * static_cast<long>(line_.size()));
  }

  std::size_t InBufferCount() const override { return input_.size(); }
  void DiscardInput() override { input_.clear(); }
  void DiscardEcho() override { input_.clear(); }
  std::string Input() override {
    std::string text =
        input_.substr(0, inputLen_ == 0 ? std::string::npos : static_cast<std::size_t>(inputLen_));
    input_.erase(0, text.size());
    return text;
  }
  int InputLen() const override { return inputLen_; }
  void SetInputLen(int length) override { inputLen_ = length; }

  void SetReceiveThreshold(int characters) override { threshold_ = characters; }
  int ReceiveThreshold() const override { return threshold_; }
  void SetReceiveHandler(std::function<void()> handler) override { receive_ = std::move(handler); }
  void SetLostHandler(std::function<void()> handler) override { lost_ = std::move(handler); }
  void SetTrafficListener(TrafficListener listener) override { traffic_ = std::move(listener); }

 private:
  void Raise() {
    while (threshold_ == 1 && receive_ && !input_.empty()) {
      const std::size_t before = input_.size();
      receive_();
      if (input_.size() == before) break;
    }
  }
  nanoseconds NextDeparture() const {
    return line_.empty() || held ? VirtualLoop::never : departure_;
  }
  void Depart() {
    const char character = line_.front();
    line_.erase(0, 1);
    departure_ += characterTime;
    if (onCharacter) onCharacter(character);
  }

  VirtualLoop& loop_;
  bool open_ = false;
  std::string input_;
  std::string line_;
  nanoseconds departure_{0};
  int inputLen_ = 1;
  int threshold_ = 0;
  std::function<void()> receive_;
  std::function<void()> lost_;
  TrafficListener traffic_;
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

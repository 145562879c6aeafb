#pragma once

#include <functional>
#include <ostream>
#include <string>

#include "base/operator.h"

namespace kelvo::cli {

/// Nobody sits in front of the screen: what is said is written, what is asked is answered with No.
class Person : public Operator {
 public:
  /// `before` is called in front of each text.
  Person(std::ostream& err, std::function<void()> before) : err_(err), before_(std::move(before)) {}

  /// A line of its own, in which the program's name stands first.
  void Say(const std::string& text, const std::string& hint = {});

  void Message(const std::string& text, Icon, const std::string&,
               const std::string& hint) override {
    Say(text, hint);
  }
  void Notify(const std::string& text, Icon) override { Say(text); }
  bool Ask(const std::string&, Icon, const std::string&, Proposal, const std::string&) override {
    return false;
  }
  Decision AskToSave(const std::string&) override { return Decision::Cancel; }
  std::optional<std::string> Input(const std::string&, const std::string&, const Typed&) override {
    return std::nullopt;
  }
  std::optional<std::string> OpenFile(const std::string&, const std::string&) override {
    return std::nullopt;
  }
  std::optional<std::string> SaveFile(const std::string&, const std::string&) override {
    return std::nullopt;
  }
  void Beep() override {}

 private:
  std::ostream& err_;
  std::function<void()> before_;
};

}  // namespace kelvo::cli

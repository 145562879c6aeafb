#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "base/operator.h"

namespace kelvo::testing_world {

/// An operator who answers as told, and remembers what was shown.
class FakeOperator : public Operator {
 public:
  struct Shown {
    std::string text;
    std::string title;
    Icon icon = Icon::None;
    std::string hint{};
  };
  std::vector<Shown> messages;
  std::vector<std::string> notices;
  std::vector<std::string> questions;
  std::vector<std::string> prompts;               ///< prompt "|" proposed text
  std::deque<bool> answers;                       ///< to questions; when none is left, as Esc
  std::deque<std::optional<std::string>> inputs;  ///< cancelled when none is left
  std::vector<std::string> dialogs;               ///< "open" or "save" "|" title "|" filter
  std::optional<std::string> file;                ///< chosen in every file dialog
  std::deque<Decision> decisions;                 ///< about changes; cancelled when none is left
  bool proposesNo = false;                        ///< of the last question
  int beeps = 0;
  bool isThere = true;
  /// Runs while a message stands on the screen.
  std::function<void()> duringMessage;

  std::string LastMessage() const { return messages.empty() ? "" : messages.back().text; }

  void Message(const std::string& text, Icon icon, const std::string& title,
               const std::string& hint) override {
    Told(text);
    messages.push_back({text, title, icon, Hint(text, hint)});
    const Undertakings::Resting resting(Begun());
    if (duringMessage) duringMessage();
  }
  void Notify(const std::string& text, Icon) override {
    Told(text);
    notices.push_back(text);
  }
  bool Ask(const std::string& text, Icon icon, const std::string& title, Proposal proposal,
           const std::string& hint) override {
    questions.push_back(text);
    lastQuestion = {text, title, icon, Hint(text, hint)};
    proposesNo = ProposesNo(text, icon, proposal);
    return Take(answers).value_or(proposal == Proposal::YesAlways);
  }
  Decision AskToSave(const std::string& text) override {
    questions.push_back(text);
    return Take(decisions).value_or(Decision::Cancel);
  }
  std::optional<std::string> Input(const std::string& prompt, const std::string& proposed,
                                   const Typed& typed) override {
    prompts.push_back(prompt + "|" + proposed);
    const std::optional<std::string> input = Take(inputs).value_or(std::nullopt);
    if (typed && input) typed(*input);
    return input;
  }
  std::optional<std::string> OpenFile(const std::string& dialogTitle,
                                      const std::string& filter) override {
    dialogs.push_back("open|" + dialogTitle + "|" + filter);
    return file;
  }
  std::optional<std::string> SaveFile(const std::string& dialogTitle,
                                      const std::string& filter) override {
    dialogs.push_back("save|" + dialogTitle + "|" + filter);
    return file;
  }
  void Beep() override { ++beeps; }
  bool IsThere() const override { return isThere; }

  Shown lastQuestion;

 private:
  std::string Hint(const std::string& text, const std::string& own) const {
    const auto advice = AdviceOn(text, own);
    return advice ? advice->hint : own;
  }
  template <typename T>
  static std::optional<T> Take(std::deque<T>& queue) {
    if (queue.empty()) return std::nullopt;
    T value = queue.front();
    queue.pop_front();
    return value;
  }
};

}  // namespace kelvo::testing_world

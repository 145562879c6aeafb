#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/deeds.h"
#include "base/undertakings.h"

namespace kelvo {

enum class Icon { None, Information, Question, Exclamation };
/// Which answer a hasty Return gives. Esc, and closing the box, say No, but YesAlways.
enum class Proposal { ByIcon, No, YesAlways };
enum class Decision { Save, Discard, Cancel };

/// What a failure is explained by, beside its text.
struct Advice {
  std::string hint;     ///< what has happened and what to do; UTF-8
  std::string chapter;  ///< of the manual, "meldungen.html#anchor"
  bool traffic = true;  ///< whether what crossed the line has to do with it
  int loss = 0;         ///< which loss of the device is the cause, counted; 0 for none
};
/// Who explains failures, and what the box that reports one leads to.
struct Adviser {
  /// Nothing for a text that reports no failure of the line.
  std::function<std::optional<Advice>(const std::string& text)> explain;
  std::function<void(const std::string& chapter)> showHelp;
  std::function<void()> showTraffic;
  /// Told the text of every message.
  std::function<void(const std::string& text)> told{};
};

/// The person in front of the screen. All texts are UTF-8. While the program is closing nobody is
/// asked any more: questions are answered with No, inputs and dialogs as cancelled.
class Operator {
 public:
  virtual ~Operator() = default;

  Undertakings& Begun() { return begun_; }
  Deeds& Done() { return done_; }
  /// Whether anything may begin that has to do with the line; if not, the operator has been told.
  bool MayBegin();
  /// Whether the port is open.
  bool IsPortOpen() const { return !portOpen_ || portOpen_(); }
  /// Whether an action that speaks to the Terminal may begin; if not, the operator has been told.
  bool MayTalk();
  /// Whether the port is open, and what leads the operator to the place where one is chosen.
  /// Without these it counts as open.
  void SetPort(std::function<bool()> isOpen, std::function<void()> wanted) {
    portOpen_ = std::move(isOpen);
    portWanted_ = std::move(wanted);
  }

  /// Every box that reports a failure says what its cause is, unless it brings a hint of its own.
  void SetAdviser(Adviser adviser) { adviser_ = std::move(adviser); }

  /// A message box with the OK button alone, where it reports a failure also with what leads to its
  /// explanation. An empty title means the program's name; `hint` stands
  /// below the text and explains it. What has failed by a loss of the device joins the box that
  /// tells of the loss; where that has been read nobody is told again.
  virtual void Message(const std::string& text, Icon icon = Icon::None,
                       const std::string& title = {}, const std::string& hint = {}) = 0;
  /// The same without waiting for the OK.
  virtual void Notify(const std::string& text, Icon icon = Icon::None) = 0;
  /// A Yes/No message box; true for Yes. An empty title means the program's name. Yes is proposed,
  /// with the exclamation icon, and where it reports a failure, No; `hint` as in Message.
  virtual bool Ask(const std::string& text, Icon icon = Icon::Question,
                   const std::string& title = {}, Proposal proposal = Proposal::ByIcon,
                   const std::string& hint = {}) = 0;
  /// What to do about changes that are not saved.
  virtual Decision AskToSave(const std::string& text) = 0;
  /// Told the text in an input box each time that it changes.
  using Typed = std::function<void(const std::string& text)>;
  /// An input box; nothing when it was cancelled.
  virtual std::optional<std::string> Input(const std::string& prompt, const std::string& proposed,
                                           const Typed& typed = {}) = 0;
  /// A file dialog; nothing when it was cancelled. `filter` is "Label |*.ext"; to
  /// open a file it may offer several: "Label |*.ext|Label |*.ext".
  virtual std::optional<std::string> OpenFile(const std::string& title,
                                              const std::string& filter) = 0;
  virtual std::optional<std::string> SaveFile(const std::string& title,
                                              const std::string& filter) = 0;
  virtual void Beep() = 0;
  /// False while the program is closing: what was asked last has got no answer then.
  virtual bool IsThere() const { return true; }

 protected:
  const Adviser& Advisers() const { return adviser_; }
  /// To be called with each message.
  void Told(const std::string& text) const {
    if (adviser_.told) adviser_.told(text);
  }
  bool ProposesNo(const std::string& text, Icon icon, Proposal proposal) const {
    if (proposal == Proposal::YesAlways) return false;
    return proposal == Proposal::No || icon == Icon::Exclamation || AdviceOn(text, {}).has_value();
  }
  std::optional<Advice> AdviceOn(const std::string& text, const std::string& hint) const {
    std::optional<Advice> advice = adviser_.explain ? adviser_.explain(text) : std::nullopt;
    if (advice && !hint.empty()) advice->hint = hint;
    return advice;
  }

 private:
  Undertakings begun_;
  Deeds done_;
  std::function<bool()> portOpen_;
  std::function<void()> portWanted_;
  Adviser adviser_;
};

inline bool Operator::MayTalk() {
  if (!IsPortOpen()) {
    portWanted_();
    return false;
  }
  return MayBegin();
}

inline bool Operator::MayBegin() {
  const std::string& running = begun_.RunsAlone();
  if (running.empty()) return true;
  Notify(running + " Solange wird nichts anderes gesendet.", Icon::Information);
  return false;
}

}  // namespace kelvo

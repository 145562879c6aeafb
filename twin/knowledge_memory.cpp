// What is known of a Terminal's EEPROM, and what its answers tell.

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "twin/knowledge.h"

namespace kelvo {
namespace {

using sim::Command;
using sim::Parameters;

constexpr std::size_t kMostPending = 64;

// Each question for a part of the picture's state, and the command that sets it.
struct Question {
  Command ask;
  Command set;
  Knowledge::Parts parts;
};
constexpr std::array kQuestions = {
    Question{Command::AskCursor, Command::SwitchCursor, Knowledge::CursorKind},
    Question{Command::AskTextPosition, Command::TextPosition, Knowledge::Column | Knowledge::Row},
    Question{Command::AskTextFont, Command::TextFont, Knowledge::TextFont},
    Question{Command::AskTextAttribute, Command::TextAttribute, Knowledge::TextAttribute},
    Question{Command::AskTextMode, Command::TextMode, Knowledge::TextMode},
    Question{Command::AskTextZoom, Command::TextZoom, Knowledge::TextZoom},
    Question{Command::AskGraphicPosition, Command::GraphicPosition, Knowledge::GraphicPoint}};

const Question* QuestionOf(Command ask) {
  const auto found = std::find_if(kQuestions.begin(), kQuestions.end(),
                                  [ask](const Question& q) { return q.ask == ask; });
  return found == kQuestions.end() ? nullptr : &*found;
}

std::string WireText(const sim::CommandRow& row, const Parameters& parameters) {
  std::string wire = "\x1B";
  wire.append(row.name).append(parameters.Text());
  if (row.ending == sim::Ending::Semicolon) wire += ';';
  if (row.ending == sim::Ending::Etx) wire += static_cast<char>(sim::kEtx);
  return wire;
}

bool SameNumbers(std::string_view left, std::string_view right) {
  const Parameters a(left);
  const Parameters b(right);
  if (a.Count() != b.Count()) return false;
  for (int i = 0; i < a.Count(); ++i) {
    if (a.Number(i) != b.Number(i)) return false;
  }
  return true;
}

bool LooksLikeNumbers(std::string_view text) {
  return !text.empty() && text.find_first_not_of("-0123456789, ") == std::string_view::npos;
}

bool SameSum(std::string_view values, std::uint16_t sum) {
  unsigned told = 0;
  const char* const end = values.data() + values.size();
  const auto [stop, error] = std::from_chars(values.data(), end, told, 16);
  return error == std::errc() && stop == end && told == sum;
}

}  // namespace

// ---- macros and the rest of the EEPROM ----

void Knowledge::Holds(int number, const std::optional<std::string>& text) {
  const auto place = static_cast<unsigned char>(number);
  makros_[place] = true;
  if (text) {
    terminal_.Memory().Write(sim::Eeprom::Kind::Macro, place, *text);
  } else {
    terminal_.Memory().Delete(sim::Eeprom::Kind::Macro, place);
  }
}

// What may be something else is not run.
void Knowledge::Calls(int number) {
  if (KnowsMakro(number)) return;
  terminal_.Memory().Delete(sim::Eeprom::Kind::Macro, static_cast<unsigned char>(number));
  std::erase_if(pending_, [number](const Pending& pending) { return pending.number == number; });
}

void Knowledge::Called(int number, sim::MacroRun run) {
  if (!KnowsMakro(number)) {
    Forget(number == 0 ? TwinDoubt::UnknownStart : TwinDoubt::UnknownMakro, number);
  } else if (run == sim::MacroRun::TooDeep) {
    Deafen(TwinDoubt::EndlessMakro, number);
  }
}

void Knowledge::GivesUp() { Deafen(TwinDoubt::EndlessMakro); }

void Knowledge::Stores(const sim::CommandRow& row, const Parameters& parameters) {
  const int number = parameters.Number(0);
  switch (row.command) {
    case Command::WriteConfig:
    case Command::DeleteConfig:
      configuration_.reset();
      break;
    case Command::WriteMacro:
    case Command::DeleteMacro:
      if (number < 0 || number > 255) return;
      makros_[static_cast<std::size_t>(number)] = false;
      break;
    case Command::Erase:
    case Command::EraseCounting:
      makros_.reset();
      configuration_.reset();
      break;
    default:
      return;  // tables and bitmaps are not seen
  }
  if (pending_.size() >= kMostPending) pending_.erase(pending_.begin());
  pending_.push_back(
      {WireText(row, parameters), row.command, number, unknown_ & kConfigurationParts});
}

void Knowledge::Acknowledged(std::string_view sent, bool done) {
  const auto last = std::find_if(pending_.rbegin(), pending_.rend(),
                                 [sent](const Pending& p) { return sent.ends_with(p.wire); });
  if (last == pending_.rend()) return;
  if (done) Keep(*last);
  pending_.erase(pending_.begin(), last.base());
}

void Knowledge::Keep(const Pending& pending) {
  const auto place = static_cast<unsigned char>(pending.number);
  switch (pending.command) {
    case Command::WriteConfig:
      configuration_ = pending.configuration;
      configurationUnproven_ = true;
      return;
    case Command::DeleteConfig:
      configuration_ = 0;
      configurationUnproven_ = true;
      return;
    case Command::WriteMacro:
      makros_[place] = terminal_.Memory().Read(sim::Eeprom::Kind::Macro, place).has_value();
      unproven_[place] = true;
      return;
    case Command::DeleteMacro:
      makros_[place] = unproven_[place] = true;
      return;
    default:
      makros_.set();
      configuration_ = 0;
  }
}

// ---- answers ----

void Knowledge::Asks(const sim::CommandRow& row) {
  asked_.reset();
  if (row.command == Command::AskChecksum) {
    asked_ = {&row, 0, std::to_string(terminal_.ChecksumNow()), sumKnown_, steps_};
  } else if (const Question* const question = QuestionOf(row.command)) {
    const std::string answer = terminal_.Display().Answer(row.command).value_or("");
    asked_ = {&row, question->parts, answer, Knows(question->parts), steps_};
  }
}

void Knowledge::Answered(std::string_view sent, std::string_view values) {
  if (!asked_ || !sent.ends_with(asked_->row->name)) return;
  const Asked asked = *std::exchange(asked_, std::nullopt);
  if (asked.row->command == Command::AskChecksum) {
    const auto sum = static_cast<std::uint16_t>(std::stoi(asked.answer));
    if (asked.certain && !SameSum(values, sum)) SumDiffers();
    return;
  }
  if (!LooksLikeNumbers(values)) return;
  if (asked.certain && !SameNumbers(values, asked.answer)) Forget(TwinDoubt::OtherAnswer);
  if (!asked.certain && asked.step == steps_) TakeOver(asked, values);
}

// It has received something else than was sent.
void Knowledge::SumDiffers() {
  makros_ &= ~unproven_;
  if (configurationUnproven_) configuration_.reset();
  Forget(TwinDoubt::OtherSum);
}

void Knowledge::TakeOver(const Asked& asked, std::string_view values) {
  const Question& question = *QuestionOf(asked.row->command);
  terminal_.Display().Execute(question.set, Parameters(values));
  const auto now = terminal_.Display().Answer(asked.row->command);
  if (now && SameNumbers(values, *now)) Know(question.parts);
}

// Another size may have been set for the next restart.
void Knowledge::SizeTold(int width, int height) {
  const PixelMap& pixels = terminal_.Display().Pixels();
  if (pixels.Width() != width || pixels.Height() != height) {
    Forget(TwinDoubt::OtherAnswer);
    terminal_.Run("\x1B!R" + std::to_string(width) + "," + std::to_string(height) + ";");
    terminal_.Display().Resize(width, height);
    nextSizeKnown_ = false;
  }
  sizeKnown_ = true;
}

}  // namespace kelvo

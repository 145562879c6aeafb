#include "simulator/recorder.h"

#include <cerrno>
#include <stdexcept>

#include "simulator/files.h"
#include "store/data_folder.h"

namespace kelvo::sim {
namespace {

// Longer than any gap within one answer at 1200 baud.
constexpr Time kSameLine = std::chrono::milliseconds(40);
// More is too long for a line that somebody is to read.
constexpr std::size_t kLongest = 50'000;

// A key that was pressed does not.
bool HoldsAnswer(std::string_view text) {
  for (; !text.empty(); text.remove_suffix(1)) {
    if (EndsAnswer(text)) return true;
  }
  return false;
}

}  // namespace

Recorder::Recorder(const std::string& path, Time now)
    : file_(path, std::ios::binary | std::ios::trunc),
      wall_(std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now())),
      start_(now) {
  if (!file_) {
    const std::string reason = FileReason(errno);
    throw std::runtime_error("kann " + path +
                             " nicht schreiben: " + FolderReason(path).value_or(reason));
  }
  file_ << kCaptureHead << '\n' << std::flush;
}

void Recorder::Add(Direction direction, std::string_view characters, Time now) {
  if (characters.empty()) return;
  Advance(now);
  const bool goesOn = line_ && line_->direction == direction &&
                      line_->characters.size() + characters.size() <= kLongest;
  if (!goesOn) {
    Complete();
    const auto since = std::chrono::duration_cast<std::chrono::milliseconds>(now - start_);
    line_ = CaptureLine{.time = wall_ + since, .direction = direction};
  }
  line_->characters += characters;
  last_ = now;
}

std::optional<Time> Recorder::Due() const {
  if (!line_) return std::nullopt;
  return last_ + kSameLine;
}

void Recorder::Advance(Time now) {
  if (line_ && now > *Due()) Complete();
}

void Recorder::Complete() {
  if (!line_) return;
  if (line_->direction == Direction::ToTerminal) {
    asked_ = question_.AskedBy(line_->characters) > 0;
    linesBack_ = 1;
  } else {
    if (asked_ && HoldsAnswer(line_->characters)) {
      line_->result = Result();
      asked_ = false;
    }
    // Before anything has been sent there is no such line.
    line_->linesBack = linesBack_ > 0 ? linesBack_++ : 0;
  }
  file_ << CaptureLineText(*line_) << std::flush;
  line_.reset();
}

std::string Recorder::Result() const {
  const std::string_view answer = line_->characters;
  if (answer == "\x06") return std::string(kCaptureAccepted);
  return std::string(answer == "\x15" ? kCaptureRefused : kCaptureAnswered);
}

}  // namespace kelvo::sim

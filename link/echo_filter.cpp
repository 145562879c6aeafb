#include "link/echo_filter.h"

#include <algorithm>

namespace kelvo {

void EchoFilter::Written(std::string_view text, Time now, Time lastBit) {
  while (!texts_.empty() && now > texts_.front().lastBit + kHeldBack) {
    texts_.pop_front();
    matched_ = 0;
  }
  if (!text.empty()) texts_.push_back({std::string(text), lastBit});
}

void EchoFilter::Delayed(Time lastBit) {
  for (Text& text : texts_) text.lastBit = std::max(text.lastBit, lastBit);
}

std::string EchoFilter::Arrived(std::string_view characters) {
  std::size_t position = 0;
  while (position < characters.size() && IsEcho(characters[position])) ++position;
  if (position < characters.size()) Reset();
  return std::string(characters.substr(position));
}

bool EchoFilter::IsEcho(char character) {
  if (texts_.empty()) return false;
  if (texts_.front().characters[matched_] != character && !SkipTo(character)) return false;
  if (++matched_ == texts_.front().characters.size()) {
    returned_ += matched_;
    texts_.pop_front();
    matched_ = 0;
  }
  return true;
}

// Not every text comes back: one may have been discarded on its way, or the line has no echo and
// only a query is repeated by its Terminal. Then what has come is the beginning of a later one, or
// a later one begins here.
bool EchoFilter::SkipTo(char character) {
  if (matched_ == 0) return false;
  const std::string begun = texts_.front().characters.substr(0, matched_) + character;
  for (auto text = texts_.begin() + 1; text != texts_.end(); ++text) {
    const bool longer = text->characters.starts_with(begun);
    if (!longer && text->characters.front() != character) continue;
    matched_ = longer ? matched_ : 0;
    texts_.erase(texts_.begin(), text);
    return true;
  }
  return false;
}

std::string EchoFilter::Expire(Time now) {
  if (texts_.empty() || now <= texts_.back().lastBit + kHeldBack) return {};
  std::string begun = texts_.front().characters.substr(0, matched_);
  Reset();
  return begun;
}

void EchoFilter::Reset() {
  texts_.clear();
  matched_ = 0;
}

}  // namespace kelvo

// This program's comments in a metafile.

#include "graphics/wmf_format.h"
#include "graphics/wmf_player.h"

namespace kelvo::wmf {

void Player::ReadEscape() {
  if (Unsigned(0) == kCommentEscape) {
    ReadComment(BytesAt(2, Unsigned(1)));
  } else {
    SkipRecord();
  }
}

// Comments of other programs say nothing about the picture.
void Player::ReadComment(std::string_view comment) {
  if (!comment.starts_with(kCommentMark) || comment.size() <= kCommentMark.size()) return;
  const char tag = comment[kCommentMark.size()];
  const std::string_view payload = comment.substr(kCommentMark.size() + 1);
  if (tag == kDrawingTag) {
    if (!drawn_) ReadMark(payload);
  } else if (Foreign()) {
    return;
  } else if (tag == kGroupTag) {
    builder_.BeginGroup(canvas_.State().penMode);
  } else if (tag == kGroupEndTag) {
    builder_.EndGroup();
  } else if (tag == kTextTag) {
    ReadOwnText(payload);
  } else if (tag == kSourceTag) {
    sources_.Begin(payload);
  } else if (tag == kSourceDataTag) {
    sources_.Continue(payload);
  } else if (tag == kPreparationTag) {
    sources_.ReadPreparation(payload);
  }
}

namespace {

int CommentNumber(std::string_view payload, std::size_t at) {
  if (at + 2 > payload.size()) ThrowDamaged();
  const auto low = static_cast<unsigned char>(payload[at]);
  const auto high = static_cast<unsigned char>(payload[at + 1]);
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(low | high << 8));
}

}  // namespace

void Player::ReadMark(std::string_view payload) {
  if (payload.empty() || payload[0] != kFormatVersion) {
    throw BadFile("Die Datei stammt von einer neueren Fassung des Programms.");
  }
  canvas_.Place() = Placement{false, 0, 0, 1, CommentNumber(payload, 1)};
}

void Player::ReadOwnText(std::string_view payload) {
  const Point corner1{CommentNumber(payload, 0), CommentNumber(payload, 2)};
  const Point corner2{CommentNumber(payload, 4), CommentNumber(payload, 6)};
  const int length = CommentNumber(payload, 8);
  const std::string_view text = payload.substr(10);
  if (length < 0 || static_cast<std::size_t>(length) > text.size()) ThrowDamaged();
  canvas_.OwnText(corner1, corner2, text.substr(0, static_cast<std::size_t>(length)));
}

}  // namespace kelvo::wmf

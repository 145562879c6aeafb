#include "link/reply.h"

#include "link/control_characters.h"

namespace kelvo {
namespace {

ReplyKind KindOfAnswer(std::string_view answer) {
  if (answer == std::string_view(&kAck, 1)) return ReplyKind::Answered;
  if (answer == std::string_view(&kNak, 1)) return ReplyKind::Refused;
  return ReplyKind::Unexpected;
}

std::string ErrorText(ReplyKind kind, std::string_view answer) {
  switch (kind) {
    case ReplyKind::Answered:
      return {};
    case ReplyKind::Refused:
      return "EEPROM";
    case ReplyKind::Unexpected:
      return "unknown " + std::to_string(static_cast<unsigned char>(answer.front()));
    default:
      return "keine Reaktion";
  }
}

}  // namespace

Reply AcknowledgeReply(std::string_view answer, bool alive) {
  const ReplyKind nothing = alive ? ReplyKind::Silent : ReplyKind::PortClosed;
  const ReplyKind kind = answer.empty() ? nothing : KindOfAnswer(answer);
  return {kind, ErrorText(kind, answer), std::string(answer)};
}

// A refusal may also come where something else was waited for.
Reply JudgedAcknowledge(const Reply& reply) {
  const bool whole = reply.kind == ReplyKind::Answered;
  if (!whole && reply.kind != ReplyKind::Unfinished) return reply;
  if (reply.received.find(kAck) != std::string::npos) return reply;
  const bool refused = reply.received.find(kNak) != std::string::npos;
  if (!whole && !refused) return reply;
  return {refused ? ReplyKind::Refused : ReplyKind::Sent, reply.text, reply.received};
}

Reply CompleteReply(std::string received, std::string_view endMark) {
  std::string values = received.substr(0, received.size() - endMark.size());
  return {ReplyKind::Answered, std::move(values), std::move(received)};
}

void RemoveEcho(Reply& reply, const Command& query) {
  if (reply.text.starts_with(query.Text())) reply.text.erase(0, query.Text().size());
}

Reply TimeOutReply(std::string received, bool alive) {
  const ReplyKind late = received.empty() ? ReplyKind::Silent : ReplyKind::Unfinished;
  return {alive ? late : ReplyKind::PortClosed, "TimeOut", std::move(received)};
}

}  // namespace kelvo

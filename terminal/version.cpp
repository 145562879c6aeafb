#include "terminal/version.h"

#include <algorithm>

#include "base/val.h"
#include "link/control_characters.h"

namespace kelvo {

Version ReadVersion(std::string_view reply) {
  return {Val(reply), !reply.empty() && reply.back() == 'F'};
}

void NoteVersion(TerminalState& state, const Reply& reply) {
  const Version version = ReadVersion(reply.text);
  state.TerminalVersion = version.number;
  state.versionText = reply.Failed() || !reply.readable ? std::string() : reply.text;
  if (!reply.Failed()) state.flash = version.hasFlash ? FlashState::Yes : FlashState::No;
  state.Changed();
}

Reply QueryVersion(Exchange& exchange, TerminalState& state) {
  Reply reply = exchange.SendQuery(AskVersion());
  NoteVersion(state, reply);
  return reply;
}

std::string AskVersionByTime(Exchange& exchange, TerminalState& state) {
  const Command query = AskVersion();
  exchange.SendString(query);
  Reply reply = exchange.WaitAnswer({});
  RemoveEcho(reply, query);
  std::string answer = reply.text;
  const std::size_t end = answer.find(kEndMark);
  reply.text.erase(std::min(end, answer.size()));
  // What is still to come may be the "F".
  if (end != std::string::npos) NoteVersion(state, reply);
  return answer;
}

}  // namespace kelvo

#include "link/receive_events.h"

namespace kelvo {

void ReceiveEvents::com1_OnComm() {
  if (tab_ == Tab::MatrixKeyboard) return ShowKey();
  if (tab_ != Tab::Interfaces && tab_ != Tab::Text && tab_ != Tab::AtKeyboard) return;
  // All that waits at once: a page that lays out its text for each character falls behind the line.
  std::string received;
  for (std::string more; !(more = port_.Input()).empty();) received += more;
  const auto show = shows_.find(tab_);
  if (!received.empty() && show != shows_.end()) show->second(received);
}

void ReceiveEvents::ShowKey() {
  const std::string received = port_.Input();
  // The highlight lasts one interval from the last key on.
  exchange_.RestartTimeout();
  keys_.Show(received);
}

void ReceiveEvents::tmrTimeout_Timer() {
  exchange_.tmrTimeout_Timer();
  if (tab_ == Tab::MatrixKeyboard) keys_.Release();
}

}  // namespace kelvo

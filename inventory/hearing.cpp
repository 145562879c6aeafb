#include "inventory/hearing.h"

namespace kelvo {

Hearing HearingOf(const LineState& line) {
  const Answering answers = line.Answers();
  if (answers == Answering::Disconnected || answers == Answering::Lost) {
    return Hearing::Disconnected;
  }
  switch (line.Listens()) {
    case Listening::Nobody:
      return line.SelectedAway() ? Hearing::Nobody : Hearing::Silent;
    case Listening::Unknown:
      return line.Address() ? Hearing::Unknown : Hearing::Listens;
    default:
      return Hearing::Listens;
  }
}

}  // namespace kelvo

#pragma once

#include <QAbstractButton>
#include <QObject>
#include <functional>

#include "base/guard.h"

namespace kelvo {

/// Leaves the field that is being typed in, as if the operator had gone on to another control: its
/// check runs, and what it holds counts. The focus comes back. False when the check has refused the
/// text: no action may begin with what is left of it.
bool FinishEditing();
/// Called by a check that refuses what was typed.
void NoteRefusal();

/// What a button does with the Terminal.
enum class Speaks {
  No,
  Yes,         ///< begins only with an open port, and while nothing runs that it would disturb
  AlsoClosed,  ///< the same, but the port may be closed
  Listens,     ///< begins like one that speaks, but others may speak while it runs
  ToStop,      ///< ends what runs: neither a field's check nor anything else keeps it from that
};

/// Connects a button to its handler; what fails in it is reported under the button's name. A button
/// whose action still runs does not begin it again.
void ConnectClick(QAbstractButton* button, Operator& person, Speaks speaks,
                  std::function<void()> handler);

/// While another action speaks to the Terminal: keeps this one until that is over, and returns
/// true. The answers to both would get mixed up. `what` is whose action it is.
bool TalkLater(Operator& person, QObject* what, std::function<void()> action);

template <typename Page>
void OnClick(QAbstractButton* button, Page* page, Operator& person, void (Page::*handler)(),
             Speaks speaks = Speaks::No) {
  ConnectClick(button, person, speaks, [=] { (page->*handler)(); });
}
/// The same for a button whose handler sends something.
template <typename Page>
void OnSend(QAbstractButton* button, Page* page, Operator& person, void (Page::*handler)()) {
  OnClick(button, page, person, handler, Speaks::Yes);
}

}  // namespace kelvo

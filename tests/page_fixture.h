#pragma once

#include <QApplication>

#include "link/exchange.h"
#include "link/receive_events.h"
#include "terminal/terminal_state.h"
#include "tests/controls_fixture.h"

namespace kelvo {

/// A page alone, with its room, over an open port.
class PageTest : public ControlsTest {
 protected:
  PageTest() {
    port.Open();
    port.SetReceiveThreshold(1);
    port.SetReceiveHandler([this] { receive.com1_OnComm(); });
    person.SetPort([this] { return port.IsOpen(); }, [this] { ++portsWanted; });
    tmrTimeout.SetEnabled(true);
    tmrRS485.SetInterval(testing_world::milliseconds(20));
  }
  // As the program's windows go: hidden first, so that a field that is left still finds its page.
  ~PageTest() override {
    if (shown) shown->hide();
  }
  QWidget& Root() override { return *shown; }

  /// The page comes to the front; it belongs to the test from now on.
  template <typename Page>
  Page& Put(Page* page) {
    shown.reset(page);
    receive.SetFront(dynamic_cast<Receiver*>(page));
    page->show();
    QApplication::processEvents();  // it becomes the active window
    return *page;
  }
  /// A table of the database, or a query on it.
  Recordset& Records(const std::string& source) { return records.emplace_back(database, source); }

  Exchange exchange{com1, loop, tmrTimeout, tmrRS485};
  ReceiveEvents receive{com1, exchange};
  TerminalState state;
  Database database{folder.Path("kelvo.mdb")};
  std::deque<Recordset> records;
  int portsWanted = 0;  ///< how often the operator was asked to open the port
  std::unique_ptr<QWidget> shown;
};

}  // namespace kelvo

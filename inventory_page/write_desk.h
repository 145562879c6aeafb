#pragma once

#include <QObject>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/event_loop.h"
#include "base/operator.h"
#include "inventory/journal.h"
#include "inventory/write_run.h"
#include "link/line_state.h"
#include "store/recordset.h"
#include "terminal/terminal_state.h"

namespace kelvo {

class WriteDialog;

/// Where the pages take what is to be written with a proof: to the Terminal that is selected, or to
/// those of the list that the operator ticks.
class WriteDesk : public QObject {
  Q_OBJECT

 public:
  struct Services {
    Exchange& exchange;
    EventLoop& loop;
    Operator& person;
    TerminalState& state;
    const LineState& line;
    const Recordset& terminals;  ///< `DOVU`
    const Recordset& options;    ///< `Optionen`
    const WriteJournal& journal;
  };
  /// The window is that of the dialog.
  WriteDesk(Services services, QWidget* window);

  /// Writes to the one Terminal that is selected and returns in words what came of it (UTF-8); a
  /// failure has been reported. Nothing when it did not begin, which has been said.
  std::optional<std::string> Write(const WriteOrder& order);
  /// Whether one Terminal is selected; says so when not.
  bool HasTarget();
  /// Shows the dialog that writes to many.
  void WriteToMany(const WriteOrder& order);
  /// Something for one Terminal.
  struct Task {
    int address;
    WriteOrder order;
    bool ticked;
    std::string why;  ///< shown until it is done, UTF-8
  };
  /// The same dialog with these.
  void WriteAll(const std::vector<Task>& tasks);
  /// The Terminal that listens, if it is one and known.
  std::optional<int> Selected() const;
  /// In German who answers now: "von Adresse 5". UTF-8
  std::string AnswersFrom() const;
  /// Another Terminal is selected, or something was written or deleted.
  void NoteChange() { Q_EMIT Changed(); }
  const WriteJournal& Journal() const { return services_.journal; }

 Q_SIGNALS:
  /// Something is over: what came of it.
  void Finished(const QString& result, bool failed);
  /// What holds of a Terminal may be something else now.
  void Changed();

 private:
  std::optional<WriteResult> WriteTo(int address, const WriteOrder& order);
  bool HasRoomFor(const WriteOrder& order);
  bool CanSum(int address) const;

  Services services_;
  WriteDialog* dialog_;
};

}  // namespace kelvo

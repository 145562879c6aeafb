#include "inventory_page/write_desk.h"

#include "bus/stored_terminals.h"
#include "inventory_page/write_dialog.h"
#include "link/answer_form.h"
#include "terminal/eeprom.h"
#include "terminal/version.h"
#include "widgets/texts.h"

namespace kelvo {
namespace {

std::string NoTarget(Listening listens) {
  switch (listens) {
    case Listening::All:
      return "Gewählt sind alle Terminals zugleich (255).";
    case Listening::Nobody:
      return "Es ist kein Terminal gewählt.";
    default:
      return "Welches Terminal hört, ist nicht bekannt.";
  }
}

}  // namespace

WriteDesk::WriteDesk(Services services, QWidget* window)
    : QObject(window),
      services_(services),
      dialog_(new WriteDialog(
          {services_.exchange, services_.loop, services_.person, [this] { return Selected(); }},
          window)) {
  connect(dialog_, &WriteDialog::Finished, this, &WriteDesk::Finished);
}

std::optional<int> WriteDesk::Selected() const { return services_.line.Meant(); }

std::string WriteDesk::AnswersFrom() const {
  if (services_.line.Listens() == Listening::All) return "von allen zugleich (255)";
  const auto asked = Selected();
  return asked ? "von Adresse " + std::to_string(*asked) : "von unbekannter Adresse";
}

bool WriteDesk::HasTarget() {
  if (Selected()) return true;
  services_.person.Message(NoTarget(services_.line.Listens()), Icon::Exclamation);
  return false;
}

std::optional<std::string> WriteDesk::Write(const WriteOrder& order) {
  if (!HasTarget()) return std::nullopt;
  const int address = *Selected();
  const std::optional<WriteResult> result = WriteTo(address, order);
  if (!result) return std::nullopt;
  const std::string what = ItemText(order.item.key) + " an Adresse " + std::to_string(address);
  const std::string text = what + ": " + ResultText(*result);
  Q_EMIT Finished(Text(text), !result->Done());
  if (!result->Done()) {
    services_.person.Message(ResultText(*result) + " (" + what + ")", Icon::Exclamation);
  }
  return text;
}

std::optional<WriteResult> WriteDesk::WriteTo(int address, const WriteOrder& order) {
  const Undertakings::Alone alone(services_.person.Begun(),
                                  ItemText(order.item.key) + " wird geschrieben und geprüft.");
  if (!HasRoomFor(order)) return std::nullopt;
  const bool listed = StoredTerminalAt(services_.terminals, address).has_value();
  if (!listed && services_.line.Version().empty()) {
    QueryVersion(services_.exchange, services_.state);
  }
  const bool canSum = CanSum(address);
  WriteFrame frame = order.frame;
  frame.room.reset();
  return ProvenWrite(services_.exchange, services_.loop).Write(address, canSum, order.item, frame);
}

// The same check as in front of a usual write.
bool WriteDesk::HasRoomFor(const WriteOrder& order) {
  if (!order.frame.room) return true;
  if (IsTable(order.item.key.kind)) {
    return HasRoomForTable(services_.exchange, services_.state, services_.person);
  }
  return HasRoom(services_.exchange, services_.state, services_.person, *order.frame.room);
}

// What the list says of it counts; of one that is not there, its version, as far as it is known.
bool WriteDesk::CanSum(int address) const {
  if (const auto stored = StoredTerminalAt(services_.terminals, address)) return stored->checksum;
  const std::string& version = services_.line.Version();
  return Selected() == address && IsVersion(version) &&
         ReadVersion(version).number >= services_.options.Number("ChecksumabVer");
}

void WriteDesk::WriteToMany(const WriteOrder& order) {
  std::vector<WriteJob> jobs;
  for (const StoredTerminal& stored : StoredTerminals(services_.terminals)) {
    jobs.push_back({stored.name, stored.address, stored.checksum, stored.active, order});
  }
  dialog_->Open(tr("%1 an aktive Terminals schreiben").arg(Text(ItemText(order.item.key))),
                std::move(jobs));
}

void WriteDesk::WriteAll(const std::vector<Task>& tasks) {
  std::vector<WriteJob> jobs;
  for (const Task& task : tasks) {
    const auto stored = StoredTerminalAt(services_.terminals, task.address);
    jobs.push_back({stored ? stored->name : std::string(), task.address, CanSum(task.address),
                    task.ticked, task.order, task.why});
  }
  dialog_->Open(tr("Geändertes schreiben"), std::move(jobs));
}

}  // namespace kelvo

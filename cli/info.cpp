#include <charconv>
#include <system_error>

#include "base/wire_text.h"
#include "cli/connection.h"
#include "cli/verbs.h"
#include "inventory/readings.h"
#include "link/addresses.h"
#include "link/commands.h"

namespace kelvo::cli {
namespace {

/// What is asked of a Terminal, and its column. What is not in the table is in the other forms.
struct Told {
  Column column;
  CommandName query;
  bool number = false;  ///< the reply is one
};
constexpr Told kTold[] = {{{"version", "Version"}, CommandName::AskVersion},
                          {{"flash", "Flash"}, CommandName::AskFlash},
                          {{"frei", "frei (Byte)"}, CommandName::AskFreeBytes, true},
                          {{"p1", "P1"}, CommandName::AskPort, true},
                          {{"matrix_tabelle", ""}, CommandName::AskMatrixTable},
                          {{"at_tabelle", ""}, CommandName::AskAtTable},
                          {{"cursor", ""}, CommandName::AskCursor, true},
                          {{"cursorform", ""}, CommandName::AskCursorShape, true},
                          {{"textposition", ""}, CommandName::AskTextPosition},
                          {{"textschrift", ""}, CommandName::AskTextFont, true},
                          {{"textattribut", ""}, CommandName::AskTextAttribute, true},
                          {{"textmodus", ""}, CommandName::AskTextMode, true},
                          {{"textzoom", ""}, CommandName::AskTextZoom}};

// The Terminal tells it in lines.
std::string InOneLine(const std::string& wire) {
  std::string text;
  for (const char c : wire) {
    const bool end = c == '\r' || c == '\n';
    if (!end) {
      text += c;
    } else if (!text.empty() && !text.ends_with(", ")) {
      text += ", ";
    }
  }
  if (text.ends_with(", ")) text.resize(text.size() - 2);
  return text;
}

// What ought to be a number and is none stays the text that it is.
Cell ReplyCell(const Told& told, const std::string& reply) {
  std::int64_t number = 0;
  const char* const end = reply.data() + reply.size();
  const auto read = std::from_chars(reply.data(), end, number);
  const bool whole = read.ec == std::errc() && read.ptr == end;
  return told.number && whole ? Cell(number) : Cell(ReadableText(reply));
}

/// Asks one Terminal after the other.
class Info {
 public:
  explicit Info(Bench& bench)
      : bench_(bench), line_(bench), readings_(bench.DataPath() + "/" + kReadingsFile) {}
  Status Run();

 private:
  bool Ask(const EquipTarget& target);
  void AddRow(const EquipTarget& target, bool answered, bool asked);
  std::string SystemInfo();
  void MakeColumns();

  Bench& bench_;
  Connection line_;
  Readings readings_;
  Table table_;
};

void Info::MakeColumns() {
  table_.columns = {{"adresse", "Adresse"}, {"name", "Name"}, {"antwortet", "antwortet"}};
  for (const Told& told : kTold) table_.columns.push_back(told.column);
  table_.columns.push_back({"info", "Info"});
  table_.columns.push_back({"grund", "Grund"});
}

Status Info::Run() {
  MakeColumns();
  const std::vector<EquipTarget> targets = TargetsOf(bench_, line_.Device());
  if (!line_.Open()) return SomethingFailed;
  bool well = true;
  for (const EquipTarget& target : targets) {
    bench_.Shown().Show(TargetText(target) + " wird gefragt …");
    well = Ask(target) && well;
  }
  if (line_.exchange.Alive()) line_.exchange.SendString(SelectAddress(kClosingAddress));
  bench_.Print(table_);
  return well ? AllWell : SomethingFailed;
}

bool Info::Ask(const EquipTarget& target) {
  if (line_.Interrupted() || !line_.exchange.Alive()) {
    AddRow(target, false, false);
    return false;
  }
  ReadRun run({line_.exchange, bench_.World().loop, readings_});
  line_.SetStop([&run] { run.Stop(); });
  const ReadRun::Result result =
      run.Run(target.id.device, {target.id.address}, target.id.address, [](int) {});
  line_.SetStop({});
  const bool answered = !result.answered.empty();
  if (result.notKept) bench_.Operator().Say("Nicht aufgezeichnet: " + *result.notKept + ".");
  AddRow(target, answered, true);
  return answered && result.complete;
}

// It is a text without an end, so that it cannot be told from silence.
std::string Info::SystemInfo() {
  if (!line_.exchange.Alive() || line_.Interrupted()) return {};
  line_.exchange.SendString(AskSystemInfo());
  return ReadableText(InOneLine(line_.exchange.WaitAnswer({}).text));
}

void Info::AddRow(const EquipTarget& target, bool answered, bool asked) {
  std::vector<Cell> row{std::int64_t{target.id.address}, target.name, answered};
  std::string why = asked ? "" : "nicht mehr gefragt";
  for (const Told& told : kTold) {
    const Reading* const read = readings_.Last(target.id, told.query);
    const Silence* const silence = readings_.SilenceOf(target.id, told.query);
    if (asked && silence != nullptr && why.empty()) why = silence->why;
    const bool known = answered && read != nullptr && silence == nullptr;
    row.push_back(known ? ReplyCell(told, read->reply) : Cell());
  }
  row.push_back(answered ? Cell(SystemInfo()) : Cell());
  row.push_back(why);
  table_.rows.push_back(std::move(row));
}

}  // namespace

Status RunInfo(Bench& bench) { return Info(bench).Run(); }

}  // namespace kelvo::cli

#include "cli/connection.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "base/val.h"

namespace kelvo::cli {
namespace {

constexpr int kPorts = 6;
constexpr std::string_view kPortName = "Com ";

// The port that is chosen on the page, and how it is set there.
void FindStored(Recordset& records, double wanted) {
  records.MoveFirst();
  while (!records.Eof() && records.Number("satznr") != wanted) records.MoveNext();
}

std::string ListText(const Recordset& records, ComList list) {
  return records.Text(std::string(ComField(list))).value_or("");
}

std::string Parity(char letter) {
  for (const ListEntry& entry : ComEntries(ComParity1)) {
    if (entry.text.front() == letter) return std::string(entry.text);
  }
  return {};
}

// Everything as its list has it; a text that is in none is refused as the page refuses it.
void CheckEntry(ComList list, const std::string& text) {
  if (ComPosition(list, text) >= 0) return;
  throw WrongRequest("Die gespeicherte Einstellung " + std::string(ComField(list)) + " \"" + text +
                     "\" gibt es nicht; --port, --rate, --frame und --handshake ersetzen sie.");
}

PortSettings SettingsOf(const Recordset& records, const LineChoice& asked) {
  const bool framed = !asked.frame.empty();
  const auto text = [&](ComList list, const std::string& wanted) {
    std::string chosen = wanted.empty() ? ListText(records, list) : wanted;
    CheckEntry(list, chosen);
    return chosen;
  };
  const std::string shake = asked.handshake.empty()    ? std::string()
                            : asked.handshake == "rts" ? "RTS / CTS"
                                                       : "XOn / XOff";
  const int handshake = ComPosition(ComShake1, text(ComShake1, shake));
  return MakePortSettings(
      text(ComBaud1, asked.rate), text(ComParity1, framed ? Parity(asked.frame[1]) : std::string()),
      text(ComBits1, framed ? asked.frame.substr(0, 1) : std::string()),
      text(ComStopBit1, framed ? asked.frame.substr(2) : std::string()), handshake);
}

// A path, or the name that the system lists a port by.
std::string NamedDevice(const std::string& name) {
  std::error_code ignored;
  const bool listed =
      name.find('/') == std::string::npos && !std::filesystem::exists(name, ignored);
  if (listed) return "/dev/" + name;
  return std::filesystem::absolute(name).lexically_normal().string();
}

int PortNumber(const std::string& name) {
  const int position = ComPosition(ComPortNr, name);
  return position >= 0 && position < kPorts ? position + 1 : 0;
}

}  // namespace

LineSetting LineSettingOf(Bench& bench) {
  ProgramData& data = bench.Data();
  const LineChoice& asked = bench.Asked().line;
  FindStored(data.ctlComData, data.Default.Number("schnittstelle"));
  LineSetting line;
  const std::string name = asked.port.empty() ? ListText(data.ctlComData, ComPortNr) : asked.port;
  line.number = PortNumber(name);
  if (line.number > 0) {
    line.device = data.DeviceOf(line.number, bench.DataPath());
  } else if (!asked.port.empty() && !asked.port.starts_with(kPortName)) {
    line.device = NamedDevice(asked.port);
  }
  if (line.device.empty()) {
    throw WrongRequest(asked.port.empty()
                           ? "Es ist kein Anschluss gespeichert; --port nennt einen."
                           : "Hinter \"" + asked.port + "\" ist kein Gerät eingetragen.");
  }
  line.settings = SettingsOf(data.ctlComData, asked);
  return line;
}

Connection::Connection(Bench& bench)
    : exchange(bench.World().com1, bench.World().loop, bench.World().tmrTimeout,
               bench.World().tmrRS485),
      journal(bench.DataPath() + "/" + kJournalFile),
      bench_(bench),
      line_(LineSettingOf(bench)),
      control_(bench.World().com1, bench.Operator()),
      watch_(bench.World().com1, exchange),
      state_(watch_, bench.World().loop, exchange),
      recorder_({watch_, state_, exchange, bench.World().loop, journal,
                 [this] { return line_.device; }}) {
  control_.FormLoading = false;
  control_.SetExplainer([this](std::int16_t) {
    const auto& describe = bench_.World().describeDevice;
    return line_.device + (describe ? ": " + describe(line_.device) : std::string());
  });
  journal.SetFailureListener([this](const std::string& reason) {
    bench_.Operator().Say(
        "Was in die Terminals geschrieben wird, kann nicht aufgezeichnet werden: " + reason +
        ". Gesendet wird trotzdem; der Bestand nennt es ungewiss.");
  });
  const Outside& world = bench_.World();
  world.com1.SetLostHandler([this] { TellLoss(); });
  world.com1.SetErrorHandler([this](const std::string& error) {
    bench_.Operator().Say("Der Anschluss " + line_.device + " meldet: " + error + ".");
  });
  if (world.setDevices) world.setDevices([this](int) { return line_.device; });
}

Connection::~Connection() {
  TellLoss();
  const Outside& world = bench_.World();
  if (world.com1.IsOpen()) world.com1.Close();
  world.com1.SetLostHandler({});
  world.com1.SetErrorHandler({});
  if (world.setDevices) world.setDevices({});
  if (world.onInterrupt) world.onInterrupt({});
  for (Timer* const timer : {&world.tmrTimeout, &world.tmrRS485}) timer->SetHandler({});
}

bool Connection::Open() {
  const Outside& world = bench_.World();
  ReadPause();
  world.tmrTimeout.SetEnabled(true);
  if (!Reopen()) return false;
  if (world.onInterrupt) world.onInterrupt([this] { Interrupt(); });
  return true;
}

bool Connection::Reopen() {
  constexpr std::int16_t kNamedDevice = 1;
  const auto number = static_cast<std::int16_t>(line_.number > 0 ? line_.number : kNamedDevice);
  opened_ = control_.OpenCom(number) == PortOk;
  if (!opened_) return false;
  control_.SetUpPort(line_.settings);
  state_.PortIs(number);
  return true;
}

// The port tells it later, when nobody may listen any more. A second interruption closes it, too.
bool Connection::Lost() const { return opened_ && !interrupted_ && !bench_.World().com1.IsOpen(); }

void Connection::TellLoss() {
  if (!Lost() || std::exchange(lossTold_, true)) return;
  bench_.Operator().Say("Die Verbindung zu " + line_.device + " ist verloren gegangen.");
}

// Within what a timer can hold, as the window reads it.
void Connection::ReadPause() {
  const double pause = bench_.Data().Optionen.Number("rs485wait");
  bench_.World().tmrRS485.SetInterval(std::chrono::milliseconds(static_cast<long>(pause)));
}

void Connection::Interrupt() {
  if (std::exchange(interrupted_, true)) {
    if (bench_.World().com1.IsOpen()) bench_.World().com1.Close();  // ends every wait
    return;
  }
  bench_.Operator().Say("Es hält nach dem Schritt an, der gerade läuft.");
  if (stop_) stop_();
}

}  // namespace kelvo::cli

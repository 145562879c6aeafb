#include "interfaces/port_control.h"

namespace kelvo {
namespace {

constexpr ListEntry kBauds[] = {{"1200", 1200}, {"2400", 2400},   {"4800", 4800},
                                {"9600", 9600}, {"14400", 14400}, {"19200", 19200}};
constexpr ListEntry kParities[] = {{"None", 0}, {"Space", 1}, {"Odd", 2}, {"Even", 3}};
constexpr ListEntry kDataBits[] = {{"7", 7}, {"8", 8}};
constexpr ListEntry kStopBits[] = {{"1", 1}, {"2", 2}};
constexpr ListEntry kHandshakes[] = {{"XOn / XOff", 0}, {"RTS / CTS", 1}};
constexpr ListEntry kBuffers[] = {
    {"1 k", 1024}, {"2 k", 2048}, {"4 k", 4096}, {"8 k", 8192}, {"16 k", 16384}};
constexpr ListEntry kReceiveModes[] = {{"aus", 0}, {"empfangen", 1}, {"empf. & Puffer löschen", 2}};
constexpr ListEntry kPorts[] = {{"Com 1", 1}, {"Com 2", 2}, {"Com 3", 3},  {"Com 4", 4},
                                {"Com 5", 5}, {"Com 6", 6}, {"(keine)", 7}};

struct ListDescription {
  std::string_view field;
  std::span<const ListEntry> entries;
};

// The odd spelling of "Stopbit2" is the database's.
constexpr ListDescription kLists[ComListCount] = {
    {"Baud1", kBauds},          {"Parity1", kParities},  {"Bits1", kDataBits},
    {"StopBit1", kStopBits},    {"Shake1", kHandshakes}, {"Puffer1", kBuffers},
    {"Baud2", kBauds},          {"Parity2", kParities},  {"Bits2", kDataBits},
    {"Stopbit2", kStopBits},    {"Shake2", kHandshakes}, {"Puffer2", kBuffers},
    {"RecCom2", kReceiveModes}, {"ComNr", kPorts}};

constexpr std::pair<ComList, std::string_view> kDefaults1[] = {
    {ComBaud1, "19200"}, {ComParity1, "None"},      {ComBits1, "8"},
    {ComStopBit1, "1"},  {ComShake1, "XOn / XOff"}, {ComPuffer1, "16 k"}};
constexpr std::pair<ComList, std::string_view> kDefaults2[] = {
    {ComBaud2, "9600"},        {ComParity2, "None"}, {ComBits2, "8"},    {ComStopbit2, "1"},
    {ComShake2, "XOn / XOff"}, {ComPuffer2, "16 k"}, {ComRecCom2, "aus"}};

}  // namespace

std::span<const ListEntry> ComEntries(ComList list) { return kLists[list].entries; }

std::string_view ComField(ComList list) { return kLists[list].field; }

int ComPosition(ComList list, std::string_view text) {
  const auto entries = ComEntries(list);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (entries[i].text == text) return static_cast<int>(i);
  }
  return -1;
}

ComDefaults DefaultsCom1() { return kDefaults1; }
ComDefaults DefaultsCom2() { return kDefaults2; }

InterfaceNumbers InterfaceNumbersFrom(const ComNumbers& numbers, ComList first) {
  return {numbers[first], numbers[first + 1u], numbers[first + 2u], numbers[first + 3u],
          numbers[first + 4u]};
}

PortSettings MakePortSettings(std::string_view baud, std::string_view parity, std::string_view bits,
                              std::string_view stopBitCount, int handshakePosition) {
  PortSettings settings;
  settings.text.append(baud).append(",").append(parity.substr(0, 1)).append(",");
  settings.text.append(bits).append(",").append(stopBitCount);
  settings.handshaking = static_cast<Handshaking>(handshakePosition + 1);
  return settings;
}

std::int16_t PortControl::OpenCom(std::int16_t port) {
  if (FormLoading) return PortOk;
  if (com1_.IsOpen()) com1_.Close();
  PortError error = com1_.SetPortNumber(port);
  if (error == PortOk) error = com1_.Open();
  return error == PortOk ? static_cast<std::int16_t>(PortOk) : Failed(error, port);
}

std::int16_t PortControl::Failed(PortError error, std::int16_t port) {
  const auto say = [&](const std::string& text) {
    operator_.Message(text, Icon::Exclamation, {}, explain_ ? explain_(port) : std::string());
  };
  switch (error) {
    case PortInUse:
      say("Schnittstelle belegt");
      com1_.SetPortNumber(0);
      break;
    case PortNotAvailable:
      say("Schnittstelle nicht vorhanden");
      com1_.SetPortNumber(0);
      break;
    case PortAlreadyOpen:
      say("Schnittstelle bereits geöffnet");
      com1_.Close();
      break;
    default:
      // No blank before the number: the text is as it has always been.
      say("Schnittstellenfehler" + std::to_string(error));
      com1_.Close();
  }
  if (failed_) failed_();
  return error;
}

void PortControl::SetUpPort(const PortSettings& settings) {
  com1_.SetInputLen(1);
  const std::string refused = com1_.SetUp(settings.text, settings.handshaking);
  com1_.SetReceiveThreshold(1);
  // That the device is gone is said by whoever hears of the loss.
  if (!refused.empty() && com1_.IsOpen()) operator_.Message(refused, Icon::Exclamation);
}

}  // namespace kelvo

#include "shell/drawing_desk.h"

#include <stdexcept>

#include "base/val.h"
#include "graphics/draft.h"
#include "graphics/save_bitmap.h"
#include "link/control_characters.h"
#include "settings/status.h"
#include "terminal/eeprom.h"

namespace kelvo {
namespace {

constexpr char textFilter[] = "Text (txt) |*.txt";
constexpr char draftName[] = "/kelvo.entwurf";

std::string Plain(std::string_view letters) { return std::string(CmdPrefix).append(letters); }

QSize DisplaySize(const Recordset& defaults) {
  return {RoundToEven(defaults.Number("displayx")), RoundToEven(defaults.Number("displayy"))};
}

}  // namespace

void SaveasText(const std::string& text, const std::string& fileName) {
  if (WriteFile(fileName, text + "\r\n")) return;
  throw std::runtime_error("Die Datei \"" + fileName + "\" kann nicht geschrieben werden");
}

DrawingDesk::DrawingDesk(Services services, const bool& fensterMitZoomen)
    : services_(std::move(services)),
      fensterMitZoomen_(fensterMitZoomen),
      editor_(*this, services_.outside.person, services_.fonts, services_.outside.tmrSofort,
              DisplaySize(services_.defaults), services_.outside.dataFolder + draftName),
      page_(new DrawingPage(editor_, *this, services_.outside.person)) {}

TerminalTraits DrawingDesk::Terminal() const {
  TerminalTraits traits;
  traits.blackThreshold = static_cast<std::int64_t>(services_.options.Number("BMPSchwarzschwelle"));
  traits.pixelWidthVersion = services_.options.Number("BMPinPixelabVer");
  traits.terminalVersion = services_.state.TerminalVersion;
  traits.queryVersion = [this] {
    services_.exchange.CommandBuffer = "?V";
    services_.exchange.QueryCommand();
    NoteVersion(services_.state, services_.exchange.CommandBuffer);
    return services_.state.TerminalVersion;
  };
  return traits;
}

void DrawingDesk::Send() {
  SerialPort& com1 = services_.outside.com1;
  if (!com1.IsOpen()) return Q_EMIT PortWanted();
  Q_EMIT Sending(true);
  services_.outside.loop.ProcessPending();
  if (com1.IsOpen()) com1.Write(Plain("GC"));
  const std::string commands = editor_.CreatePic();
  if (com1.IsOpen()) com1.Write(commands);
  Q_EMIT Sending(false);
}

void DrawingDesk::NewDrawing() {
  if (!editor_.MayDiscard()) return;
  SerialPort& com1 = services_.outside.com1;
  if (com1.IsOpen()) com1.Write(Plain("GC") + Plain("!C0;"));
  editor_.Clear();
}

// What could not be translated has been reported; it replaces no record and no file.
void DrawingDesk::SaveAsMakro() {
  if (const auto commands = editor_.TryCreatePic()) services_.saveAsMakro(*commands);
}

void DrawingDesk::SaveAsText() {
  const auto commands = editor_.TryCreatePic();
  if (!commands) return;
  const auto name = services_.outside.person.SaveFile("", textFilter);
  if (name) SaveasText(*commands, *name);
}

void DrawingDesk::SaveBMPinEEProm() {
  Exchange& exchange = services_.exchange;
  const EEPromAccess eeprom{[this] { return GetEEpromBytes(services_.exchange, services_.state); },
                            [&exchange](const std::string& command) {
                              exchange.CommandBuffer = command;
                              exchange.SendCommand(Acknowledge::Wait);
                              return exchange.CommandBuffer;
                            }};
  kelvo::SaveBMPinEEProm(editor_.CurrentDrawing(), editor_.Terminal(), services_.outside.person,
                         eeprom);
}

}  // namespace kelvo

#include "shell/drawing_desk.h"

#include <QPrintDialog>
#include <stdexcept>

#include "base/val.h"
#include "base/wire_text.h"
#include "graphics/save_bitmap.h"
#include "link/commands.h"
#include "store/display_size.h"
#include "terminal/eeprom.h"
#include "terminal/version.h"
#include "widgets/files.h"
#include "widgets/handlers.h"

namespace kelvo {
namespace {

constexpr char kTextFilter[] = "Text (txt) |*.txt";

QSize SizeOfDisplay(const Recordset& defaults) {
  const auto [width, height] = DisplaySizeIn(defaults);
  return {width, height};
}

}  // namespace

void SaveasText(const std::string& text, const std::string& fileName) {
  const auto reason = WriteFile(fileName, text + "\r\n");
  if (!reason) return;
  throw std::runtime_error("Die Datei \"" + fileName +
                           "\" kann nicht geschrieben werden: " + *reason);
}

std::vector<GraphicsHost::StoredText> StoredTexts(Database& database) {
  std::vector<GraphicsHost::StoredText> texts;
  for (const bool isDrawing : {true, false}) {
    Recordset records(database, std::string("select * from Makro where typ = ") +
                                    (isDrawing ? "'Grafik'" : "'Makro'"));
    for (; !records.Eof(); records.MoveNext()) {
      auto commands = WireText(records.Text("wert").value_or(""));
      if (!commands) continue;
      texts.push_back({records.Text("Bezeichnung").value_or(""), std::move(*commands), isDrawing});
    }
  }
  return texts;
}

DrawingDesk::DrawingDesk(Services services)
    : services_(std::move(services)),
      editor_(*this, services_.outside.person, services_.fonts, services_.outside.tmrSofort,
              SizeOfDisplay(services_.defaults), services_.draftPath),
      page_(new DrawingPage(editor_, *this, services_.outside.person)) {}

bool DrawingDesk::ChoosePrinter(QPrinter& printer) {
  QPrintDialog dialog(&printer, &editor_);
  dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);  // there is one page
  return dialog.exec() == QDialog::Accepted;
}

TerminalTraits DrawingDesk::Terminal() const {
  TerminalTraits traits;
  traits.blackThreshold = RoundToEven(services_.options.Number("BMPSchwarzschwelle"));
  traits.pixelWidthVersion = services_.options.Number("BMPinPixelabVer");
  traits.terminalVersion = services_.state.TerminalVersion;
  traits.queryVersion = [this] {
    QueryVersion(services_.exchange, services_.state);
    return services_.state.TerminalVersion;
  };
  return traits;
}

bool DrawingDesk::Send() {
  SerialPort& com1 = services_.outside.com1;
  if (!services_.outside.person.MayTalk()) return false;
  Q_EMIT SendShown(true);
  services_.outside.loop.ProcessPending();
  if (com1.IsOpen()) com1.Write(ClearDisplay().Text());
  const std::string commands = editor_.CreatePic();
  if (com1.IsOpen()) com1.Write(commands);
  Q_EMIT SendShown(false);
  return true;
}

void DrawingDesk::NewDrawing() {
  if (!editor_.MayDiscard()) return;
  SerialPort& com1 = services_.outside.com1;
  if (com1.IsOpen() && !services_.outside.person.MayTalk()) return;
  if (com1.IsOpen()) com1.Write(Sequence({ClearDisplay(), CursorOffForDrawing()}));
  editor_.Clear();
}

// What could not be translated has been reported; it replaces no record and no file.
void DrawingDesk::SaveAsMakro() {
  if (const auto commands = editor_.TryCreatePic()) services_.saveAsMakro(*commands);
}

void DrawingDesk::SaveAsText() {
  const auto commands = editor_.TryCreatePic();
  if (!commands) return;
  const auto name = services_.outside.person.SaveFile("", kTextFilter);
  if (name) SaveasText(*commands, *name);
}

// The check of room runs in front of the question for the number, for one Terminal here, for many
// when each is reached.
EEPromAccess DrawingDesk::BitmapAccess(BitmapTo how, std::size_t& room) {
  return {[this, how, &room](std::size_t bytes) {
            room = bytes;
            return how == BitmapTo::Many ||
                   HasRoom(services_.exchange, services_.state, services_.outside.person, bytes);
          },
          [this, how, &room](const Command& command, const std::string& suffix) {
            const std::string name = editor_.FileName();
            if (how == BitmapTo::Selected) {
              const kelvo::Sending sending(services_.exchange, {name, {}});
              SendToEEprom(services_.exchange, services_.outside.person, command, suffix);
              return;
            }
            WriteOrder order{ItemOf(command.Text(), name).value(), {}};
            if (how == BitmapTo::SelectedProven) {
              services_.writeDesk.Write(order);
              return;
            }
            order.frame.room = room;
            services_.writeDesk.WriteToMany(order);
          },
          services_.bitmapNumberTyped};
}

void DrawingDesk::SaveBMPinEEProm(BitmapTo how) {
  Operator& person = services_.outside.person;
  if (how != BitmapTo::Selected && !person.MayTalk()) return;
  if (how != BitmapTo::Selected && TalkLater(person, this, [this, how] { SaveBMPinEEProm(how); })) {
    return;
  }
  if (how == BitmapTo::SelectedProven && !services_.writeDesk.HasTarget()) return;
  const Undertakings::Talking talking(person.Begun());
  std::size_t room = 0;
  kelvo::SaveBMPinEEProm(editor_.CurrentDrawing(), editor_.Terminal(), person,
                         BitmapAccess(how, room));
}

}  // namespace kelvo

#pragma once

#include <QObject>
#include <functional>
#include <optional>
#include <string>

#include "graphics/device_font.h"
#include "graphics/drawing_page.h"
#include "graphics/frmGrafik.h"
#include "graphics/graphics_host.h"
#include "graphics/save_bitmap.h"
#include "inventory_page/write_desk.h"
#include "link/exchange.h"
#include "shell/outside.h"
#include "shell/symbol_records.h"
#include "shell/window_memory.h"
#include "store/recordset.h"
#include "terminal/terminal_state.h"

namespace kelvo {

/// Writes `text`, one line end (CR LF) behind it, into a file that is created or replaced; throws
/// std::runtime_error when that fails, and leaves an old file as it was then.
void SaveasText(const std::string& text, const std::string& fileName);

/// What the records of typ "Grafik" and "Makro" hold, as far as it can go on the wire.
std::vector<GraphicsHost::StoredText> StoredTexts(Database& database);

/// The graphics editor's place in the program: its drawing goes to the Terminal, into the records
/// and into files.
class DrawingDesk : public QObject, private GraphicsHost {
  Q_OBJECT

 public:
  struct Services {
    const Outside& outside;
    Exchange& exchange;
    TerminalState& state;
    const DeviceFonts& fonts;
    WindowMemory& memory;
    SymbolRecords& symbols;
    Recordset& options;   ///< `Optionen`
    Recordset& defaults;  ///< `Default`
    WriteDesk& writeDesk;
    std::function<int()> baudRate;                             ///< of the open port, bit/s
    std::function<bool(const std::string& text)> saveAsMakro;  ///< typ "Grafik"
    std::function<std::vector<StoredText>()> storedTexts;      ///< typ "Grafik", then "Makro"
    std::function<bool()> fensterMitZoomen;                    ///< the option, as it is now
    std::string draftPath;                                     ///< of the drawing
    std::function<void(std::optional<int> number)> bitmapNumberTyped{};  ///< see EEPromAccess
  };
  explicit DrawingDesk(Services services);

  frmGrafik& Editor() { return editor_; }
  DrawingPage* Page() { return page_; }

  /// The drawing send: writes to the open port directly, without acknowledge and in one piece, or
  /// asks for one.
  bool Send() override;
  /// Clears the Terminal's display and, unless the operator keeps an unsaved one, the drawing.
  void NewDrawing() override;
  void SaveAsMakro() override;
  void SaveAsText() override;
  void SaveBMPinEEProm(BitmapTo how = BitmapTo::Selected) override;
  /// What is drawn, as commands; nothing when it could not be translated, which has been said.
  std::optional<std::string> TryCreatePic() { return editor_.TryCreatePic(); }

 Q_SIGNALS:
  /// The drawing is on its way (true) or has been handed to the line.
  void SendShown(bool on);

 private:
  EEPromAccess BitmapAccess(BitmapTo how, std::size_t& room);
  bool CanSend() const override {
    return services_.outside.com1.IsOpen() && !Sending() &&
           !services_.outside.person.Begun().HandlersRun();
  }
  bool Sending() const override { return services_.outside.com1.OutBufferCount() > 0; }
  int BitsPerSecond() const override { return services_.baudRate(); }
  TerminalTraits Terminal() const override;
  bool FensterMitZoomen() const override { return services_.fensterMitZoomen(); }
  std::vector<StoredText> StoredTexts() const override { return services_.storedTexts(); }
  bool ChoosePrinter(QPrinter& printer) override;
  std::vector<StoredSymbol> Symbols() const override { return services_.symbols.All(); }
  void StoreSymbol(const std::string& name, const std::string& commands) override {
    services_.symbols.Store(name, commands);
  }
  void RenameSymbol(const std::string& name, const std::string& changed) override {
    services_.symbols.Rename(name, changed);
  }
  void DeleteSymbol(const std::string& name) override { services_.symbols.Delete(name); }
  std::string Remembered(const std::string& name) const override {
    return services_.memory.Noted(name);
  }
  void Remember(const std::string& name, const std::string& value) override {
    services_.memory.Note(name, value);
  }

  Services services_;
  frmGrafik editor_;
  DrawingPage* page_;
};

}  // namespace kelvo

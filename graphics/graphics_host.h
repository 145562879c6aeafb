#pragma once

#include <string>
#include <vector>

#include "graphics/create_bitmap.h"

class QPrinter;

namespace kelvo {

/// What the graphics editor needs of the program around it.
class GraphicsHost {
 public:
  virtual ~GraphicsHost() = default;

  /// The main window's drawing send: clears the Terminal's display and writes the drawing's
  /// commands, or says why it cannot. False when nothing was sent.
  virtual bool Send() = 0;
  /// The toolbar's "new": clears the Terminal's display and, where the operator agrees, the
  /// drawing.
  virtual void NewDrawing() = 0;
  /// The toolbar's "save as macro" and "save as text" for the drawing.
  virtual void SaveAsMakro() = 0;
  virtual void SaveAsText() = 0;
  /// Whether the drawing may be sent by itself: the port is open, the line has taken all that was
  /// sent before, and the operator is not in the middle of something.
  virtual bool CanSend() const = 0;
  /// Characters wait to leave the line.
  virtual bool Sending() const = 0;
  /// Rate of the port to the Terminal, bit/s; 0 while it is not known.
  virtual int BitsPerSecond() const = 0;
  /// The option values and the Terminal's version; `displayHeight` is the editor's own affair.
  virtual TerminalTraits Terminal() const = 0;
  /// Option: the window grows and shrinks with the zoom.
  virtual bool FensterMitZoomen() const = 0;
  /// The system's print dialog; false when it was cancelled.
  virtual bool ChoosePrinter(QPrinter& printer) = 0;
  /// Where a picture goes, and how.
  enum class BitmapTo {
    Selected,        ///< the Terminal that listens
    SelectedProven,  ///< the same, with a proof of what has arrived
    Many,            ///< those of the list that are ticked, each with its proof
  };
  /// Stores the selected picture in the EEPROM.
  virtual void SaveBMPinEEProm(BitmapTo how) = 0;
  /// A drawing's or a macro's commands as they are stored.
  struct StoredText {
    std::string name;  ///< UTF-8
    std::string commands;
    bool isDrawing = false;  ///< else a macro
  };
  /// The stored drawings, then the macros, each in the order of their records.
  virtual std::vector<StoredText> StoredTexts() const = 0;
  /// A drawing of the operator's own to be put into others.
  struct StoredSymbol {
    std::string name;  ///< UTF-8
    std::string commands;
  };
  /// Sorted by their names. These throw std::exception when the database cannot do it.
  virtual std::vector<StoredSymbol> Symbols() const = 0;
  /// In the place of one of the same name.
  virtual void StoreSymbol(const std::string& name, const std::string& commands) = 0;
  virtual void RenameSymbol(const std::string& name, const std::string& changed) = 0;
  virtual void DeleteSymbol(const std::string& name) = 0;
  /// What the editor has remembered for the next start under a name of its own; empty when nothing
  /// is known. Remembering may fail silently: nothing of the operator's work is lost then.
  virtual std::string Remembered(const std::string& name) const = 0;
  virtual void Remember(const std::string& name, const std::string& value) = 0;
};

}  // namespace kelvo

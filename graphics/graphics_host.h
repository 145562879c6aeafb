#pragma once

#include "graphics/create_bitmap.h"

namespace kelvo {

/// What the graphics editor needs of the program around it.
class GraphicsHost {
 public:
  virtual ~GraphicsHost() = default;

  /// The main window's drawing send: clears the Terminal's display and writes the drawing's
  /// commands, or says that no port is open.
  virtual void Send() = 0;
  /// The toolbar's "new": clears the Terminal's display and, where the operator agrees, the
  /// drawing.
  virtual void NewDrawing() = 0;
  /// The toolbar's "save as macro" and "save as text" for the drawing.
  virtual void SaveAsMakro() = 0;
  virtual void SaveAsText() = 0;
  /// Whether a send would reach a port.
  virtual bool CanSend() const = 0;
  /// Rate of the port to the Terminal, bit/s; 0 while it is not known.
  virtual int BitsPerSecond() const = 0;
  /// The option values and the Terminal's version; `displayHeight` is the editor's own affair.
  virtual TerminalTraits Terminal() const = 0;
  /// Option: the window grows and shrinks with the zoom.
  virtual bool FensterMitZoomen() const = 0;
  /// Stores the selected picture in the Terminal's EEPROM.
  virtual void SaveBMPinEEProm() = 0;
};

}  // namespace kelvo

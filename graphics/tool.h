#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "graphics/device_font.h"
#include "graphics/drawing.h"

// The editor's drawing tools: small state machines between the mouse and the drawing's value.

namespace kelvo {

/// How new objects are drawn.
struct ObjectStyle {
  PenMode penMode = PenMode::Draw;
  bool filled = false;
  TextAttributes text;
};

/// What a tool sees of the editor.
class ToolSurface {
 public:
  virtual ~ToolSurface() = default;

  virtual const Drawing& Current() const = 0;
  /// Shows a drawing that may yet be given up; the current one stays.
  virtual void Show(Drawing preview) = 0;
  /// Shows the current drawing again.
  virtual void GiveUp() = 0;
  /// Makes a drawing the current one, as one step that can be undone.
  virtual void Commit(Drawing drawing) = 0;
  /// As Commit for a drawing that differs in its selection alone.
  virtual void Select(Drawing drawing) = 0;
  virtual void ShowRubberBand(std::optional<Box> box) = 0;
  virtual ObjectStyle Style() const = 0;
  virtual int GridStep() const = 0;
  /// How near a click must come, in drawing pixels.
  virtual int Tolerance() const = 0;
  virtual const DeviceFonts& Fonts() const = 0;
  /// Asks for a text as it goes on the wire; nothing when the operator cancels. `typed` is told
  /// the text while it grows.
  virtual std::optional<std::string> AskText(
      const std::string& proposed, const std::function<void(const std::string&)>& typed) = 0;
};

struct ToolEvent {
  Point at;
  bool shift = false;    ///< keeps a direction or a shape
  bool control = false;  ///< adds to the selection
};

class Tool {
 public:
  explicit Tool(ToolSurface& surface) : surface_(surface) {}
  virtual ~Tool() = default;

  virtual void Press(const ToolEvent& event) = 0;
  /// The button is down.
  virtual void Drag(const ToolEvent&) {}
  virtual void Release(const ToolEvent&) {}
  /// The button is up.
  virtual void Hover(const ToolEvent&) {}
  virtual void DoubleClick(const ToolEvent&) {}
  /// The right button or the Enter key: what is begun is complete.
  virtual void Finish() {}
  /// Another tool is taken: what is begun is given up.
  virtual void Cancel() = 0;
  virtual void Escape() { Cancel(); }  ///< the Escape key

 protected:
  Point Snap(Point p) const;
  /// Adds an object on top, selected alone.
  Drawing WithObject(DrawingObject object) const;

  ToolSurface& surface_;
};

enum class ToolKind { Select, Line, Rectangle, Ellipse, Polyline, Text };
std::unique_ptr<Tool> MakeTool(ToolKind kind, ToolSurface& surface);

/// Asks for the text of a text object, shows it while it is typed, and puts it into the drawing; an
/// empty answer changes nothing.
void EditText(ToolSurface& surface, std::size_t index);

}  // namespace kelvo

#pragma once

#include <memory>
#include <optional>

#include "graphics/curves.h"
#include "graphics/device_font.h"
#include "graphics/drawing.h"
#include "graphics/pixel_map.h"
#include "graphics/snap_lines.h"

// The editor's drawing tools: small state machines between the mouse and the drawing's value.

namespace kelvo {

/// How new objects are drawn.
struct ObjectStyle {
  PenMode penMode = PenMode::Draw;
  bool filled = false;
  TextAttributes text;
  CurveStyle curve;
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
  /// Opens a group, whose members are the current drawing then.
  virtual void EnterGroup(std::size_t index) = 0;
  /// Closes the open group, which is selected then; false where none is open.
  virtual bool LeaveGroup() = 0;
  virtual bool InGroup() const = 0;
  /// Takes hold of a point of the one object that is selected, or of none; every change of the
  /// drawing lets go of it.
  virtual void PickPoint(std::optional<std::size_t> point) = 0;
  virtual std::optional<std::size_t> PickedPoint() const = 0;
  virtual void ShowRubberBand(std::optional<Box> box) = 0;
  virtual ObjectStyle Style() const = 0;
  virtual int GridStep() const = 0;
  /// How near what is dragged must come to a line of other objects to snap to it, in drawing
  /// pixels; nothing where it never does.
  virtual std::optional<double> SnapReach() const = 0;
  virtual Box Display() const = 0;
  /// Shows the lines that hold what is dragged.
  virtual void ShowSnapPlaces(const SnapPlaces& places) = 0;
  /// How near a click must come to what is drawn, in drawing pixels.
  virtual double Tolerance() const = 0;
  virtual const DeviceFonts& Fonts() const = 0;
  /// What the display shows of the whole drawing.
  virtual PixelMap Pixels() const = 0;
  /// Lets the operator type the text `index` of a drawing that is to become the current one, the
  /// caret near `at`. It returns at once; the drawing is committed when the typing ends.
  virtual void TypeText(Drawing drawing, std::size_t index, Point at) = 0;
  /// Lets the operator prepare the picture that is selected anew. It returns at once.
  virtual void ChangePicture() = 0;
};

struct ToolEvent {
  Point at;
  bool shift = false;    ///< keeps a direction or a shape
  bool control = false;  ///< adds to the selection; in a drag, nothing snaps to objects
  bool alt = false;      ///< reaches below what is selected
};

/// What a click does: it chooses among what is there, it is all that is needed for a point or an
/// object, or something is drawn while the button is down.
enum class ToolUse { Choose, Clicks, Stroke };

/// What a press would take hold of: what is selected, to move it, one of its points, or its edges
/// (both of a corner: along which diagonal).
enum class HoldKind { Nothing, Inside, Point, Horizontal, Vertical, Rising, Falling };

class Tool {
 public:
  explicit Tool(ToolSurface& surface) : surface_(surface) {}
  virtual ~Tool() = default;

  virtual ToolUse Use() const = 0;
  virtual HoldKind HoldAt(Point) const { return HoldKind::Nothing; }
  virtual void Press(const ToolEvent& event) = 0;
  /// The button is down.
  virtual void Drag(const ToolEvent&) {}
  virtual void Release(const ToolEvent&) {}
  /// The button is up.
  virtual void Hover(const ToolEvent&) {}
  virtual void DoubleClick(const ToolEvent&) {}
  /// A point put there would be the last one again: what is begun is meant to be complete.
  virtual bool EndsAt(const ToolEvent&) const { return false; }
  /// The right button or the Enter key: what is begun is complete.
  virtual void Finish() {}
  /// The keys F2 and Enter: what is selected is opened to be changed within. False when it has no
  /// inside.
  virtual bool Open() { return false; }
  /// What is begun is given up.
  virtual void Cancel() = 0;
  /// Something is begun and not complete.
  virtual bool Begun() const { return false; }
  /// Another tool is taken.
  virtual void Leave() { Cancel(); }
  /// Undo, while something is begun: takes back its last step, which may be all of it. False when
  /// nothing was begun.
  virtual bool StepBack();
  /// The Escape key: ends what is begun. False when nothing was.
  virtual bool Escape();

 protected:
  /// To the grid alone.
  Point ToGrid(Point p) const;
  /// To other objects, else to the grid. What was there to snap to when this was first asked for
  /// stays so until EndSnapping.
  Point Snap(const ToolEvent& event) const;
  /// Where nothing is to snap, or is near enough, nothing is held.
  SnapLines::Snap SnapOf(const ToolEvent& event, const Box& box, bool withoutSelected) const;
  void EndSnapping();
  /// Adds an object on top, selected alone.
  Drawing WithObject(DrawingObject object) const;
  /// Adds one that is not selected, nor is anything else: what has a style of the tool's own must
  /// not lend it to the next object.
  Drawing WithStroke(DrawingObject object) const;

  ToolSurface& surface_;

 private:
  mutable std::optional<SnapLines> lines_;  // gathered when first asked for
};

enum class ToolKind {
  Select,
  Line,
  Rectangle,
  RoundedRectangle,
  Ellipse,
  Arc,
  Polyline,
  Pencil,
  Eraser,
  Text,
  Fill
};
std::unique_ptr<Tool> MakeTool(ToolKind kind, ToolSurface& surface);

/// Lets the operator change the text of a text object, the caret near `at`.
void EditText(ToolSurface& surface, std::size_t index, Point at);

}  // namespace kelvo

#include "twin/knowledge.h"

#include <algorithm>
#include <utility>

namespace kelvo {
namespace {

using sim::Command;
using sim::Parameters;

constexpr Knowledge::Parts kCell = Knowledge::TextFont | Knowledge::TextZoom;
constexpr Knowledge::Parts kPlace = Knowledge::Column | Knowledge::Row;
constexpr Knowledge::Parts kGraphicCell = Knowledge::GraphicFont | Knowledge::GraphicZoom;

// The largest cell of a text: where this fits, every other one does.
constexpr int kLargestWidth = 16 * kMaxZoomX;
constexpr int kLargestHeight = 32 * kMaxZoomY;

}  // namespace

Knowledge::Knowledge(sim::Terminal& terminal) : terminal_(terminal) {
  terminal_.PowerOn({});
  terminal_.SetFollower(this);
}

void Knowledge::Forget(TwinDoubt doubt, int number) {
  unknown_ = Everything;
  why_ = doubt;
  whyNumber_ = number;
  sizeKnown_ = nextSizeKnown_ = false;
  sumKnown_ = false;
  asked_.reset();
}

void Knowledge::Deafen(TwinDoubt doubt, int number) {
  // Silence is no better reason than that nothing has ever come.
  if (deaf_ && doubt == TwinDoubt::Silent) doubt = why_;
  Forget(doubt, number);
  deaf_ = true;
  pending_.clear();
}

void Knowledge::Heard() {
  if (!std::exchange(deaf_, false)) return;
  if (why_ == TwinDoubt::NeverAnswered) why_ = TwinDoubt::FromBefore;
  // Who answers waits for no end of a command.
  terminal_.DropCommand();
}

void Knowledge::ForgetMemory() {
  makros_.reset();
  configuration_.reset();
  pending_.clear();
}

bool Knowledge::KnowsCursor() const {
  using sim::CursorKind;
  if (!Knows(Part::CursorKind)) return false;
  switch (terminal_.Display().Cursor()) {
    case CursorKind::Off:
      return true;
    case CursorKind::BlinkingAtText:
    case CursorKind::SteadyAtText:
      return Knows(CursorBlock | kPlace | kCell);
    case CursorKind::BlinkingCross:
    case CursorKind::SteadyCross:
      return Knows(CursorCross | GraphicPoint);
    default:
      return Knows(CursorBlock | GraphicPoint | kCell);
  }
}

void Knowledge::Know(Parts parts) {
  if (!deaf_) unknown_ &= ~parts;
}

void Knowledge::Draws(Parts uses) {
  if (Knows(uses) || !Knows(Picture)) return;
  unknown_ |= Picture;
  why_ = TwinDoubt::UnknownSettings;
  whyParts_ = unknown_ & uses;
}

// ---- what the Terminal does ----

void Knowledge::Does(const sim::CommandRow& row, const Parameters& parameters) {
  ++steps_;
  if (DoesText(row.command, parameters) || DoesGraphic(row.command, parameters)) return;
  switch (row.command) {
    case Command::SetResolution:
      nextSizeKnown_ = !deaf_;
      return;
    case Command::Restart:
      interface_ = terminal_.Interface1();
      return;
    case Command::ResetChecksum:
      sumKnown_ = !deaf_;
      unproven_.reset();
      configurationUnproven_ = false;
      return;
    default:
      break;
  }
  if (row.reply == sim::Reply::Acknowledge) Stores(row, parameters);
  if (row.reply == sim::Reply::Value) Asks(row);
}

bool Knowledge::DoesText(Command command, const Parameters& parameters) {
  switch (command) {
    case Command::DefineCursor: {
      const int kind = parameters.Number(0);
      if (kind < 1 || kind > 6 || parameters.Count() < 2) return true;
      Know(kind == 3 || kind == 4 ? CursorCross : CursorBlock);
      return true;
    }
    case Command::SwitchCursor:
      if (parameters.Number(0) >= 0 && parameters.Number(0) <= 6) Know(Part::CursorKind);
      return true;
    case Command::TextPosition:
      MovesText(parameters);
      return true;
    case Command::TextHome:
      Know(kPlace);
      return true;
    case Command::TextFont:
      if (parameters.Number(0) >= 0 && parameters.Number(0) < DeviceFonts::kCount) Know(TextFont);
      return true;
    case Command::TextAttribute:
      Know(TextAttribute);
      return true;
    case Command::TextMode:
      Know(TextMode);
      return true;
    case Command::TextZoom:
      Know(TextZoom);
      return true;
    default:
      return false;
  }
}

// How far a position can go depends on the cells.
void Knowledge::MovesText(const Parameters& parameters) {
  const PixelMap& pixels = terminal_.Display().Pixels();
  Know(kPlace);
  if (Knows(kCell)) return;
  if (parameters.Number(0) > std::max(1, pixels.Width() / kLargestWidth)) Doubts(Column);
  if (parameters.Number(1) > std::max(1, pixels.Height() / kLargestHeight)) Doubts(Row);
}

bool Knowledge::DoesGraphic(Command command, const Parameters& parameters) {
  switch (command) {
    case Command::Clear:
      Know(Picture | Pen);
      ++beginnings_;
      return true;
    case Command::GraphicPosition:
    case Command::GraphicHome:
      Know(GraphicPoint);
      return true;
    case Command::DrawMode:
      Know(Pen);
      return true;
    case Command::Line:
      Draws(Pen | GraphicPoint);
      Know(GraphicPoint);
      return true;
    case Command::Rectangle:
    case Command::FilledRectangle:
    case Command::Ellipse:
    case Command::FilledEllipse:
      Draws(Pen | GraphicPoint);
      return true;
    case Command::Bitmap:
      Draws(Pen);
      return true;
    case Command::GraphicFont:
      if (parameters.Number(0) >= 0 && parameters.Number(0) < DeviceFonts::kCount) {
        Know(GraphicFont);
      }
      return true;
    case Command::GraphicZoom:
      Know(GraphicZoom);
      return true;
    case Command::GraphicAttribute:
      Know(GraphicAttribute);
      return true;
    default:
      return false;
  }
}

void Knowledge::Prints(unsigned char byte) {
  ++steps_;
  switch (byte) {
    case '\r':
      return Know(Column);
    case '\n':
      if (!Knows(kCell)) Doubts(Row);
      return;
    case '\b':
      if (!Knows(kCell)) Doubts(kPlace);
      return;
    default:
      break;
  }
  if (byte < ' ') return;
  Draws(kPlace | kCell | TextAttribute | TextMode);
  if (!Knows(kCell)) Doubts(kPlace);
  if (!Knows(Column)) Doubts(Row);  // whether the line has ended
}

void Knowledge::PrintsGraphic(unsigned char) {
  ++steps_;
  Draws(Pen | GraphicPoint | kGraphicCell | GraphicAttribute);
  if (!Knows(kGraphicCell)) Doubts(GraphicPoint);
}

void Knowledge::HasRestarted() {
  unknown_ = deaf_ ? Everything : configuration_.value_or(kConfigurationParts);
  sizeKnown_ = nextSizeKnown_ && !deaf_;
  sumKnown_ = !deaf_;
  asked_.reset();
  ++steps_;
  ++beginnings_;
  const sim::InterfaceSettings& now = terminal_.Interface1();
  const bool same =
      now.LineFrame() == interface_.LineFrame() && now.handshake == interface_.handshake;
  if (!same) Deafen(TwinDoubt::OwnLineSetAnew);
}

}  // namespace kelvo

#include <QDropEvent>
#include <QMimeData>
#include <QScrollArea>
#include <algorithm>
#include <utility>

#include "base/guard.h"
#include "graphics/frmGrafik.h"
#include "graphics/painter.h"
#include "graphics/pixel_image.h"
#include "graphics/symbol_panel.h"
#include "graphics/symbols.h"

namespace kelvo {

void frmGrafik::MakeSymbolPanel() {
  const auto render = [this](const DrawingObject& symbol) {
    const Box box = BoundsOf(symbol);
    PixelMap map(std::min(box.Width(), Display->DisplayWidth()),
                 std::min(box.Height(), Display->DisplayHeight()));
    PaintDrawing(map, {symbol}, fonts_, host_.Terminal().blackThreshold);
    return ToImage(map);
  };
  symbols_ = new SymbolPanel(render);
  AddList("dockSymbole", tr("Symbole"), symbols_);
  const auto guarded = [this](const char* routine, auto handler) {
    return [this, routine, handler](auto what) {
      Guarded(person_, routine, [&] { (this->*handler)(what); });
    };
  };
  connect(symbols_, &SymbolPanel::InsertWanted, this,
          [this](const DrawingObject& symbol) { InsertSymbol(symbol, std::nullopt); });
  connect(symbols_, &SymbolPanel::RenameWanted, this,
          guarded("cmdSymbolUmbenennen", &frmGrafik::RenameSymbol));
  connect(symbols_, &SymbolPanel::DeleteWanted, this,
          guarded("cmdSymbolLoeschen", &frmGrafik::DeleteSymbol));
  ShowSymbols();
}

// Records that draw nothing, because another program has changed them, are left out.
void frmGrafik::ShowSymbols() {
  std::vector<SymbolPanel::OwnSymbol> own;
  for (const GraphicsHost::StoredSymbol& stored : host_.Symbols()) {
    auto symbol = SymbolOf(stored.commands, fonts_);
    if (symbol) own.push_back({stored.name, std::move(*symbol), stored.commands});
  }
  symbols_->ShowOwn(std::move(own));
}

// Its middle comes to the place, or near it on the grid; without one to the keyboard's cross, or to
// the middle of what is to be seen, and all of it onto the display.
void frmGrafik::InsertSymbol(const DrawingObject& symbol, std::optional<Point> at) {
  if (tool_->Begun()) tool_->Leave();
  const Box box = BoundsOf(symbol);
  const Point middle = at.value_or(Display->Cross().value_or(VisibleMiddle()));
  Point corner =
      Snapped({middle.x - box.Width() / 2, middle.y - box.Height() / 2}, desk_->GridStep());
  if (!at) corner = OntoDisplay(corner, box);
  Edit([&](Drawing& drawing) { Paste(drawing, {symbol}, corner.x, corner.y); });
  Display->setFocus();  // where keys move it
}

bool frmGrafik::DropSymbol(const QDropEvent& event) {
  const QMimeData& mime = *event.mimeData();
  if (!mime.hasFormat(SymbolList::MimeType())) return false;
  const QPoint at = event.position().toPoint();
  const auto symbol = SymbolOf(mime.data(SymbolList::MimeType()).toStdString(), fonts_);
  const bool there = scroll_->rect().contains(scroll_->mapFrom(this, at));
  if (symbol && there) {
    InsertSymbol(*symbol, Display->ToDrawing(Display->mapFrom(this, at)));
  }
  return true;
}

// A name that is there already is replaced only after a question.
std::optional<std::string> frmGrafik::AskSymbolName(const std::string& proposed) {
  const auto typed = person_.Input("Name des Symbols :", proposed);
  if (!typed) return std::nullopt;
  std::string name = QString::fromStdString(*typed).trimmed().toStdString();
  if (name.empty() || name == proposed) return name;
  const auto stored = host_.Symbols();
  const bool known =
      std::any_of(stored.begin(), stored.end(), [&](const auto& one) { return one.name == name; });
  if (known &&
      !person_.Ask("Das Symbol '" + name + "' gibt es schon. Überschreiben ?", Icon::Exclamation)) {
    return std::nullopt;
  }
  return name;
}

void frmGrafik::mnuGrafikSymbolMerken_Click() {
  const Translation commands =
      SymbolCommands(CopySelected(document_.Current()), host_.Terminal().blackThreshold);
  for (const std::string& message : commands.messages) person_.Message(message);
  if (commands.failed) return;
  if (commands.text.empty())
    return person_.Message("Was ausgewählt ist, wird nicht gesendet und kann kein Symbol werden.");
  const auto name = AskSymbolName("");
  if (!name || name->empty()) return;
  host_.StoreSymbol(*name, commands.text);
  ShowSymbols();
  symbols_->Choose(*name);
}

void frmGrafik::RenameSymbol(const std::string& name) {
  const auto changed = AskSymbolName(name);
  if (!changed || changed->empty() || *changed == name) return;
  host_.RenameSymbol(name, *changed);
  ShowSymbols();
  symbols_->Choose(*changed);
}

void frmGrafik::DeleteSymbol(const std::string& name) {
  if (!person_.Ask("Symbol '" + name + "' löschen ?", Icon::Exclamation)) return;
  host_.DeleteSymbol(name);
  ShowSymbols();
}

}  // namespace kelvo

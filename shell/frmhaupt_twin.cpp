#include <QAction>
#include <QDockWidget>
#include <QMenu>

#include "shell/frmhaupt.h"
#include "shell/head_strip.h"
#include "store/display_size.h"
#include "twin_page/twin_panel.h"
#include "twin_page/twin_wall.h"
#include "widgets/form.h"

// What the main window shows of the Terminals' displays.

namespace kelvo {
namespace {

constexpr int kMakros = 256;

KnownMemory MakrosIn(const Inventory& inventory) {
  KnownMemory known;
  for (int number = 0; number < kMakros; ++number) {
    const ItemKey key{ItemKind::Macro, number};
    const Held* const held = inventory.At(key);
    if (held != nullptr && inventory.Trusts(*held)) {
      known.makros[number] = ItemContent(held->item);
    } else if (held == nullptr && inventory.KnownEmpty(key)) {
      known.makros[number] = std::nullopt;
    }
  }
  return known;
}

}  // namespace

// As the operator has noted it on the page Status, whoever's display it is.
Twins::Services frmhaupt::TwinServices() {
  const auto size = [this] { return DisplaySizeIn(data_.Default); };
  const auto memory = [this](std::optional<int> address) {
    return MakrosIn(journal_.Of({OpenDevice(), address.value_or(kUnknownAddress)}));
  };
  return {.fonts = fonts_, .size = size, .memory = memory};
}

void frmhaupt::MakeTwins() {
  const auto names = [this](int address) { return head_->NameOf(address); };
  twin_ = new TwinPanel(
      twins_, names, [this] { return AbsentAddress(); },
      [this] { return lineState_.Meant().has_value(); });
  dckAnzeige = Named(new QDockWidget(tr("Anzeige (Nachbildung)"), this), "dckAnzeige");
  dckAnzeige->setWidget(twin_);
  // There it leaves the pages their width on a small screen, too.
  addDockWidget(Qt::BottomDockWidgetArea, dckAnzeige);
  dckAnzeige->hide();
  wall_ = new TwinWall(
      twins_, names, [this] { return StoredAddresses(data_.ctlDovuData); }, this);
  connect(wall_, &TwinWall::AddressChosen, this,
          [this](int address) { head_->SetAddress(address); });
  twins_.SetListener([this] {
    twin_->Changed();
    wall_->Changed();
  });
}

// As the head says it.
std::optional<int> frmhaupt::AbsentAddress() const {
  return lineState_.Listens() == Listening::Nobody ? lineState_.Address() : std::nullopt;
}

// What a preview can begin on.
PresentTerminal frmhaupt::Present() {
  twins_.CatchUp();
  const auto absent = AbsentAddress();
  const bool nobody = absent && absent == twins_.PresentAddress();
  const Twin* const twin = nobody ? nullptr : twins_.Present();
  return twin == nullptr ? PresentTerminal() : PresentTerminal{&twin->terminal, twin->Certain()};
}

void frmhaupt::AddTwinActions(QMenu* view) {
  QAction* const dock = Named(dckAnzeige->toggleViewAction(), "mnuAnsichtAnzeige");
  dock->setText(tr("&Anzeige (Nachbildung)"));
  dock->setShortcut(QKeySequence(tr("Ctrl+Shift+A")));
  view->addAction(dock);
  AddAction(view, "mnuAnsichtAnzeigen", tr("Anzeigen a&ller Terminals"),
            QKeySequence(tr("Ctrl+Shift+L")), &frmhaupt::mnuAnsichtAnzeigen_Click);
}

void frmhaupt::mnuAnsichtAnzeigen_Click() { wall_->Present(); }

}  // namespace kelvo

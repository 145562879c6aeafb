#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QScrollArea>
#include <algorithm>

#include "graphics/frmGrafik.h"
#include "graphics/painter.h"
#include "graphics/pixel_image.h"
#include "graphics/points.h"
#include "graphics/transforms.h"
#include "graphics/wmf.h"

namespace kelvo {

namespace {

const QString kDrawingMimeType = QStringLiteral("application/x-kelvo-drawing");
constexpr int kPasteStep = 4;  // pixels, so that a copy does not hide its original

}  // namespace

void frmGrafik::Edit(const std::function<void(Drawing&)>& change, const std::string& mergeKey) {
  typing_->End();
  Drawing drawing = document_.Current();
  change(drawing);
  if (drawing == document_.Current()) return;
  document_.Commit(std::move(drawing), mergeKey);
}

void frmGrafik::Reorder(Order order) {
  Edit([=](Drawing& drawing) { ReorderSelected(drawing, order); });
}

void frmGrafik::Align(Alignment alignment) {
  const Box display{0, 0, Display->DisplayWidth() - 1, Display->DisplayHeight() - 1};
  Edit([&](Drawing& drawing) { AlignSelected(drawing, alignment, display); });
}

void frmGrafik::Distribute(Axis axis) {
  Edit([=](Drawing& drawing) { DistributeSelected(drawing, axis); });
}

void frmGrafik::TakeTool(ToolKind kind) {
  typing_->End();
  if (tool_) tool_->Leave();
  tool_ = MakeTool(kind, *desk_);
  curve_->ShowFor(kind);
  Display->SetTool(tool_.get(), kind == ToolKind::Select ? Qt::ArrowCursor : Qt::CrossCursor);
}

void frmGrafik::OpenSelected() {
  LeaveTool();
  tool_->Open();
}

// What the context menu is opened on is what it acts on.
void frmGrafik::SelectUnder(Point at) {
  const auto hit = ObjectAt(document_.Current(), at, Display->Tolerance());
  if (!hit || document_.Current()[*hit].selected) return;
  Edit([&](Drawing& drawing) {
    SelectAll(drawing, false);
    drawing[*hit].selected = true;
  });
}

void frmGrafik::MoveSelection(int dx, int dy) {
  const auto lines = OnlyWithPoints(document_.Current());
  if (lines && document_.Picked()) return MovePoint(*lines, dx, dy);
  Edit([=](Drawing& drawing) { MoveSelected(drawing, dx, dy); }, "move");
}

void frmGrafik::TypeBox(const Box& box, const std::string& mergeKey) {
  Edit([&](Drawing& drawing) { StretchSelected(drawing, SelectionBounds(drawing), box, fonts_); },
       mergeKey);
}

void frmGrafik::ChoosePenMode(PenMode penMode) {
  Edit([=](Drawing& drawing) { SetPenMode(drawing, penMode); });
}

void frmGrafik::ChooseFilled(bool filled) {
  Edit([=](Drawing& drawing) { SetFilled(drawing, filled); });
}

void frmGrafik::ChooseText(const TextChange& change) {
  if (typing_->Active()) return typing_->Change(change);
  Edit([&](Drawing& drawing) { ChangeTexts(drawing, change, fonts_); }, "text");
}

void frmGrafik::DeleteSelection() { Edit(DeleteSelected); }

// While a polyline grows its last point goes.
void frmGrafik::mnuGrafikRueckgaengig_Click() {
  if (!tool_->StepBack()) document_.Undo();
}

void frmGrafik::StepBack() { tool_->StepBack(); }

void frmGrafik::LeaveTool() {
  if (!toolAuswahl->isChecked()) toolAuswahl->trigger();
}

void frmGrafik::MakePicture(void (*make)(Drawing&, const PixelView&)) {
  const PixelView view{Display->DisplayWidth(), Display->DisplayHeight(), fonts_,
                       Terminal().blackThreshold};
  Edit([&](Drawing& drawing) { make(drawing, view); });
}

// From object to object, the lowest first.
void frmGrafik::WalkObjects(bool forward) {
  const Drawing& drawing = document_.Current();
  const auto selected = std::find_if(drawing.begin(), drawing.end(),
                                     [](const DrawingObject& object) { return object.selected; });
  const auto count = static_cast<std::ptrdiff_t>(drawing.size());
  const std::ptrdiff_t from =
      selected == drawing.end() ? (forward ? -1 : count) : selected - drawing.begin();
  const std::ptrdiff_t to = from + (forward ? 1 : -1);
  Edit([&](Drawing& changed) {
    SelectAll(changed, false);
    if (to >= 0 && to < count) changed[static_cast<std::size_t>(to)].selected = true;
  });
}

// As large as the view has room for.
void frmGrafik::ShowSelection() {
  if (!AnySelected(document_.Current())) return;
  const Box box = SelectionBounds(document_.Current());
  const QSize room = scroll_->viewport()->size();
  SetZoom(std::min(room.width() / (box.Width() + 2), room.height() / (box.Height() + 2)), {});
  const QPoint middle = Display->ToWidget({(box.left + box.right) / 2, (box.bottom + box.top) / 2});
  scroll_->ensureVisible(middle.x(), middle.y(), room.width() / 2, room.height() / 2);
}

void frmGrafik::mnuGrafikWiederholen_Click() { document_.Redo(); }

void frmGrafik::mnuGrafikAusschneiden_Click() {
  mnuGrafikKopieren_Click();
  DeleteSelection();
  pasteCount_ = -1;  // pasted at once it lands where it was
}

// Other programs get the selection as a picture of the Terminal's pixels.
void frmGrafik::mnuGrafikKopieren_Click() {
  std::vector<DrawingObject> objects = CopySelected(document_.Current());
  SelectAll(objects, false);
  const QSize size = DisplaySize();
  const WmfFile file = ToWmf(objects);
  if (!file.error.empty()) {
    person_.Message(file.error, Icon::Exclamation);
    return;
  }
  PixelMap map(size.width(), size.height());
  PaintDrawing(map, objects, fonts_, host_.Terminal().blackThreshold);
  const Box box = BoundsOf(objects);
  const QRect visible =
      QRect(box.left, size.height() - 1 - box.top, box.Width(), box.Height()) & QRect({}, size);
  auto* copy = new QMimeData;
  copy->setData(kDrawingMimeType, QByteArray::fromStdString(file.bytes));
  if (!visible.isEmpty()) copy->setImageData(ToImage(map).copy(visible));
  QApplication::clipboard()->setMimeData(copy);
  pasteCount_ = 0;
}

void frmGrafik::mnuGrafikEinfuegen_Click() {
  const QMimeData* const held = QApplication::clipboard()->mimeData();
  if (held == nullptr) return;
  if (!held->hasFormat(kDrawingMimeType)) {
    if (!InsertMime(*held, std::nullopt)) person_.Beep();
    return;
  }
  const std::string bytes = held->data(kDrawingMimeType).toStdString();
  WmfDrawing pasted = FromWmf(bytes);
  if (!pasted.error.empty()) return person_.Message(pasted.error, Icon::Exclamation);
  const int shift = ++pasteCount_ * kPasteStep;
  Edit([&](Drawing& drawing) { Paste(drawing, std::move(pasted.drawing), shift, -shift); });
}

void frmGrafik::mnuGrafikDuplizieren_Click() {
  Edit([](Drawing& drawing) { Paste(drawing, CopySelected(drawing), kPasteStep, -kPasteStep); });
}

void frmGrafik::mnuGrafikLoeschen_Click() {
  CanRemovePoint() ? mnuGrafikPunktEntfernen_Click() : DeleteSelection();
}

void frmGrafik::mnuGrafikAlles_Click() {
  Edit([](Drawing& drawing) { SelectAll(drawing, true); });
}

void frmGrafik::mnuGrafikGruppieren_Click() { Edit(GroupSelected); }

void frmGrafik::mnuGrafikAufloesen_Click() { Edit(UngroupSelected); }

void frmGrafik::mnuGrafikUmwandeln_Click() { Edit(OutlineSelected); }

}  // namespace kelvo

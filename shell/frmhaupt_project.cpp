#include <QMenu>

#include "base/guard.h"
#include "project_page/project_desk.h"
#include "shell/drawing_desk.h"
#include "shell/frmhaupt.h"
#include "store/display_size.h"

// The operator's work, out of the database and in.

namespace kelvo {

void frmhaupt::MakeProjectDesk(QMenu* file) {
  const auto display = [this] { return DisplaySizeIn(data_.Default); };
  projects_ = new ProjectDesk({data_.database, journal_, outside_.person, fonts_, display}, this);
  connect(projects_, &ProjectDesk::Changed, this, &frmhaupt::TakeImported);
  connect(projects_, &ProjectDesk::Finished, this,
          [this](const QString& text) { chronicle_.Note(text.toStdString(), false); });
  connect(projects_, &ProjectDesk::Opened, this,
          [this](QWidget* dialog) { memory_.Restore(*dialog); });
  connect(projects_, &ProjectDesk::Closed, this,
          [this](QWidget* dialog) { memory_.Remember(*dialog); });
  AddAction(file, "mnuDateiExportieren", tr("E&xportieren …"), {},
            &frmhaupt::mnuDateiExportieren_Click);
  AddAction(file, "mnuDateiImportieren", tr("&Importieren …"), {},
            &frmhaupt::mnuDateiImportieren_Click);
}

void frmhaupt::mnuDateiExportieren_Click() { projects_->Export(); }

void frmhaupt::mnuDateiImportieren_Click() { projects_->Import(); }

// Pages that are not in front read their records anew when they are shown. Nothing is sent: that
// the drawing goes out after each change counts from the next time on that its page is shown, and
// the editor, whose drawing another display would clear, keeps its size until the next start.
void frmhaupt::TakeImported() {
  Guarded(outside_.person, "mnuDateiImportieren", [this] {
    data_.Optionen.Refresh();
    data_.Default.Refresh();
    ReadOptions();
    if (!SofortSenden_) desk_->Editor().SetAutomaticSend(false);
    desk_->Editor().OptionsChanged();
    desk_->Editor().ShowSymbols();
    terminals_->Refresh();
    RefreshPage();
  });
}

}  // namespace kelvo

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QMessageBox>
#include <QTimer>

#include "shell/frmhaupt.h"
#include "shell/live_world.h"
#include "tests/fakes/full_disc.h"
#include "tests/fakes/temporary_folder.h"

// The first start, where no database can be put for the operator.

namespace kelvo {
namespace {

using testing_world::ReadFile;

/// Starts and ends; what the boxes have said.
QString BoxesOfAStart(const std::string& data) {
  LiveWorld world;
  const auto window = world.MakeMainWindow({.program = KELVO_PROGRAM_DIR, .data = data});
  QString said;
  QTimer reader;
  QObject::connect(&reader, &QTimer::timeout, [&said] {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr) return;
    said += box->text() + u'|';
    box->reject();
  });
  reader.start(1);
  bool loaded = false;
  QObject::connect(window.get(), &frmhaupt::Loaded, [&loaded] { loaded = true; });
  window->show();
  while (!loaded) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  EXPECT_TRUE(window->isVisible());
  EXPECT_GT(window->findChild<QComboBox*>(QStringLiteral("cboMakro"))->count(), 0);
  window->EndNow();
  return said;
}

TEST(FirstStart, WithoutRoomOrFolderItShowsWhatIsDeliveredAndSaysSo) {
  const testing_world::TemporaryFolder folder;
  const std::string delivered = ReadFile(KELVO_PROGRAM_DIR "/kelvo.mdb");
  std::ofstream(folder.Path("file")) << "no folder";
  const struct {
    std::string data;
    const char* said;
  } cases[] = {{folder.Path("full"), "kann nicht aus"},
               {folder.Path("file/data"), "kann nicht angelegt werden"}};
  for (const auto& [data, part] : cases) {
    QString said;
    {
      const testing_world::FullDisc disc(50);
      said = BoxesOfAStart(data);
    }
    EXPECT_TRUE(said.contains(QString::fromUtf8(part))) << said.toStdString();
    EXPECT_TRUE(said.contains(QStringLiteral("Gezeigt wird, was mitgeliefert ist.")));
    EXPECT_FALSE(std::filesystem::exists(data + "/kelvo.mdb"));
  }
  EXPECT_EQ(ReadFile(KELVO_PROGRAM_DIR "/kelvo.mdb"), delivered);
  const QString later = BoxesOfAStart(folder.Path("full"));
  EXPECT_FALSE(later.contains(QStringLiteral("Gezeigt wird"))) << later.toStdString();
  EXPECT_TRUE(std::filesystem::exists(folder.Path("full/kelvo.mdb")));
}

}  // namespace
}  // namespace kelvo

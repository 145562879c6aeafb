#include "widgets/window_size.h"

#include <gtest/gtest.h>

#include <QDialog>

namespace kelvo {
namespace {

TEST(WindowSize, APlaceThatWasStoredIsTakenAsItIsAndThenGoesWithTheOwner) {
  QWidget owner;
  owner.setGeometry(100, 50, 400, 300);
  owner.show();
  QDialog dialog(&owner);
  KeepPlace(&dialog);
  dialog.setGeometry(180, 120, 200, 100);  // as the program's memory of windows does it
  dialog.show();
  EXPECT_EQ(dialog.geometry().topLeft(), QPoint(180, 120));
  dialog.hide();
  owner.move(owner.pos() + QPoint(30, 20));
  dialog.show();
  EXPECT_EQ(dialog.geometry().topLeft(), QPoint(210, 140));
}

}  // namespace
}  // namespace kelvo

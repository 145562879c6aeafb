#include <gtest/gtest.h>

#include <QApplication>

// Every window test runs on real widgets; the platform is offscreen (see kelvo_test).
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}

#include "widgets/column_fit.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTableView>

#include "widgets/tail_delegate.h"

namespace kelvo {
namespace {

class ColumnFitTest : public testing::Test {
 protected:
  ColumnFitTest() {
    for (const char* text :
         {"Halle 3 Presse links hinten, Adresse 5", "46", "64,4096 (23.11.2026)"})
      row << new QStandardItem(text);
    model.setHorizontalHeaderLabels({"Terminal", "Zeichen", "Gelesen"});
    model.appendRow(row);
    view.setModel(&model);
    view.verticalHeader()->hide();
    view.setTabKeyNavigation(false);
    new ColumnFit(&view, view.horizontalHeader(), {{0, kAddress}, {2, "64,4096"}});
    view.show();
  }
  // Whether a scroll bar is needed when the window is that wide.
  bool Scrolls(int width) {
    view.resize(width, 200);
    QApplication::processEvents();
    return view.horizontalScrollBar()->maximum() > 0;
  }
  int Advance(const char* text) const { return view.fontMetrics().horizontalAdvance(text); }

  static constexpr char kAddress[] = "…, Adresse 5";
  QList<QStandardItem*> row;
  QStandardItemModel model;
  QTableView view;
};

TEST_F(ColumnFitTest, WhatMustBeReadIsKeptAndScrolledToWhereItHasNoRoom) {
  EXPECT_FALSE(Scrolls(700));
  const int value = view.columnWidth(2);
  EXPECT_GE(view.columnWidth(0), Advance("Halle 3 Presse links hinten, Adresse 5"));
  EXPECT_GT(value, 700 - 400) << "the last one has what is left";
  const int whole = Advance("64,4096 (23.11.2026)");
  EXPECT_FALSE(Scrolls(Advance(kAddress) + Advance("Zeichen") + whole + 60));
  EXPECT_LT(view.columnWidth(0), Advance("Halle 3 Presse links"));
  EXPECT_GE(view.columnWidth(2), whole) << "the first one yields first";
  EXPECT_TRUE(Scrolls(120));
  EXPECT_GE(view.columnWidth(0), Advance(kAddress));
  EXPECT_GE(view.columnWidth(2), Advance("64,4096"));
  view.setColumnWidth(1, 200);
  EXPECT_TRUE(Scrolls(150));
  EXPECT_EQ(view.columnWidth(1), 200) << "as the operator has set it";
}

TEST_F(ColumnFitTest, OfATerminalTheNameIsCutAndNeverTheAddress) {
  const QString text = QStringLiteral("Halle 3, links, Adresse 57");
  const QFontMetrics metrics = view.fontMetrics();
  EXPECT_EQ(TailDelegate::Shortened(text, metrics, 1000), text);
  for (int width = Advance("…, Adresse 57") + 2; width < Advance("Halle 3, links, Adresse 57");
       ++width) {
    const QString drawn = TailDelegate::Shortened(text, metrics, width);
    EXPECT_TRUE(drawn.endsWith("…, Adresse 57")) << width << drawn.toStdString();
    EXPECT_LE(metrics.horizontalAdvance(drawn), width);
  }
  EXPECT_TRUE(TailDelegate::Shortened(text, metrics, Advance("…se 57") + 2).endsWith(" 57"));
}

}  // namespace
}  // namespace kelvo

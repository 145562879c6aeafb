#include <QDockWidget>
#include <QMimeData>
#include <QSpinBox>

#include "graphics/object_list.h"
#include "graphics/object_names.h"
#include "graphics/wmf.h"
#include "tests/drawing_samples.h"
#include "tests/grafik_desk.h"
#include "widgets/files.h"

namespace kelvo {
namespace {

const Counting kUpward;
const Counting kLikeCommands(Counting::Way::LikeCommands, 128);

TEST(Counting, GoesBothWaysAndNamesBoxesByTheirFirstCorner) {
  const Box box{8, 111, 15, 118};
  EXPECT_EQ(kUpward.FirstCorner(box), (Point{8, 111}));
  EXPECT_EQ(kLikeCommands.FirstCorner(box), (Point{8, 9}));
  EXPECT_EQ(kLikeCommands.LastCorner(box), (Point{15, 16}));
  for (const Counting& counting : {kUpward, kLikeCommands}) {
    EXPECT_EQ(counting.BoxAt(counting.FirstCorner(box), 8, 8), box);
    EXPECT_EQ(counting.Stored(counting.Shown({3, -5})), (Point{3, -5}));
  }
}

TEST(ObjectNames, SayKindAndPlace) {
  const struct {
    DrawingObject object;
    const char* upward;
    const char* likeCommands;
  } rows[] = {
      {Boxed(Kind::Rectangle, {60, 40}, {10, 20}), "Rechteck 10,20 – 60,40",
       "Rechteck 10,87 – 60,107"},
      {Boxed(Kind::Ellipse, {60, 40}, {10, 20}, true), "Ellipse 10,20 – 60,40",
       "Ellipse 10,87 – 60,107"},
      {WithVertices(Kind::Line, {{9, 1}, {2, 30}}), "Linie 9,1 – 2,30", "Linie 9,126 – 2,97"},
      {WithVertices(Kind::Line, {{9, 1}, {9, 1}}), "Punkt 9,1", "Punkt 9,126"},
      {WithVertices(Kind::Polyline, {{0, 0}, {5, 9}, {3, 3}}), "Linienzug (3) 0,0 – 5,9",
       "Linienzug (3) 0,118 – 5,127"},
      {TextAt({0, 119}, {}, "H\xe4lle"), "Text „Hälle“ 0,112", "Text „Hälle“ 0,8"},
      {PictureAt({4, 127}, Picture(2, 1, {0, 0})), "Bild 2 x 1 4,127", "Bild 2 x 1 4,0"},
      {GroupOf({Boxed(Kind::Rectangle, {6, 4}, {1, 2})}), "Gruppe (1) 1,2 – 6,4",
       "Gruppe (1) 1,123 – 6,125"}};
  for (const auto& row : rows) {
    EXPECT_EQ(NameOf(row.object, kUpward), row.upward);
    EXPECT_EQ(NameOf(row.object, kLikeCommands), row.likeCommands);
  }
}

class GrafikLists : public Grafik {
 protected:
  void Load(const Drawing& drawing) {
    person.file = folder.filePath(QStringLiteral("liste.wmf")).toStdString();
    ASSERT_FALSE(WriteFile(*person.file, WriteWmf(drawing, 240, 128).bytes));
    person.decisions = {Decision::Discard};
    Do("mnuGrafikLaden");
    if (!List()->isVisible()) Do("mnuGrafikObjekte");
    QApplication::processEvents();
  }
  ObjectList* List() const { return Find<ObjectList>("lstObjekte"); }
  // What the rows say behind the objects' places.
  std::string Marks() const {
    QStringList marks;
    for (int row = 0; row < List()->model()->rowCount(); ++row) {
      marks << List()->model()->index(row, 0).data().toString().section(" · ", 1);
    }
    return marks.join('|').toStdString();
  }
  std::string SelectedInList() const {
    QApplication::processEvents();
    std::string rows;
    for (int row = 0; row < List()->model()->rowCount(); ++row) {
      rows += List()->selectionModel()->isSelected(List()->model()->index(row, 0)) ? '1' : '0';
    }
    return rows;
  }
  void ClickRow(int row, Qt::KeyboardModifiers keys = {}) const {
    const QRect place = List()->visualRect(List()->model()->index(row, 0));
    QTest::mouseClick(List()->viewport(), Qt::LeftButton, keys, place.center());
  }
  static DrawingObject Block(int x) { return Boxed(Kind::Rectangle, {x + 9, 19}, {x, 10}, true); }
};

TEST_F(GrafikLists, WhatIsSelectedIsSelectedInBothAndOrderedByDropsAndKeys) {
  Load({Block(10), Block(30), Block(50), Block(70)});
  const auto lefts = [&] {
    std::vector<int> all;
    for (const DrawingObject& object : Objects()) all.push_back(BoundsOf(object).left);
    return all;
  };
  Click({35, 15});
  EXPECT_EQ(SelectedInList(), "0100");
  ClickRow(2);
  ClickRow(0, Qt::ControlModifier);
  EXPECT_TRUE(Objects()[0].selected && !Objects()[1].selected && Objects()[2].selected);
  EXPECT_EQ(SelectedInList(), "1010");
  // Dropped in front of the last one, and taken back as one step.
  QAbstractItemModel& model = *List()->model();
  const std::unique_ptr<QMimeData> held(
      model.mimeData(List()->selectionModel()->selectedIndexes()));
  EXPECT_TRUE(model.dropMimeData(held.get(), Qt::MoveAction, 3, 0, {}));
  EXPECT_EQ(lefts(), (std::vector<int>{30, 10, 50, 70}));
  EXPECT_EQ(SelectedInList(), "0110");
  Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(lefts(), (std::vector<int>{10, 30, 50, 70}));
  // The menus' keys work here, too.
  List()->setFocus();
  ClickRow(1);
  QTest::keyClick(List(), Qt::Key_PageUp, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(lefts(), (std::vector<int>{10, 50, 70, 30}));
  EXPECT_EQ(SelectedInList(), "0001");
  QTest::keyClick(List(), Qt::Key_Delete);
  EXPECT_EQ(lefts(), (std::vector<int>{10, 50, 70}));
  EXPECT_EQ(SelectedInList(), "000");
  // A line that has been begun is not lost.
  Do("toolLinienzug");
  Click({100, 50});
  Click({120, 60});
  ClickRow(0);
  EXPECT_EQ(SelectedInList(), "1000");
  EXPECT_EQ(Objects().at(3).vertices.size(), 2U);
}

TEST_F(GrafikLists, EnterOpensAndTheListShowsTheMembers) {
  Load({Block(10), GroupOf({Block(30), TextAt({60, 60}, {}, "Ab"), Block(50)})});
  List()->setFocus();
  ClickRow(1);
  QTest::keyClick(List(), Qt::Key_Return);
  EXPECT_EQ(SelectedInList(), "000");
  ClickRow(1);
  QTest::keyClick(List(), Qt::Key_Return);
  auto& typing = *Find<TextTyping>("txtZeichnungText");
  ASSERT_TRUE(typing.Active());
  QTest::keyClicks(&typing, "c");
  ClickRow(2);
  QTest::keyClick(List(), Qt::Key_Escape);
  EXPECT_EQ(Objects()[1].members[1].text, "Abc");
  EXPECT_EQ(SelectedInList(), "01");
}

TEST_F(GrafikLists, OnlyWhatChangesSomethingIsOffered) {
  const auto offered = [this](int objects) {
    Load(std::vector<DrawingObject>(static_cast<std::size_t>(objects), Block(10)));
    ClickRow(0);
    const bool above = Find<QAction>("mnuGrafikHoeher")->isEnabled();
    Do("mnuGrafikAlles");
    EXPECT_FALSE(Find<QAction>("mnuGrafikVorn")->isEnabled()) << "nothing else is there";
    return std::pair(above, Find<QAction>("mnuGrafikVerteilenX")->isEnabled());
  };
  EXPECT_EQ(offered(1), std::pair(false, false));
  EXPECT_EQ(offered(2), std::pair(true, false));
  EXPECT_EQ(offered(3), std::pair(true, true));
}

TEST_F(GrafikLists, StepsOfOneFieldAreTakenBackTogetherAndTypedNumbersOneByOne) {
  Load({Block(10)});
  ClickRow(0);
  auto* const x = Find<QSpinBox>("txtPosX");
  const int before = x->value();
  for (int i = 0; i < 3; ++i) x->stepUp();
  x->setValue(before + 40);
  Find<QSpinBox>("txtBreite")->stepUp();
  Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(x->value(), before + 40);
  Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(x->value(), before + 3);
  Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(x->value(), before);
}

TEST_F(GrafikLists, WhatCannotBeSeenIsMarked) {
  const DrawingObject frame = Boxed(Kind::Rectangle, {9, 19}, {0, 0});
  Load({Block(10), frame, Erasing(Block(10)), Boxed(Kind::Rectangle, {9, 18}, {0, 0}, true),
        Boxed(Kind::Rectangle, {320, 9}, {310, 0}),
        WithVertices(Kind::Vertices, {{1, 1}, {9, 9}})});
  const auto settled = [&](const std::string& marks) {
    return QTest::qWaitFor([&] { return Marks() == marks; });
  };
  EXPECT_TRUE(settled("verdeckt||löscht||nicht auf der Anzeige|wird nicht gesendet")) << Marks();
  // The frame's uppermost row is the last that is seen of it.
  ClickRow(3);
  Do("mnuGrafikHoeher");
  Find<QSpinBox>("txtHoehe")->setValue(20);
  EXPECT_TRUE(settled("verdeckt|verdeckt|löscht|nicht auf der Anzeige||wird nicht gesendet"))
      << Marks();
  // Members are covered by what lies above their group.
  Load({GroupOf({Block(10), Block(30)}), Block(10)});
  ClickRow(0);
  QTest::keyClick(List(), Qt::Key_Return);
  EXPECT_TRUE(settled("verdeckt|")) << Marks();
}

TEST_F(GrafikLists, TheListStandsWhereItWasLeft) {
  const bool before = Find<QDockWidget>("dockObjekte")->isVisible();
  Do("mnuGrafikObjekte");
  window->hide();
  Start();
  EXPECT_NE(Find<QDockWidget>("dockObjekte")->isVisible(), before);
}

}  // namespace
}  // namespace kelvo

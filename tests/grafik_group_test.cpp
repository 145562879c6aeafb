#include <QLabel>
#include <QSpinBox>

#include "graphics/text_typing.h"
#include "tests/drawing_samples.h"
#include "tests/grafik_desk.h"
#include "widgets/files.h"

namespace kelvo {
namespace {

// A box, and a group of a box and a group of a line and a text, which lie apart.
class GrafikGroups : public Grafik {
 protected:
  void SetUp() override {
    const Drawing drawing = {Boxed(Kind::Rectangle, {30, 30}, {10, 10}, true),
                             GroupOf({Boxed(Kind::Rectangle, {60, 30}, {40, 10}, true),
                                      GroupOf({WithVertices(Kind::Line, {{80, 10}, {100, 30}}),
                                               MakeText({80, 60}, {}, "Ab", TestFonts())})})};
    person.file = folder.filePath(QStringLiteral("gruppen.wmf")).toStdString();
    ASSERT_FALSE(WriteFile(*person.file, WriteWmf(drawing, 240, 128).bytes));
    Do("mnuGrafikLaden");
  }
  void DoubleClick(Point at) {
    Click(at);
    QTest::mouseDClick(Canvas(), Qt::LeftButton, {}, Canvas()->ToWidget(at));
  }
  bool InGroup() const { return Find<QLabel>("lblHinweis")->text().contains("In der Gruppe"); }
  const DrawingObject& Outer() const { return Objects().at(1); }
  const DrawingObject& Inner() const { return Outer().members.at(1); }
};

TEST_F(GrafikGroups, MembersAreEditedInTheirPlaceAndUndoStaysThere) {
  DoubleClick({50, 20});
  EXPECT_TRUE(InGroup());
  Key(Qt::Key_Right);
  Key(Qt::Key_Right);
  Drag({95, 25}, {97, 27});  // the inner group, whole
  Find<QAbstractButton>("optLoeschen")->click();
  EXPECT_EQ(Objects()[0], Boxed(Kind::Rectangle, {30, 30}, {10, 10}, true));
  EXPECT_EQ(BoundsOf(Outer().members[0]), (Box{42, 10, 62, 30}));
  EXPECT_EQ(Inner().members[0].vertices, (std::vector<Point>{{82, 12}, {102, 32}}));
  EXPECT_EQ(Inner().members[0].penMode, PenMode::Erase);
  EXPECT_EQ(Outer().members[0].penMode, PenMode::Draw);
  // Two of three steps back, and the group is still open; what is around it is out of reach.
  Do("mnuGrafikRueckgaengig");
  Do("mnuGrafikRueckgaengig");
  EXPECT_TRUE(InGroup());
  EXPECT_EQ(Inner().members[0].vertices[0], (Point{80, 10}));
  EXPECT_EQ(BoundsOf(Outer().members[0]).left, 42);
  Do("mnuGrafikAlles");
  Key(Qt::Key_Up);
  EXPECT_EQ(BoundsOf(Objects()[0]).bottom, 10);
  EXPECT_NE(window->CreatePic().find("\x1bGfR 10, 117;"), std::string::npos) << "all of it is sent";
  Key(Qt::Key_Escape);
  EXPECT_FALSE(InGroup());
  EXPECT_TRUE(Outer().selected);
  EXPECT_FALSE(Outer().members[0].selected);
  EXPECT_EQ(SelectedCount(Objects()), 1U);
}

TEST_F(GrafikGroups, GroupsAreEnteredAsDeepAsTheyGoAndTextsTypedThere) {
  DoubleClick({90, 20});
  DoubleClick({90, 20});
  DoubleClick({87, 55});
  auto& typing = *Find<TextTyping>("txtZeichnungText");
  ASSERT_TRUE(typing.Active());
  QTest::keyClicks(&typing, "x");
  Key(Qt::Key_F2);
  EXPECT_EQ(Inner().members[1].text, "Axb");
  Click({20, 20});  // beside both
  EXPECT_FALSE(InGroup());
  EXPECT_TRUE(Objects()[0].selected);
  EXPECT_EQ(SelectedCount(Objects()), 1U);
  // By keys alone, and a group without members is none.
  Key(Qt::Key_Tab);
  Key(Qt::Key_Return);
  Key(Qt::Key_Tab);
  Key(Qt::Key_Tab);
  Key(Qt::Key_F2);
  Do("mnuGrafikAlles");
  Do("mnuGrafikLoeschen");
  EXPECT_TRUE(InGroup());
  EXPECT_EQ(Outer().members.size(), 1U);
  Do("mnuGrafikAlles");
  Do("mnuGrafikLoeschen");
  EXPECT_FALSE(InGroup());
  EXPECT_EQ(Objects().size(), 1U);
  for (int i = 0; i < 3; ++i) Do("mnuGrafikRueckgaengig");
  EXPECT_EQ(Inner().members[1].text, "Ab");
}

TEST_F(GrafikGroups, ChangesFromElsewhereLeaveTheGroup) {
  const std::function<void()> rows[] = {[&] { window->Clear(); },
                                        [&] { Do("mnuGrafikLaden"); },
                                        [&] { window->SetDisplaySize(128, 64); },
                                        [&] { Do("mnuGrafikGruppeVerlassen"); },
                                        [&] {
                                          for (int i = 0; i < 2; ++i) Do("mnuGrafikRueckgaengig");
                                        },
                                        [&] {
                                          DoubleClick({70, 25});
                                        },
                                        [&] {
                                          Click({200, 100});
                                        }};
  for (const auto& happens : rows) {
    SCOPED_TRACE(&happens - rows);
    Start();
    SetUp();
    Click({20, 20});
    Key(Qt::Key_Up);
    Click({50, 20});
    Do("mnuGrafikGruppeOeffnen");
    Do("mnuGrafikAlles");
    Key(Qt::Key_Up);
    EXPECT_TRUE(InGroup());
    person.decisions = {Decision::Discard};
    happens();
    EXPECT_FALSE(InGroup());
    const Drawing after = Objects();
    Key(Qt::Key_Up);
    EXPECT_EQ(Objects() == after, !AnySelected(after));
  }
}

}  // namespace
}  // namespace kelvo

#include "widgets/wire_field.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QKeyEvent>

namespace kelvo {
namespace {

std::string AllCharacters() {
  std::string all;
  for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
  return all;
}

void TypeKey(QWidget& field, const QString& text) {
  QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, text);
  QApplication::sendEvent(&field, &key);
}

TEST(WireEditTest, AllCharactersComeBackUnchanged) {
  const std::string all = AllCharacters() + "\r\n" + AllCharacters();
  WireEdit edit;
  edit.SetWire(all);
  EXPECT_EQ(edit.Wire(), all);
  EXPECT_TRUE(edit.toPlainText().contains(QStringLiteral("~⌂")));
  edit.selectAll();
  edit.cut();
  EXPECT_EQ(edit.Wire(), "");
  edit.paste();
  EXPECT_EQ(edit.Wire(), all);
  edit.SetWire("");
  edit.AppendWire(all);
  EXPECT_EQ(edit.Wire(), all);
}

// However much comes, in whatever pieces.
TEST(WireEditTest, OfWhatIsReceivedTheOldestGoesAndWhatTheOperatorWroteStays) {
  WireEdit edit;
  edit.SetWire("loaded\r\n");
  edit.AppendWire("oldest" + std::string(600000, 'r') + "first");
  EXPECT_EQ(edit.Wire(), "loaded\r\n" + std::string(19995, 'r') + "first");
  edit.moveCursor(QTextCursor::End);
  TypeKey(edit, QStringLiteral("T"));
  edit.moveCursor(QTextCursor::Start);
  TypeKey(edit, QStringLiteral("S"));
  for (int i = 0; i < 60; ++i) edit.AppendWire(std::string(999, 's') + "\r");
  edit.AppendWire("\n");
  const std::string wire = edit.Wire();
  EXPECT_EQ(wire.substr(0, 11), "Sloaded\r\nTs");
  EXPECT_EQ(wire.substr(wire.size() - 3), "s\r\n");
  EXPECT_TRUE(wire.size() > 20000 && wire.size() < 30020) << wire.size();
}

TEST(WireFieldTest, AllCharactersComeBackUnchanged) {
  WireField field;
  field.SetWire(AllCharacters());
  EXPECT_EQ(field.Wire(), AllCharacters());
}

TEST(WireFieldTest, WhatCanBeTypedIsTaken) {
  WireEdit edit;
  WireField field;
  std::string typed;
  for (int code = 32; code < 256; ++code) {
    if (code >= 0x7F && code < 0xA0) continue;
    for (QWidget* widget : std::initializer_list<QWidget*>{&edit, &field}) {
      TypeKey(*widget, QString(QChar(code)));
    }
    typed += static_cast<char>(code);
  }
  EXPECT_EQ(edit.Wire(), typed);
  EXPECT_EQ(field.Wire(), typed);
}

// Whatever way it comes, nothing else changes.
TEST(WireFieldTest, WhatNoWireCanCarryIsRefused) {
  for (const QString& text :
       {QStringLiteral("😀"), QStringLiteral("\u0301"), QStringLiteral("e\u0301"),
        QStringLiteral("\u200B"), QStringLiteral("\u200D"), QStringLiteral("\uFEFF"),
        QString(QChar(0xD83D)), QString(QChar(0xDE00)), QStringLiteral("€")}) {
    SCOPED_TRACE(qPrintable(text));
    WireEdit edit;
    WireField field;
    int beeps = 0;
    QObject::connect(&edit, &WireEdit::Refused, [&] { ++beeps; });
    QObject::connect(&field, &WireField::Refused, [&] { ++beeps; });
    edit.SetWire("Text");
    field.SetWire("Text");
    QApplication::clipboard()->setText(text);
    edit.paste();
    field.paste();
    EXPECT_EQ(beeps, 2);
    for (QWidget* widget : std::initializer_list<QWidget*>{&edit, &field}) {
      TypeKey(*widget, text);
      QInputMethodEvent composed;
      composed.setCommitString(text);
      QApplication::sendEvent(widget, &composed);
    }
    EXPECT_EQ(edit.Wire() + field.Wire(), "TextText");
    EXPECT_GE(beeps, 5);  // a key that is half a character is none to the toolkit's line
  }
}

}  // namespace
}  // namespace kelvo

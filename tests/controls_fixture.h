#pragma once

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <memory>
#include <stdexcept>

#include "base/wire_text.h"
#include "store/recordset.h"
#include "store/statement.h"
#include "tests/fakes/fake_operator.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/fakes/virtual_world.h"
#include "widgets/wire_field.h"

namespace kelvo {

/// Real controls, found by their names, over a virtual port, in virtual time, with a database of
/// their own.
class ControlsTest : public testing::Test, protected testing_world::VirtualWorld {
 protected:
  ControlsTest() { folder.AddDatabase(); }

  /// The window or page that the controls are in.
  virtual QWidget& Root() = 0;

  /// Changes the database before the start.
  void Sql(const std::string& statement) {
    Database database(folder.Path("kelvo.mdb"));
    Statement(database, statement).Step();
  }
  std::string Stored(const std::string& table, const std::string& field, std::size_t record = 0) {
    Database database(folder.Path("kelvo.mdb"));
    Recordset records(database, table);
    records.MoveTo(record);
    return records.Text(field).value_or("NULL");
  }
  /// What was written and shown until now no longer counts.
  void Forget() {
    port.written.clear();
    port.writes.clear();
    person.messages.clear();
    person.questions.clear();
    person.prompts.clear();
    person.dialogs.clear();
  }

  template <typename Control = QWidget>
  Control& Find(const char* name) {
    auto* control = Root().findChild<Control*>(QString::fromUtf8(name));
    if (control == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *control;
  }
  void Click(const char* name) { Find<QAbstractButton>(name).click(); }
  void Type(const char* name, const std::string& wire) {
    if (auto* editor = Root().findChild<WireEdit*>(QString::fromUtf8(name))) {
      return editor->SetWire(wire);
    }
    Find<QLineEdit>(name).setText(QString::fromLatin1(wire));
  }
  void Leave(const char* name) { Q_EMIT Find<QLineEdit>(name).editingFinished(); }
  std::string Text(const char* name) {
    return Find(name).property("text").toString().toStdString();
  }
  std::string Editor(const char* name) { return Find<WireEdit>(name).Wire(); }
  std::string Chosen(const char* list) { return Find<QComboBox>(list).currentText().toStdString(); }
  void Choose(const char* list, const char* text) {
    auto& box = Find<QComboBox>(list);
    const int index = box.findText(QString::fromUtf8(text));
    if (index < 0) throw std::runtime_error(std::string("no entry ") + text);
    box.setCurrentIndex(index);
    Q_EMIT box.activated(index);
  }
  std::vector<std::string> Entries(const char* list) {
    std::vector<std::string> entries;
    auto& box = Find<QComboBox>(list);
    for (int i = 0; i < box.count(); ++i) entries.push_back(box.itemText(i).toStdString());
    return entries;
  }
  /// What was written, readable.
  std::string Written() const { return ReadableText(port.written); }

  testing_world::TemporaryFolder folder;
  testing_world::FakeOperator person;
};

}  // namespace kelvo

#pragma once

#include <QAbstractButton>
#include <QObject>

#include "base/guard.h"

namespace kelvo {

/// Connects a button to its handler; what fails in it is reported under the button's name.
template <typename Page>
void OnClick(QAbstractButton* button, Page* page, Operator& person, void (Page::*handler)()) {
  QObject::connect(button, &QAbstractButton::clicked, page, [=, &person] {
    const QByteArray name = button->objectName().toUtf8();
    Guarded(person, name.constData(), [&] { (page->*handler)(); });
  });
}

}  // namespace kelvo

#pragma once

#include "ShownWidgets.h"
#include "TestPatches.h"
#include "WindowFixture.h"

#include <QLineEdit>

/// Keys, as a user presses them in the window.
namespace KeysInWindow {

using namespace ShownWidgets;

/// Each key goes to whatever has the focus.
inline void type(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QVERIFY(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
    WindowFixture::settle();
}

/// Patches "Lead Bells Choir" of which the second is selected, slots "A B C D" of which the second is selected.
inline std::unique_ptr<WindowFixture> chosen()
{
    auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir"), QStringLiteral("A B C D"));
    WindowFixture::click(window->contentList(), 1);
    WindowFixture::click(window->libraryList(), 1);
    return window;
}

} // namespace KeysInWindow

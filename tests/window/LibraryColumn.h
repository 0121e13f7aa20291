#pragma once

#include "ShownWidgets.h"
#include "TestLibraries.h"
#include "WindowFixture.h"

#include <QAction>
#include <QLineEdit>

/// What tests of the library column press and read.
namespace LibraryColumn {

using namespace ShownWidgets;

inline QLineEdit *field(const WindowFixture &window, const char *name)
{
    return named<QLineEdit>(*window.window, QLatin1String(name));
}

inline QString selectLabel(const WindowFixture &window)
{
    return named<QAbstractButton>(*window.window, QStringLiteral("Select"))->text();
}

} // namespace LibraryColumn

#pragma once

#include <QUrl>

/// The only addresses outside this computer, opened on request. The top-level domain is one that nobody can own: the
/// project has no page yet.
namespace WebPages {

[[nodiscard]] inline QUrl donation()
{
    return QUrl(QStringLiteral("https://velgorlibrary.example/donate"));
}

[[nodiscard]] inline QUrl project()
{
    return QUrl(QStringLiteral("https://velgorlibrary.example/help"));
}

/// The user guide in its newest form, ending in a slash; empty as long as the project has no page.
[[nodiscard]] inline QUrl guide()
{
    return {};
}

} // namespace WebPages

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

} // namespace WebPages

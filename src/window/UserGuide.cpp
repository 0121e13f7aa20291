#include "UserGuide.h"

#include "WebPages.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QNetworkInformation>

#include <utility>

namespace {

bool hasNetwork()
{
    // Where nothing tells, the installed pages do.
    return QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability)
        && QNetworkInformation::instance()->reachability() == QNetworkInformation::Reachability::Online;
}

} // namespace

UserGuide::UserGuide()
    : UserGuide(usualDirectories(), {.address = WebPages::guide(), .isReachable = hasNetwork})
{
}

UserGuide::UserGuide(QStringList directories, Site site)
    : m_directories(std::move(directories))
    , m_site(std::move(site))
{
}

QStringList UserGuide::usualDirectories()
{
    const QDir program(QCoreApplication::applicationDirPath());
    // First where both were moved together, then a bundle, then where both were installed at first.
    return {QDir::cleanPath(program.absoluteFilePath(QStringLiteral(VELGOR_GUIDE_FROM_PROGRAM))),
        QDir::cleanPath(program.absoluteFilePath(QStringLiteral("../Resources/guide"))),
        QStringLiteral(VELGOR_GUIDE_DIRECTORY)};
}

QString UserGuide::fileName(Page page)
{
    switch (page) {
    case Page::Contents:
        return QStringLiteral("index.html");
    case Page::Slots:
        return QStringLiteral("slots.html");
    case Page::Library:
        return QStringLiteral("library.html");
    case Page::Details:
        return QStringLiteral("details.html");
    case Page::LibraryCheck:
        return QStringLiteral("check.html");
    case Page::Trouble:
        return QStringLiteral("trouble.html");
    }
    return {};
}

QUrl UserGuide::address(Page page) const
{
    const QString name = fileName(page);
    if (!m_site.address.isEmpty() && m_site.isReachable()) {
        return m_site.address.resolved(QUrl(name));
    }
    for (const QString &directory : m_directories) {
        const QFileInfo file(QDir(directory), name);
        if (file.isFile()) {
            return QUrl::fromLocalFile(file.absoluteFilePath());
        }
    }
    return WebPages::project();
}

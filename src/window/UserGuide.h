#pragma once

#include <QStringList>
#include <QUrl>

#include <functional>

/// Where the user guide is to be read: its pages are installed with the program, so that help needs no network.
class UserGuide {
public:
    /// A subject is a page of its own and no place within one: what a desktop opens files with drops such a place.
    enum class Page { Contents, Slots, Library, Details, LibraryCheck, Trouble };

    /// The guide of the project's site, which is ahead of the installed one.
    struct Site {
        QUrl address; ///< empty when there is none
        std::function<bool()> isReachable;
    };

    /// Where a program that is installed looks, or one that was built and not installed.
    [[nodiscard]] static QStringList usualDirectories();

    /// The guide of this program.
    UserGuide();
    /// `directories` may hold the guide; the first that does is used.
    UserGuide(QStringList directories, Site site);

    /// The page on the site if there is one and the network is there, else the installed one. Without either it is the
    /// project's page, which then says what is wrong.
    [[nodiscard]] QUrl address(Page page) const;

    [[nodiscard]] static QString fileName(Page page);

private:
    QStringList m_directories;
    Site m_site;
};

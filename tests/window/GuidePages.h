#pragma once

#include <QHash>
#include <QSize>
#include <QString>
#include <QStringList>

#include <vector>

/// A page of the user guide, as far as it can be compared with the program and with the other pages.
struct GuidePage {
    QString file;
    QString problem; ///< why it cannot be read; empty when it can
    QString language;
    QString title;
    QStringList headings; ///< of the first order
    QStringList navigation; ///< each entry's file and text
    QStringList anchors;
    QStringList links;
    QStringList pictures; ///< files
    QHash<QString, QSize> sizes; ///< of pictures, as the page says
    QStringList picturesWithoutText;
    QStringList menus; ///< as in "File > Quit"
    QStringList buttons;
    QStringList keys;
    QStringList messages;
    QStringList rows; ///< of tables, cells joined by "|"

    [[nodiscard]] static GuidePage read(const QString &directory, const QString &file);
    [[nodiscard]] static std::vector<GuidePage> readAll(const QString &directory);
};

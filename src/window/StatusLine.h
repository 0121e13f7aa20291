#pragma once

#include "Editors.h"

#include <QStatusBar>

#include <functional>

class ElidedLabel;
class LibraryStorageManager;
class OneRefresh;
class PatchListView;
class VelgorContent;
class VelgorLibrary;

/// The line at the window's lower edge: what letting go of a drag does, else what was done last, else how the library
/// stands. How the library stands is said at the other end while something else stands first; a drag has all the room.
class StatusLine : public QStatusBar {
    Q_OBJECT

public:
    /// Whether the library list shows this patch.
    using IsShown = std::function<bool(quint64 id)>;

    /// All must outlive the line.
    StatusLine(const VelgorLibrary &library, const VelgorContent &content, const LibraryStorageManager &storage,
        const Editors &editors, IsShown isShown, QWidget *parent = nullptr);

    /// Says what letting go of a drag over this list does, and what keys that mean nothing in it are missing.
    void follow(const PatchListView &list);
    /// What letting go of a drag does; empty when there is none.
    void setDrop(const QString &text);
    /// Says what was done, instead of what was said before, until the library or the list changes again.
    void say(const QString &text);
    /// Says more about what was done last.
    void add(const QString &text);
    void clear();
    /// How the library stands may have changed.
    void refresh();

private:
    void followChanges();
    void followEditors();
    void clearAll();
    [[nodiscard]] QString nameOf(quint64 id) const;
    void showTexts();

    const VelgorLibrary &m_library;
    const VelgorContent &m_content;
    const LibraryStorageManager &m_storage;
    Editors m_editors;
    IsShown m_isShown;
    ElidedLabel *m_first;
    ElidedLabel *m_last;
    OneRefresh *m_refresh;
    QString m_drop;
    QString m_done;
    QString m_order; ///< what became of the order of the library, until it is sorted or loaded anew
};

#pragma once

#include "WindowClock.h"
#include "WindowFixture.h"

#include <QList>
#include <QString>

/// What a user does in a window that shows a library, each taken apart into rounds and measured.
class WindowActions {
public:
    struct Row {
        QString name;
        QList<WindowClock::Round> rounds;
    };

    /// `directory` holds a library.
    explicit WindowActions(const LibraryDirectory &directory);

    /// From showing the window to its first paint, and from there until the library is in its list.
    [[nodiscard]] QList<Row> load();
    /// Everything else, for a library that has been loaded and is not empty. It changes the library on disk.
    [[nodiscard]] QList<Row> use();

private:
    [[nodiscard]] QWidget &list() const { return *m_window.libraryList()->viewport(); }
    void add(const QString &name, int rounds, const WindowClock::Action &action,
        const WindowClock::Action &prepare = {}, const WindowClock::Condition &isDone = {});
    void filter();
    void order();
    void look();
    void tick();
    void edit();
    void change();
    void check();
    void remove();
    [[nodiscard]] bool isSaved() const;
    void waitForSave() const;
    void selectRow(int row) const;

    WindowFixture m_window;
    WindowClock m_clock;
    QList<Row> m_rows;
};

#pragma once

#include "ContentListView.h"
#include "ContentView.h"
#include "Desk.h"
#include "DeskFixture.h"
#include "LibraryListView.h"
#include "SystemColorScheme.h"
#include "WindowState.h"

#include <memory>

class QAbstractButton;
class QLineEdit;
class QMessageBox;

/// The real window over a real library directory, put together as the application does it. Files are chosen without
/// a dialog, and what is remembered from one run to the next lies beside the library.
struct WindowFixture : DeskFixture {
    /// A window that is not shown yet. `directory` may be missing.
    explicit WindowFixture(const LibraryDirectory &directory, std::chrono::milliseconds savePeriod = never);
    ~WindowFixture();
    Q_DISABLE_COPY_MOVE(WindowFixture)

    /// A window that shows a library of these patches, one sound each, and a list of as many slots as there are
    /// words in `slots`.
    static std::unique_ptr<WindowFixture> shown(const QString &patches, const QString &slots = {});

    /// Shows the window and waits until the library is there and the window has the focus.
    [[nodiscard]] bool open();
    static VelgorPatch patch(const QString &name, const QByteArray &version = "V1.20");
    /// A preset file beside the library.
    [[nodiscard]] QString presetFile(const QString &file, const QString &patches) const;
    void importList(const QString &patches);

    [[nodiscard]] ContentListView *contentList() const;
    [[nodiscard]] LibraryListView *libraryList() const;
    /// Names in the rows of a list, marks included, joined by blanks.
    [[nodiscard]] QString libraryRows() const;
    /// Names in the slots, without their places.
    [[nodiscard]] QString slotNames() const;
    [[nodiscard]] QString selectedRows(const PatchListView *list) const;
    [[nodiscard]] QString selectedName() const;
    [[nodiscard]] bool isSaid(const QString &label) const;
    /// What the line at the lower edge says first, and what it says of the library.
    [[nodiscard]] QString status() const;
    [[nodiscard]] QString libraryStatus() const;
    [[nodiscard]] QLineEdit *field(const char *name) const;
    [[nodiscard]] QString labelOf(const QString &button) const;
    /// False when there is no such button or it is disabled.
    [[nodiscard]] bool press(const QString &button) const;
    [[nodiscard]] bool isEnabled(const QString &button) const;
    /// False when there is no such entry in the menus or it is disabled.
    [[nodiscard]] bool choose(const QString &menuEntry) const;
    [[nodiscard]] QAction *menuEntry(const QString &text) const;

    static void click(PatchListView *list, int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Gives the focus to the list as well.
    static void key(QWidget *widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    /// Title of the message that is shown; empty when there is none.
    [[nodiscard]] QString message() const;
    [[nodiscard]] QString messageText() const;
    /// Presses a button of the message that is shown. False when there is none.
    [[nodiscard]] bool answer(const QString &button) const;

    WindowState state;
    Desk desk;
    SystemColorScheme systemColorScheme;
    std::unique_ptr<ContentView> window;

private:
    [[nodiscard]] QMessageBox *box() const;
    [[nodiscard]] QAbstractButton *button(const QString &name) const;
};

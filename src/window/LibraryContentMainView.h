#pragma once

#include "Editors.h"
#include "UserGuide.h"

#include <QList>
#include <QSplitter>

class Commands;
class VelgorContent;
class VelgorContentView;
class VelgorLibrary;
class VelgorLibraryView;
class VelgorPatchDetailView;

/// The three columns of the window: the list being composed, the library, the details of the selected patch. Where the
/// window is too narrow for three columns, the details stand below the library.
class LibraryContentMainView : public QSplitter {
    Q_OBJECT

public:
    /// All must outlive the view.
    LibraryContentMainView(const VelgorLibrary &library, const VelgorContent &content, const Editors &editors,
        Commands &commands, QWidget *parent = nullptr);

    [[nodiscard]] VelgorContentView *content() const { return m_content; }
    [[nodiscard]] VelgorLibraryView *library() const { return m_library; }
    [[nodiscard]] VelgorPatchDetailView *details() const { return m_details; }
    /// The columns that show the library say that it is being loaded.
    void setLoading(bool isLoading);
    /// Goes to the library patch that the first selected slot holds. Returns what the user is to be told, empty when
    /// there is nothing to tell.
    [[nodiscard]] QString showInLibrary();
    /// The widths that the columns start with in a window of this width.
    void setStartWidths(int windowWidth);
    /// Widths of a former run, smaller in proportion if the window was wider, or those that the columns start with when
    /// there are none.
    void restoreWidths(const QList<int> &widths, int windowWidth);
    /// The widths of the three columns, as they are or were when there was room for them.
    [[nodiscard]] QList<int> columnWidths() const { return m_isStacked ? m_widths : sizes(); }
    void setColumnWidths(const QList<int> &widths);
    /// Gives the focus to the column behind the one that has it, or to the one before (-1), around the ends. A column
    /// without anything that takes keys is left out.
    void goToColumn(int step);
    /// What the user guide says about the column that has the focus.
    [[nodiscard]] UserGuide::Page guidePage() const;

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void arrange();
    void stack(bool isStacked);
    void nameHandles();
    [[nodiscard]] bool isFocusIn(int column) const;
    void focusColumn(int column);

    Editors m_editors;
    VelgorContentView *m_content;
    VelgorLibraryView *m_library;
    VelgorPatchDetailView *m_details;
    QSplitter *m_right; ///< holds the library, and below it the details where there is no room beside it
    QList<int> m_widths;
    bool m_isStacked = false;
};

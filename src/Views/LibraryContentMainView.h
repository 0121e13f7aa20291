#pragma once

#include <QSplitter>

class Commands;
class VelgorContentView;
class VelgorLibraryView;
class VelgorPatchDetailView;

/// The three columns of the window: the list being composed, the library, the details of the selected patch.
class LibraryContentMainView : public QSplitter {
    Q_OBJECT

public:
    /// `commands` and what they work on must outlive the view.
    explicit LibraryContentMainView(Commands &commands, QWidget *parent = nullptr);

    [[nodiscard]] VelgorContentView *content() const { return m_content; }
    [[nodiscard]] VelgorLibraryView *library() const { return m_library; }
    [[nodiscard]] VelgorPatchDetailView *details() const { return m_details; }
    /// The columns that show the library say that it is being loaded.
    void setLoading(bool isLoading);
    /// The widths that the columns start with in a window of this width.
    void setStartWidths(int windowWidth);

private:
    VelgorContentView *m_content;
    VelgorLibraryView *m_library;
    VelgorPatchDetailView *m_details;
};

#pragma once

#include "LibraryViewFilter.h"

#include <QWidget>

class FilterFlags;
class Hairline;
class QFrame;
class QGridLayout;
class QPushButton;
class QVBoxLayout;
class SearchField;
class SymbolView;

/// The block of controls above the library that edits a filter. It holds the filter, which starts neutral. Where there
/// is no room for all of it, it is folded: the fields stay, and a button opens the toggles.
class LibraryViewFilterView : public QWidget {
    Q_OBJECT

public:
    explicit LibraryViewFilterView(QWidget *parent = nullptr);

    [[nodiscard]] const LibraryViewFilter &filter() const { return m_filter; }
    void setFilter(const LibraryViewFilter &filter);
    /// True while a text or a flag is set, so that the filter may hide patches.
    [[nodiscard]] bool isActive() const;

    /// While the library cannot be filtered only the header stays as it is.
    void setControlsEnabled(bool isEnabled);

    /// Puts the cursor into the field for the name and selects its text.
    void focusName();

    void setFolded(bool isFolded);
    [[nodiscard]] int foldedHeight() const;
    /// How high it is at a width when it is not folded.
    [[nodiscard]] int unfoldedHeight(int width) const;

public Q_SLOTS:
    /// Goes back to the filter that shows every patch.
    void clear();

Q_SIGNALS:
    /// With every keystroke and press; never when nothing changed.
    void filterChanged(const LibraryViewFilter &filter);
    /// The user goes on from a field to the patches.
    void left();

private:
    void showFilter();
    void arrange();
    void openFlags();
    [[nodiscard]] QWidget *makeHeader();

    LibraryViewFilter m_filter;
    SymbolView *m_symbol = nullptr;
    QWidget *m_header;
    QPushButton *m_fold;
    SearchField *m_name;
    SearchField *m_comment;
    Hairline *m_line;
    QFrame *m_popup;
    FilterFlags *m_flags;
    QGridLayout *m_upper;
    QVBoxLayout *m_rows;
    bool m_isFolded = false;
};

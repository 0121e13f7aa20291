#pragma once

#include "LibraryViewFilter.h"

#include <QWidget>

#include <array>

class QPushButton;
class SearchField;
class SymbolView;
class ToggleButton;

/// The block of controls above the library that edits a filter. It holds the filter, which starts neutral.
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

public Q_SLOTS:
    /// Goes back to the filter that shows every patch.
    void clear();

Q_SIGNALS:
    /// With every keystroke and press; never when nothing changed.
    void filterChanged(const LibraryViewFilter &filter);

private:
    void showFilter();
    [[nodiscard]] QWidget *makeHeader();
    [[nodiscard]] QWidget *makeFlagBlock();

    LibraryViewFilter m_filter;
    SymbolView *m_symbol = nullptr;
    SearchField *m_name;
    SearchField *m_comment;
    std::array<ToggleButton *, 9> m_flags{};
    QPushButton *m_clear = nullptr;
    QWidget *m_flagBlock; ///< last, because making it sets the buttons above
};

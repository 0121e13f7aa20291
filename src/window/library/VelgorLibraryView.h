#pragma once

#include <QWidget>

class Commands;
class LibraryEditor;
class LibraryListModel;
class LibraryListView;
class LibraryViewFilterView;
class LoadingView;
class OneRefresh;
class QLabel;
class QStackedLayout;
class VelgorLibrary;

/// The middle column: filter, count, the list of library patches, and the buttons that work on it.
class VelgorLibraryView : public QWidget {
    Q_OBJECT

public:
    /// All must outlive the view.
    VelgorLibraryView(
        const VelgorLibrary &library, LibraryEditor &editor, Commands &commands, QWidget *parent = nullptr);

    [[nodiscard]] LibraryListView *list() const { return m_list; }
    [[nodiscard]] LibraryViewFilterView *filter() const { return m_filter; }
    [[nodiscard]] qsizetype shownCount() const;
    /// Selects a patch and goes to it; true when a filter hid it and was cleared.
    bool showPatch(quint64 id);

    /// While the library is being loaded, how far that is takes the place of the list, and nothing can be pressed.
    void setLoading(bool isLoading);
    [[nodiscard]] bool isShown(quint64 id) const;
    void setLoadProgress(qsizetype loaded, qsizetype total);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] QLayout *makeButtons();
    /// Where there is little height, the filter and the buttons take less of it.
    void foldFilter();
    void setCompact(bool isCompact);
    void followLibrary();
    void refresh();

    const VelgorLibrary &m_library;
    LibraryEditor &m_editor;
    Commands &m_commands;
    LibraryListModel *m_model;
    LibraryViewFilterView *m_filter;
    QLabel *m_count;
    QStackedLayout *m_pages;
    LibraryListView *m_list;
    LoadingView *m_loading;
    QLayout *m_buttons;
    OneRefresh *m_refresh;
};

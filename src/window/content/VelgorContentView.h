#pragma once

#include <QWidget>

class CommandButton;
class Commands;
class ContentListModel;
class ContentListView;
class ContentTitle;
class QMenu;

/// The left column: the list being composed and the buttons that bring it in and out.
class VelgorContentView : public QWidget {
    Q_OBJECT

public:
    /// `commands` and what they work on must outlive the view.
    explicit VelgorContentView(Commands &commands, QWidget *parent = nullptr);

    [[nodiscard]] ContentListView *list() const { return m_list; }
    void setContextMenu(QMenu *menu);

private:
    void refresh();
    void refreshUsedRowsSoon();
    void refreshUsedRows();

    Commands &m_commands;
    ContentListModel *m_model;
    ContentTitle *m_title;
    ContentListView *m_list;
    CommandButton *m_import;
    bool m_isRefreshDue = false;
};

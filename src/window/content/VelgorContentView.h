#pragma once

#include <QWidget>

class CommandButton;
class Commands;
class ContentEditor;
class ContentListModel;
class ContentListView;
class LibraryEditor;
class OneRefresh;
class QLabel;
class VelgorContent;
class VelgorLibrary;

/// The left column: the list being composed and the buttons that bring it in and out.
class VelgorContentView : public QWidget {
    Q_OBJECT

public:
    /// All must outlive the view.
    VelgorContentView(const VelgorContent &content, const VelgorLibrary &library, ContentEditor &editor,
        const LibraryEditor &libraryEditor, Commands &commands, QWidget *parent = nullptr);

    [[nodiscard]] ContentListView *list() const { return m_list; }

protected:
    void changeEvent(QEvent *event) override;

private:
    void refresh();
    void refreshTitle();
    void refreshUsedRows();

    const VelgorContent &m_content;
    const LibraryEditor &m_libraryEditor;
    ContentListModel *m_model;
    QLabel *m_title;
    ContentListView *m_list;
    CommandButton *m_import;
    OneRefresh *m_refresh;
};

#pragma once

#include <QObject>

class QAbstractItemView;

/// Asked for by a key, the context menu of a list comes up at the row that its commands mean, wherever the pointer is.
/// The list's policy is to ask for its menu by signal.
class ContextMenuKeys : public QObject {
    Q_OBJECT

public:
    /// Belongs to the list.
    explicit ContextMenuKeys(QAbstractItemView &list);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showMenu();

    QAbstractItemView &m_list;
};

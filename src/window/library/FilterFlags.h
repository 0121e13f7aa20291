#pragma once

#include "PatchFlags.h"

#include <QWidget>

class QGridLayout;
class QPushButton;

/// The toggles of the filter in equal columns, five where they fit, and behind them the button that clears the
/// filter while that is active.
class FilterFlags : public QWidget {
    Q_OBJECT

public:
    /// The rows must outlive it.
    explicit FilterFlags(QWidget *parent, PatchFields::Rows rows = PatchFields::all());

    void showFlags(const VelgorPatch &asked);
    void setClearVisible(bool isVisible);
    [[nodiscard]] bool hasClearFocus() const;
    void focusFirst();

    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] int heightAt(int width) const;

Q_SIGNALS:
    void flagToggled(PatchFlag flag, bool isSet);
    void clearPressed();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] int columnWidth() const;
    [[nodiscard]] int columnsAt(int width) const;
    void arrange();

    ShownFlags m_fields;
    QGridLayout *m_grid;
    QList<ToggleButton *> m_flags; ///< one a field
    QPushButton *m_clear;
    int m_columns = 0;
};

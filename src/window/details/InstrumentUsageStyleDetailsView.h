#pragma once

#include "PatchFlags.h"

#include <QList>
#include <QWidget>

class QGridLayout;
class QLabel;

/// The classification of a patch: toggles of two kinds, usage and style. It starts and ends a focus gutter outside of
/// what it shows.
class InstrumentUsageStyleDetailsView : public QWidget {
    Q_OBJECT

public:
    explicit InstrumentUsageStyleDetailsView(QWidget *parent, PatchFields::Rows rows = PatchFields::all());

    void showFlags(const VelgorPatch &patch);
    /// Whether the labels stand above their rows rather than before them, and how many toggles stand in a row: four or
    /// two.
    void setArrangement(bool isStacked, int togglesInRow);
    /// The least width of so many toggles in a row.
    [[nodiscard]] int togglesMinimumWidth(int togglesInRow) const;

    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void flagToggled(PatchFlag flag, bool isSet);

private:
    struct Toggle {
        PatchFlag flag;
        ToggleButton *button;
    };
    struct Kind {
        QLabel *label = nullptr;
        QList<Toggle> toggles;
    };

    void addKind(const QString &label, const ShownFlags &flags);
    void arrange();

    QGridLayout *m_grid;
    QList<Kind> m_kinds;
    bool m_isStacked = false;
    int m_togglesInRow = 4;
};

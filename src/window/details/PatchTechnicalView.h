#pragma once

#include <QList>
#include <QWidget>

class PVersionView;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class ValueLabel;
class VelgorPatch;

/// The technical lines below the details of a patch, in footnote size.
class PatchTechnicalView : public QWidget {
    Q_OBJECT

public:
    explicit PatchTechnicalView(QWidget *parent);

    void showPatch(const VelgorPatch &patch);
    /// Whether the values stand below their labels.
    void setStacked(bool isStacked);
    /// What the widest of the values takes.
    [[nodiscard]] int valuesWidth() const;

private:
    struct Line {
        QLabel *label;
        QHBoxLayout *value;
    };

    [[nodiscard]] ValueLabel *addLine(const QString &label, QWidget *before = nullptr);
    void arrange();

    QGridLayout *m_grid;
    QList<Line> m_lines;
    bool m_isStacked = false;
    PVersionView *m_badge;
    ValueLabel *m_version;
    ValueLabel *m_soundHash;
    ValueLabel *m_tailBit;
    ValueLabel *m_id;
};

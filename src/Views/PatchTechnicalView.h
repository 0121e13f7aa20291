#pragma once

#include <QWidget>

class PVersionView;
class QGridLayout;
class ValueLabel;
class VelgorPatch;

/// The technical lines below the details of a patch, in footnote size.
class PatchTechnicalView : public QWidget {
    Q_OBJECT

public:
    explicit PatchTechnicalView(QWidget *parent);

    void showPatch(const VelgorPatch &patch);

private:
    [[nodiscard]] ValueLabel *addLine(const QString &label, QWidget *before = nullptr);

    QGridLayout *m_grid;
    PVersionView *m_badge;
    ValueLabel *m_version;
    ValueLabel *m_soundHash;
    ValueLabel *m_tailBit;
    ValueLabel *m_id;
};

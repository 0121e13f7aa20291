#pragma once

#include <QWidget>

class PlaceBadges;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class SymbolView;
class ValueLabel;
class VelgorPatch;

/// What is known of a patch besides what the user says about it, and where it is used. It starts a focus gutter
/// before its labels.
class PatchSubdetailsInfoView : public QWidget {
    Q_OBJECT

public:
    explicit PatchSubdetailsInfoView(QWidget *parent);

    /// From the left edge of the labels in the details to the left edge of everything else: all their parts stand on
    /// one axis.
    [[nodiscard]] static int labelColumn(const QFontMetrics &metrics);
    void showPatch(const VelgorPatch &patch);
    [[nodiscard]] PlaceBadges *places() const { return m_places; }
    /// Whether the badges of the places stand below their sentence, and the values below their labels.
    void setStacked(bool areBadgesBelow, bool areValuesBelow);

private:
    [[nodiscard]] QLabel *makeLabel(const QString &text);
    void arrange();

    QGridLayout *m_grid;
    QLabel *m_unitNameLabel;
    ValueLabel *m_unitName;
    QLabel *m_importedLabel;
    ValueLabel *m_imported;
    SymbolView *m_speaker;
    QLabel *m_impulseResponse;
    QHBoxLayout *m_impulseResponseLine;
    PlaceBadges *m_places;
    QHBoxLayout *m_placesLine;
    bool m_areValuesBelow = false;
};

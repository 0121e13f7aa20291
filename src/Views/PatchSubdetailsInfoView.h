#pragma once

#include <QList>
#include <QWidget>

class PlaceBadges;
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

    /// The label that decides how wide the column of labels is.
    [[nodiscard]] static QString longestLabel();

    void showPatch(const VelgorPatch &patch);
    /// The slots that hold the patch, counted from 0, in order.
    void setPlaces(const QList<int> &slotIndexes);
    void setStacked(bool isStacked);

Q_SIGNALS:
    void placeActivated(int slotIndex);

private:
    ValueLabel *m_unitName;
    ValueLabel *m_imported;
    SymbolView *m_speaker;
    QLabel *m_impulseResponse;
    PlaceBadges *m_places;
};

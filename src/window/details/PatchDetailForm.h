#pragma once

#include "PatchFlags.h"

#include <QScrollArea>

class CommentEdit;
class InstrumentUsageStyleDetailsView;
class NameField;
class PatchSubdetailsInfoView;
class PatchTechnicalView;
class QBoxLayout;
class QLabel;
class QPushButton;
class QVBoxLayout;
class ScrolledColumn;
class UnitNameNote;

/// The fields that show and edit one patch. Where the toggles do not fit beside their labels, labels stand above
/// their fields. It scrolls vertically when it must, and never horizontally.
class PatchDetailForm : public QScrollArea {
    Q_OBJECT

public:
    explicit PatchDetailForm(QWidget *parent);

    /// For the patch that is shown already, cursors and undo histories stay.
    void showPatch(const VelgorPatch &patch, bool isOtherPatch);
    void showDefault(bool isDefault);
    /// The slots that hold the patch, counted from 0, in order.
    void showPlaces(const QList<int> &slotIndexes);
    void focusName();
    /// Ends an edit that still goes on, so that it belongs to the patch that is shown.
    void endEdits();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void nameEdited(const QString &name);
    void commentEdited(const QString &comment);
    void flagToggled(PatchFlag flag, bool isSet);
    void defaultPressed();
    void placeActivated(int slotIndex);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] QVBoxLayout *addRows();
    void addComment(QVBoxLayout *rows);
    void addDefault(QVBoxLayout *rows);
    void arrange();
    void followFont();

    ScrolledColumn *m_column;
    NameField *m_name;
    UnitNameNote *m_unitName;
    InstrumentUsageStyleDetailsView *m_flags;
    QBoxLayout *m_commentRow = nullptr;
    QLabel *m_commentLabel = nullptr;
    CommentEdit *m_comment;
    QPushButton *m_default;
    QBoxLayout *m_defaultBlock = nullptr;
    PatchSubdetailsInfoView *m_subdetails;
    PatchTechnicalView *m_technical;
};

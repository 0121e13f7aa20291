#pragma once

#include "VelgorPatch.h"

#include <QWidget>

#include <functional>
#include <optional>

class EmptyDetails;
class LibraryCallbacks;
class OneRefresh;
class PatchDetailForm;
class QStackedLayout;
class VelgorContent;
class VelgorLibrary;

/// The column that shows and edits the selected patch of a library. Every edit goes into the library at once and is
/// told to the callbacks. All that is handed in must outlive the view.
class VelgorPatchDetailView : public QWidget {
    Q_OBJECT

public:
    VelgorPatchDetailView(const VelgorLibrary &library, const VelgorContent &content, LibraryCallbacks &callbacks,
        QWidget *parent = nullptr);

    /// While the library is being loaded, it is not said to be empty.
    void setLoading(bool isLoading);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Puts the cursor into the field for the name and selects its text; nothing happens while no patch is shown.
    void focusName();

Q_SIGNALS:
    /// A badge of a place was pressed; slots are counted from 0.
    void placeActivated(int slotIndex);

private:
    [[nodiscard]] const VelgorPatch *selectedPatch() const;
    [[nodiscard]] QString reasonForNoDetails() const;
    [[nodiscard]] QString nextStep() const;
    void refresh();
    void edit(const std::function<void(VelgorPatch &)> &change);

    const VelgorLibrary &m_library;
    const VelgorContent &m_content;
    LibraryCallbacks &m_callbacks;
    QStackedLayout *m_pages;
    EmptyDetails *m_empty;
    PatchDetailForm *m_form;
    OneRefresh *m_refresh;
    std::optional<quint64> m_shownId;
    bool m_isLoading = false;
};

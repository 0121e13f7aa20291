#pragma once

#include "LibraryCallbacks.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

/// Does what a library does for the views of its patches, and writes down what they ask of it.
class RecordingCallbacks : public LibraryCallbacks {
public:
    RecordingCallbacks(VelgorLibrary &library, VelgorContent &content)
        : m_library(library)
        , m_content(content)
    {
    }

    QList<quint64> changedIds;
    mutable int lookUps = 0; ///< how often the places were asked for
    std::optional<quint64> defaultId;

    void edit(const VelgorPatch &patch) override
    {
        m_library.update(patch);
        changed(patch.id());
    }

    void changed(quint64 id) override
    {
        changedIds.append(id);
        if (const auto found = m_library.getPatchFromId(id)) {
            m_content.propagateChangedPatch(*found->patch);
        }
    }

    [[nodiscard]] QList<BankNumber> inContentPatch(quint64 pid) const override
    {
        ++lookUps;
        QList<BankNumber> places;
        const auto found = m_library.getPatchFromId(pid);
        for (qsizetype row = 0; found && row < m_content.velgorContentPatchList().size(); ++row) {
            const auto sound = m_content.velgorContentPatchList().at(row).patch.soundHash();
            if (sound && sound == found->patch->soundHash()) {
                places.append(BankNumber::ofSlot(row));
            }
        }
        return places;
    }

    void setDefaultPatch(quint64 id) override { defaultId = id; }
    [[nodiscard]] bool isDefaultPatch(quint64 id) const override { return defaultId == id; }

private:
    VelgorLibrary &m_library;
    VelgorContent &m_content;
};

#pragma once

#include "ProgramFiles.h"
#include "TestRecords.h"
#include "VelgorProcess.h"

#include <memory>

/// The program and a library directory that it works on. Test classes derive from it, and begin each test with one of
/// the start functions.
class CommandFixture {
public:
    using Json = VelgorProcess::Json;
    using Result = VelgorProcess::Result;

    /// The patches of the sample library, in its order: "Lead", "A/B", "Größe".
    static inline const QString lead = QStringLiteral("8725204569585644227");
    static inline const QString slashed = QStringLiteral("3702531371783571771");
    static inline const QString accented = QStringLiteral("11354825418023308630");

    /// Arguments in one text, parted by "|".
    [[nodiscard]] static QStringList words(const QString &text) { return text.split(u'|'); }
    /// A preset file with one patch.
    [[nodiscard]] static QByteArray fileOf(const QString &name, int seed)
    {
        return TestRecords::fileBytes({TestRecords::patch(name, seed)});
    }

protected:
    void startEmpty()
    {
        m_directory = std::make_unique<LibraryDirectory>();
        m_velgor.setInput({});
    }
    void startWithSample()
    {
        startEmpty();
        ProgramFiles::copyLibrary(QStringLiteral("ok"), *m_directory);
    }

    /// `velgor library` with the directory.
    [[nodiscard]] Result library(const QStringList &arguments) const
    {
        return m_velgor.library(m_directory->path(), arguments);
    }
    [[nodiscard]] Result library(const QString &arguments) const { return library(words(arguments)); }
    [[nodiscard]] Json listed(const QString &options = {}) const
    {
        return library(QStringLiteral("list|--json") + (options.isEmpty() ? QString() : u'|' + options)).json();
    }
    [[nodiscard]] Json patch(const QString &id) const
    {
        const Json all = listed();
        for (const Json &entry : all.at("patches")) {
            if (entry.at("id") == id.toStdString()) {
                return entry;
            }
        }
        return {};
    }
    /// The names in what `list --json` says of a library or of a preset file.
    [[nodiscard]] static QStringList namesIn(const Json &list)
    {
        QStringList names;
        for (const Json &entry : list.at("patches")) {
            names.append(QString::fromStdString(entry.at("name").get<std::string>()));
        }
        return names;
    }

    VelgorProcess m_velgor;
    std::unique_ptr<LibraryDirectory> m_directory;
};

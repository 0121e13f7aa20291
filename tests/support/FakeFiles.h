#pragma once

#include "FileAccess.h"
#include "FileDialogs.h"

#include <QMap>
#include <QStringList>

/// Files in memory.
class FakeFileAccess : public FileAccess {
public:
    QMap<QString, QByteArray> files;
    QString writeError; ///< given for every write, which then changes nothing

    Result<QByteArray> read(const QString &path) override
    {
        const auto found = files.constFind(path);
        if (found == files.constEnd()) {
            return Problem{.what = Problem::What::Absent, .why = QStringLiteral("no such file")};
        }
        return *found;
    }

    Result<> write(const QString &path, const QByteArray &bytes) override
    {
        if (writeError.isEmpty()) {
            files.insert(path, bytes);
        }
        return writeError.isEmpty() ? Result<>(Success()) : Problem{.where = path, .why = writeError};
    }
};

/// Answers every dialog with `answer`, and writes down what was asked.
class FakeFileDialogs : public FileDialogs {
public:
    std::optional<QString> answer; ///< nothing cancels
    QStringList asked; ///< "title" or "title: proposed name"

    std::optional<QString> askOpenFile(const QString &title) override
    {
        asked.append(title);
        return answer;
    }

    std::optional<QString> askSaveFile(const QString &title, const QString &proposedName) override
    {
        asked.append(title + QStringLiteral(": ") + proposedName);
        return answer;
    }
};

#pragma once

#include "DiagnosticRecorder.h"
#include "FakeFiles.h"
#include "PatchFileHandler.h"
#include "TestPatches.h"

#include <memory>

/// A handler of files that are none, for test classes that derive from it and begin each test anew.
class HandlerFixture {
protected:
    static inline const QString out = QStringLiteral("out.prst");

    void start()
    {
        m_files = std::make_unique<FakeFileAccess>();
        m_dialogs = std::make_unique<FakeFileDialogs>();
        m_dialogs->answer = out;
        m_handler = std::make_unique<PatchFileHandler>(*m_files, m_dialogs.get());
        m_recorder.reset();
        m_recorder = std::make_unique<DiagnosticRecorder>();
    }

    Result<SPresetFile> written() const
    {
        const auto bytes = m_files->files.constFind(out);
        return bytes == m_files->files.constEnd() ? Problem() : SPresetFile::fromData(*bytes);
    }

    Result<SPresetFile> open() const
    {
        const Result<QString> path = m_handler->askForFile();
        return path ? m_handler->read(*path) : path.problem();
    }

    /// Writes the library's own file of a patch.
    Result<> store(const VelgorPatch &patch) const
    {
        const Result<QByteArray> bytes = PatchFileHandler::storedBytes(patch);
        return bytes ? m_files->write(out, *bytes) : bytes.problem();
    }

    static bool isCancelled(const Problem &problem) { return problem.what == Problem::What::Cancelled; }

    std::unique_ptr<FakeFileAccess> m_files;
    std::unique_ptr<FakeFileDialogs> m_dialogs;
    std::unique_ptr<PatchFileHandler> m_handler;
    std::unique_ptr<DiagnosticRecorder> m_recorder;
};

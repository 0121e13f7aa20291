#pragma once

#include "LibraryCheckDialog.h"
#include "LibraryCheckList.h"
#include "ShownWidgets.h"
#include "TemporaryFiles.h"
#include "TestLibraries.h"
#include "ThreadGate.h"
#include "WindowFixture.h"

#include <QPlainTextEdit>

/// A library directory, a window over it, and its check over the window.
namespace CheckedLibrary {

using namespace std::chrono_literals;

inline const QString former = QStringLiteral("velgorlibrary-20260101T000000-00.json");

inline const QString latest = QStringLiteral("velgorlibrary-20260102T000000-00.json");

inline const QString entry = QStringLiteral("Check Library...");

/// What a thread prints that reads a file that is no preset file.
inline const QString damagedLine = QStringLiteral("Could not decode HeaderDesc");

inline constexpr std::chrono::milliseconds longest = 10s;

/// The same patch, date included, whenever it is asked for.
inline const VelgorPatch &patchOf(const QString &name)
{
    static QHash<QString, VelgorPatch> patches;
    const auto known = patches.constFind(name);
    return known != patches.cend() ? *known : *patches.insert(name, WindowFixture::patch(name));
}

inline LibraryState contentOf(const QString &names)
{
    LibraryState content;
    for (const QString &name : names.split(u' ')) {
        content.patches.append(patchOf(name));
    }
    return content;
}

inline QString fileOf(const QString &name)
{
    return LibraryFileNames::patchFile(name, patchOf(name).id());
}

inline void writePatch(const LibraryDirectory &directory, const QString &name, const QString &file)
{
    directory.write(file, TestLibraries::patchBytes(patchOf(name)));
}

/// A window over a directory, and the check over the window.
struct Checked {
    explicit Checked(const LibraryDirectory &directory)
        : window(directory)
    {
    }

    [[nodiscard]] bool open() { return window.open() && check(); }
    /// Dismisses what loading had to say.
    [[nodiscard]] bool check() const
    {
        while (!window.message().isEmpty()) {
            if (!window.answer(QStringLiteral("Not Now"))) {
                return false;
            }
        }
        return window.choose(entry) && dialog() != nullptr && isExamined();
    }
    [[nodiscard]] bool isExamined() const
    {
        return QTest::qWaitFor([this] {
            return dialog() == nullptr
                || ShownWidgets::labels(*dialog()).filter(QStringLiteral("Checking the library folder")).isEmpty();
        });
    }

    [[nodiscard]] LibraryCheckDialog *dialog() const
    {
        const QList<LibraryCheckDialog *> all = window.window->findChildren<LibraryCheckDialog *>();
        return all.size() == 1 && all.first()->isVisible() ? all.first() : nullptr;
    }
    [[nodiscard]] LibraryCheckList *findings() const { return list(QStringLiteral("Findings")); }
    [[nodiscard]] LibraryCheckList *kept() const { return list(QStringLiteral("Former libraries")); }
    [[nodiscard]] LibraryCheckList *list(const QString &name) const
    {
        return ShownWidgets::named<LibraryCheckList>(*dialog(), name);
    }
    [[nodiscard]] QString aboutFinding() const { return details(QStringLiteral("About the finding")); }
    [[nodiscard]] QString aboutKept() const { return details(QStringLiteral("About the former library")); }
    [[nodiscard]] QString details(const QString &name) const
    {
        const auto *field = ShownWidgets::named<QPlainTextEdit>(*dialog(), name);
        return field != nullptr ? field->toPlainText() : QString();
    }
    [[nodiscard]] QPushButton *button(const QString &name) const
    {
        return ShownWidgets::named<QPushButton>(*dialog(), name);
    }
    void press(const QString &name) const
    {
        QVERIFY2(button(name) != nullptr && button(name)->isEnabled(), qPrintable(name));
        QTest::mouseClick(button(name), Qt::LeftButton);
        WindowFixture::settle();
        QVERIFY(isExamined());
    }
    [[nodiscard]] bool isSaid(const QString &text) const { return ShownWidgets::labels(*dialog()).contains(text); }
    [[nodiscard]] QStringList rows(const LibraryCheckList *of) const
    {
        QStringList texts;
        for (int row = 0; row < of->model()->rowCount(); ++row) {
            texts.append(of->model()->index(row, 0).data().toString());
        }
        return texts;
    }

    WindowFixture window;
};

} // namespace CheckedLibrary

#include "DesktopFileDialogs.h"
#include "TestProgram.h"
#include "WindowState.h"

#include <QApplication>
#include <QFileDialog>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>

namespace {

/// Calls back with the file dialog that is opened, and leaves it.
void whenOpened(const std::function<void(QFileDialog &)> &look)
{
    QTimer::singleShot(0, qApp, [look] {
        auto *const dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        look(*dialog);
        dialog->reject();
    });
}

} // namespace

class TestDesktopFileDialogs : public QObject {
    Q_OBJECT

    QTemporaryDir m_directory;
    WindowState m_state{m_directory.filePath(QStringLiteral("state.ini"))};
    DesktopFileDialogs m_dialogs{m_state};

private Q_SLOTS:
    void presetFilesAreOfferedFirst_data()
    {
        QTest::addColumn<bool>("isOpening");
        QTest::newRow("open") << true;
        QTest::newRow("save") << false;
    }

    void presetFilesAreOfferedFirst()
    {
        QFETCH(const bool, isOpening);
        QStringList filters;
        QString chosen;
        QString title;
        whenOpened([&](const QFileDialog &dialog) {
            filters = dialog.nameFilters();
            chosen = dialog.selectedNameFilter();
            title = dialog.windowTitle();
        });
        const auto answer = isOpening ? m_dialogs.askOpenFile(QStringLiteral("Title"))
                                      : m_dialogs.askSaveFile(QStringLiteral("Title"), QStringLiteral("gig.prst"));
        QVERIFY(!answer);
        QCOMPARE(filters, (QStringList{QStringLiteral("Preset files (*.prst)"), QStringLiteral("All files (*)")}));
        QCOMPARE(chosen, filters.first());
        QCOMPARE(title, QStringLiteral("Title"));
    }

    void theProposedNameStandsInTheDialog()
    {
        QStringList proposed;
        whenOpened([&](const QFileDialog &dialog) { proposed = dialog.selectedFiles(); });
        QVERIFY(!m_dialogs.askSaveFile(QStringLiteral("Title"), QStringLiteral("gig.prst")));
        QCOMPARE(proposed.size(), 1);
        QVERIFY2(proposed.first().endsWith(QStringLiteral("/gig.prst")), qPrintable(proposed.first()));
    }
};

VELGOR_WIDGET_TEST(TestDesktopFileDialogs)
#include "tst_DesktopFileDialogs.moc"

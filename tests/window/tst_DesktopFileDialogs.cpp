#include "DesktopFileDialogs.h"
#include "TestProgram.h"
#include "WindowState.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>

namespace {

/// Calls back with the file dialog that is opened, and leaves it if it is still open after that.
void whenOpened(const std::function<void(QFileDialog &)> &look)
{
    QTimer::singleShot(0, qApp, [look] {
        auto *const dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        look(*dialog);
        if (dialog->isVisible()) {
            dialog->reject();
        }
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

    void theTypedPathIsOpenedWhateverLiesOnItsWay_data()
    {
        QTest::addColumn<QString>("directory");
        QTest::newRow("long names") << QStringLiteral("lists/samples");
        QTest::newRow("a name of one letter") << QStringLiteral("a/samples");
    }
    void theTypedPathIsOpenedWhateverLiesOnItsWay()
    {
        QFETCH(const QString, directory);
        const QDir root(m_directory.path());
        QVERIFY(root.mkpath(directory));
        const QString path = root.filePath(directory + QStringLiteral("/gig.prst"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        whenOpened([&path](QFileDialog &dialog) {
            auto *const field = dialog.findChild<QLineEdit *>();
            field->setFocus();
            for (const QChar character : path) {
                QTest::keyClick(field, character.toLatin1());
                QCoreApplication::processEvents();
            }
            QTest::keyClick(field, Qt::Key_Return);
        });
        QCOMPARE(m_dialogs.askOpenFile(QStringLiteral("Title")), std::optional(path));
    }
};

VELGOR_WIDGET_TEST(TestDesktopFileDialogs)
#include "tst_DesktopFileDialogs.moc"

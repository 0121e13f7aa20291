#include "AlertTexts.h"
#include "TestDesk.h"
#include "TestProgram.h"
#include "UnreadableNames.h"
#include "VelgorStyle.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTemporaryDir>

#include <memory>

namespace {

const QString longWord = QString(300, u'w');
const QString longPath = QStringLiteral("/home/somebody/Music/%1/%2/gig.prst").arg(QString(90, u'a'), longWord);

/// Every message of the program, each with the longest things to say that it may meet.
QList<Alert> everyMessage()
{
    TestDesk desk(QStringLiteral("A B ") + longWord);
    desk.fillContent(QStringLiteral("x y z"));
    desk.select(2);
    const QStringList problems{longPath + QStringLiteral(": No space left on device"),
        longWord + QStringLiteral(": Input/output error"), longPath, longPath};
    QList<Alert> alerts{AlertTexts::openError(desk.contentFiles.problem()),
        AlertTexts::saveError(desk.contentFiles.problem()), AlertTexts::selectDefault(desk.library),
        AlertTexts::mixVersions(desk.content, desk.desk.editors), AlertTexts::readError(desk.storage),
        AlertTexts::writeError(desk.storage), AlertTexts::deleteConfirm(desk.library, desk.libraryEditor),
        AlertTexts::confirmExport(desk.content), AlertTexts::replaceUnexported(longPath),
        AlertTexts::replaceUnexported({}), AlertTexts::severalFiles({longPath, longPath, longPath, longPath}, true),
        AlertTexts::filesNotKept(problems, 9), AlertTexts::closeUnexported(), AlertTexts::closeUnsaved(desk.storage),
        AlertTexts::directoryInUse(problems.first()), AlertTexts::cannotShowDirectory(longPath),
        AlertTexts::cannotOpenPage(QStringLiteral("https://x.example/help")),
        AlertTexts::cannotMoveLibrary(problems.join(u'\n')), AlertTexts::keptFiles(desk.storage),
        AlertTexts::incompleteLibrary(desk.storage)};
    QList<SPatch> unreadable;
    for (int i = 0; i < 99; ++i) {
        unreadable.append(TestRecords::patch(QStringLiteral("_error_"), i));
        unreadable.last().unreadableName = QByteArray(16, '\xFF');
    }
    desk.content.populate(TestRecords::file(unreadable));
    alerts.append(AlertTexts::unreadableNames(desk.content));
    const QString line = longWord + QStringLiteral(".prst: slots ") + UnreadableNames(desk.content).places();
    alerts.append(AlertTexts::unreadableNamesKept({line, line, line, line}));
    desk.tick({0, 1, 2});
    alerts.append(AlertTexts::deleteConfirm(desk.library, desk.libraryEditor));
    const TestDesk unlistable(QStringLiteral("A"), QStringLiteral("my library"));
    alerts.append(AlertTexts::writeError(unlistable.storage));
    desk.contentFiles.importFile(longPath);
    alerts.append(AlertTexts::openError(desk.contentFiles.problem()));
    return alerts;
}

qsizetype inkOf(const QImage &image)
{
    const QRgb ground = image.pixel(0, 0);
    qsizetype count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixel(x, y) != ground ? 1 : 0;
        }
    }
    return count;
}

QImage painted(const QWidget &widget)
{
    QImage image(widget.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    const_cast<QWidget &>(widget).render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

/// The same text in a label with room on all sides.
QImage paintedWithRoom(const QLabel &label)
{
    QLabel copy(label.text());
    copy.setFont(label.font());
    copy.setTextFormat(Qt::PlainText);
    copy.setTextInteractionFlags(label.textInteractionFlags());
    copy.setPalette(label.palette());
    copy.setForegroundRole(label.foregroundRole());
    copy.setAlignment(label.alignment());
    copy.setWordWrap(true);
    copy.setFixedSize(label.width(), 3 * label.height() + 200);
    return painted(copy);
}

QString sizeText(const QSize &size)
{
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

/// What is wrong with a label in its window; empty when it can be read whole.
QString problemWith(const QLabel &label, const QMessageBox &box)
{
    const auto *const area = qobject_cast<const QScrollArea *>(label.parentWidget()->parentWidget());
    const QWidget &held = area ? static_cast<const QWidget &>(*area) : label;
    if (!box.rect().contains(QRect(held.mapTo(&box, QPoint(0, 0)), held.size()))) {
        return QStringLiteral("stands out of the window");
    }
    if (label.heightForWidth(label.width()) > label.height()) {
        return QStringLiteral("is %1, needs a height of %2")
            .arg(sizeText(label.size()))
            .arg(label.heightForWidth(label.width()));
    }
    if (inkOf(painted(label)) != inkOf(paintedWithRoom(label))) {
        return QStringLiteral("is not painted whole");
    }
    return area && area->viewport()->width() < label.width() ? QStringLiteral("is broader than its view") : QString();
}

QList<QLabel *> textsOf(const QMessageBox &box)
{
    QList<QLabel *> texts = box.findChildren<QLabel *>();
    texts.removeIf([](const QLabel *label) { return label->text().isEmpty(); });
    return texts;
}

/// A description of screens as the offscreen platform reads it.
QByteArray screenOf(int width, int height)
{
    return QStringLiteral(R"({"screens": [{"name": "one", "x": 0, "y": 0, "width": %1, "height": %2, )"
                          R"("logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})")
        .arg(width)
        .arg(height)
        .toUtf8();
}

/// A message over a window, as the program shows it.
struct Shown {
    QWidget window;
    QMessageBox *box;

    explicit Shown(const Alert &alert)
    {
        window.resize(400, 300);
        window.show();
        box = alert.show(&window, [](bool) {});
        settle();
    }
    static void settle()
    {
        for (int i = 0; i < 5; ++i) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }
};

} // namespace

class TestMessageWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new VelgorStyle); }

    void everyMessageIsWholeOnThisScreen()
    {
        const QList<Alert> messages = everyMessage();
        for (const Alert &alert : messages) {
            const Shown shown(alert);
            const QMessageBox &box = *shown.box;
            QVERIFY2(QRect({}, box.screen()->availableSize()).contains(QRect({}, box.size())), qPrintable(alert.title));
            QCOMPARE(box.text(), alert.title);
            const QList<QLabel *> texts = textsOf(box);
            QCOMPARE(texts.size(), 2);
            for (const QLabel *label : texts) {
                const QString problem = problemWith(*label, box);
                QVERIFY2(problem.isEmpty(), qPrintable(alert.title + u'\n' + label->text() + u' ' + problem));
            }
            const QList<QAbstractButton *> buttons = box.buttons();
            for (const QAbstractButton *button : buttons) {
                QVERIFY(box.rect().contains(QRect(button->mapTo(&box, QPoint(0, 0)), button->size())));
                QVERIFY2(button->width() >= button->sizeHint().width(), qPrintable(button->text()));
            }
        }
    }

    void everyMessageIsWholeOnEveryScreen_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("dpi");
        for (const int dpi : {96, 130, 192}) {
            QTest::addRow("800, %d dpi", dpi) << 800 << 600 << dpi;
            QTest::addRow("1024, %d dpi", dpi) << 1024 << 700 << dpi;
            QTest::addRow("1920, %d dpi", dpi) << 1920 << 1080 << dpi;
        }
    }

    void everyMessageIsWholeOnEveryScreen()
    {
        QFETCH(const int, width);
        QFETCH(const int, height);
        QFETCH(const int, dpi);
        // Screens and resolution are settled when a program starts.
        const QTemporaryDir directory;
        QFile screens(directory.filePath(QStringLiteral("screens.json")));
        QVERIFY(screens.open(QIODevice::WriteOnly) && screens.write(screenOf(width, height)) > 0);
        screens.close();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(
            QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen:configfile=") + screens.fileName());
        environment.insert(QStringLiteral("QT_FONT_DPI"), QString::number(dpi));
        QProcess child;
        child.setProcessEnvironment(environment);
        child.setProcessChannelMode(QProcess::MergedChannels);
        child.start(QCoreApplication::applicationFilePath(),
            {QStringLiteral("tst_MessageWindow"), QStringLiteral("everyMessageIsWholeOnThisScreen")});
        QVERIFY(child.waitForFinished(120'000));
        const QByteArray said = child.readAll();
        QVERIFY2(child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0, said.constData());
    }

    void aMessageStaysWholeWhenTheFontGrows()
    {
        TestDesk desk(QStringLiteral("A"));
        const QFont font = QApplication::font();
        const Shown shown(AlertTexts::confirmExport(desk.content));
        QFont large = font;
        large.setPointSizeF(font.pointSizeF() * 2);
        QApplication::setFont(large);
        Shown::settle();
        const QList<QLabel *> texts = textsOf(*shown.box);
        QStringList problems;
        for (const QLabel *label : texts) {
            problems.append(problemWith(*label, *shown.box));
        }
        QApplication::setFont(font);
        QCOMPARE(problems, (QStringList{QString(), QString()}));
    }

    void whatIsLeftOutOfALongPathIsSaidByTheToolTip()
    {
        const QString word = QString(200, u'w');
        const Shown shown(
            {.title = QStringLiteral("Title"), .text = word, .acceptLabel = {}, .safeLabel = QStringLiteral("OK")});
        const QLabel *label = textsOf(*shown.box).last();
        QVERIFY(label->text().startsWith(u'w') && label->text().endsWith(u'w'));
        QVERIFY(label->text().contains(u'\u2026'));
        QVERIFY(label->toolTip().contains(word));
        QCOMPARE(textsOf(*shown.box).first()->toolTip(), QString());
    }

    void everyButtonHasALetterOfItsOwn()
    {
        const QList<Alert> messages = everyMessage();
        for (const Alert &alert : messages) {
            QStringList letters;
            for (const QString &label : {alert.safeLabel, alert.acceptLabel}) {
                if (!label.isEmpty()) {
                    const QString letter = QKeySequence::mnemonic(label).toString();
                    QVERIFY2(!letter.isEmpty() && !letters.contains(letter), qPrintable(label));
                    letters.append(letter);
                }
            }
        }
    }
};

VELGOR_WIDGET_TEST(TestMessageWindow)
#include "tst_MessageWindow.moc"

#include "WindowFixture.h"

#include "LibraryCheck.h"
#include "LibraryContentMainView.h"
#include "PatchRoles.h"
#include "ShownWidgets.h"
#include "TestLibraries.h"
#include "VelgorContentView.h"
#include "VelgorLibraryView.h"
#include "VelgorStyle.h"

#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QSignalSpy>
#include <QStatusBar>

namespace {

std::unique_ptr<QSettings> preferencesFor(const LibraryDirectory &directory)
{
    auto store =
        std::make_unique<QSettings>(directory.parentPath() + QStringLiteral("/preferences.ini"), QSettings::IniFormat);
    store->setValue(QStringLiteral("libraryDirectory"), directory.path());
    return store;
}

int seedOf(const QString &name)
{
    int seed = 1;
    for (const QChar character : name) {
        seed = seed * 31 % 65'521 + character.unicode();
    }
    return seed;
}

QAction *entryIn(const QList<QAction *> &actions, const QString &text)
{
    for (QAction *action : actions) {
        if (action->menu() != nullptr) {
            if (QAction *found = entryIn(action->menu()->actions(), text)) {
                return found;
            }
        } else if (QString(action->text()).remove(u'&') == text) {
            return action;
        }
    }
    return nullptr;
}

} // namespace

WindowFixture::WindowFixture(const LibraryDirectory &directory, std::chrono::milliseconds savePeriod)
    : preferences(preferencesFor(directory))
    , storage(preferences, savePeriod)
    , calls(storage)
    , state(directory.parentPath() + QStringLiteral("/state.ini"))
    , files(userFiles, &dialogs)
    , history(library, content, calls)
    , libraryEditor(library, content, history)
    , contentEditor(library, content, history)
    , contentFiles(content, files, history)
    , desk{library, content, storage, preferences, {libraryEditor, contentEditor, contentFiles},
          [this] { return std::make_unique<LibraryCheck>(library, storage, history); }}
    , m_parentPath(directory.parentPath())
{
    if (!qobject_cast<VelgorStyle *>(QApplication::style())) {
        QApplication::setStyle(new VelgorStyle);
    }
    QCoreApplication::setApplicationName(QStringLiteral("velgor"));
    window = std::make_unique<ContentView>(desk, systemColorScheme, state);
}

WindowFixture::~WindowFixture() = default;

std::unique_ptr<WindowFixture> WindowFixture::shown(const QString &patches, const QString &slots)
{
    auto directory = std::make_unique<const LibraryDirectory>();
    LibraryState stored;
    for (const QString &name : patches.split(u' ', Qt::SkipEmptyParts)) {
        stored.patches.append(patch(name));
    }
    if (!stored.patches.isEmpty()) {
        TestLibraries::save(*directory, stored);
    }
    auto fixture = std::make_unique<WindowFixture>(*directory);
    fixture->ownDirectory = std::move(directory);
    if (!fixture->open()) {
        return nullptr;
    }
    if (!slots.isEmpty()) {
        fixture->importList(slots);
    }
    return fixture;
}

bool WindowFixture::open()
{
    const QSignalSpy loaded(window.get(), &ContentView::libraryLoaded);
    window->show();
    const bool isShown =
        QTest::qWaitFor([&loaded] { return loaded.count() > 0; }, 60'000) && QTest::qWaitForWindowActive(window.get());
    settle();
    return isShown;
}

void WindowFixture::settle()
{
    constexpr int rounds = 5;
    for (int i = 0; i < rounds; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

VelgorPatch WindowFixture::patch(const QString &name, const QByteArray &version)
{
    const auto file =
        SPresetFile::fromData(TestRecords::fileBytes({TestRecords::patch(name, seedOf(name))}, {}, version));
    VelgorPatch made(file->patches.first(), file->userIRs.first(), file->headerDesc);
    // Pictures that are compared show it, and a minute may end between them.
    made.date = ReferenceDate{815'000'000.0};
    return made;
}

QString WindowFixture::presetFile(const QString &file, const QString &patches) const
{
    QList<SPatch> records;
    for (const QString &name : patches.split(u' ')) {
        records.append(patch(name).records->patchData);
    }
    const QString path = m_parentPath + u'/' + file;
    const QByteArray bytes = TestRecords::fileBytes(records);
    QFile target(path);
    if (!target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
    return path;
}

void WindowFixture::importList(const QString &patches)
{
    window->importFile(presetFile(QStringLiteral("list.prst"), patches));
    settle();
}

ContentListView *WindowFixture::contentList() const
{
    return window->columns().content()->list();
}

LibraryListView *WindowFixture::libraryList() const
{
    return window->columns().library()->list();
}

QString WindowFixture::libraryRows() const
{
    QStringList names;
    const QAbstractItemModel *model = libraryList()->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        names.append(model->index(row, 0).data().toString());
    }
    return names.join(u' ');
}

QString WindowFixture::slotNames() const
{
    QStringList names;
    const QAbstractItemModel *model = contentList()->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        names.append(model->index(row, 0).data(PatchRoles::Name).toString());
    }
    return names.join(u' ');
}

QString WindowFixture::selectedRows(const PatchListView *list) const
{
    QList<int> rows;
    const QModelIndexList indexes = list->selectionModel()->selectedIndexes();
    for (const QModelIndex &index : indexes) {
        rows.append(index.row());
    }
    std::sort(rows.begin(), rows.end());
    QStringList texts;
    for (const int row : std::as_const(rows)) {
        texts.append(QString::number(row));
    }
    return texts.join(u' ');
}

QString WindowFixture::selectedName() const
{
    const auto found = library.getPatchFromId(library.selection());
    return found ? found->patch->name : QString();
}

bool WindowFixture::isSaid(const QString &label) const
{
    return ShownWidgets::labels(*window).contains(label);
}

QString WindowFixture::status() const
{
    ShownWidgets::catchUp();
    return window->statusBar()->findChild<QLabel *>()->text();
}

QString WindowFixture::libraryStatus() const
{
    ShownWidgets::catchUp();
    const QList<QLabel *> labels = window->statusBar()->findChildren<QLabel *>();
    const QString last = labels.last()->text();
    return last.isEmpty() ? labels.first()->text() : last;
}

QAbstractButton *WindowFixture::button(const QString &name) const
{
    return ShownWidgets::named<QAbstractButton>(*window, name);
}

bool WindowFixture::isEnabled(const QString &name) const
{
    const QAbstractButton *found = button(name);
    return found != nullptr && found->isEnabled();
}

bool WindowFixture::press(const QString &name) const
{
    if (!isEnabled(name)) {
        return false;
    }
    QTest::mouseClick(button(name), Qt::LeftButton);
    settle();
    return true;
}

QAction *WindowFixture::menuEntry(const QString &text) const
{
    ShownWidgets::catchUp();
    return entryIn(window->menuBar()->actions(), text);
}

bool WindowFixture::choose(const QString &text) const
{
    QAction *action = menuEntry(text);
    if (action == nullptr || !action->isEnabled()) {
        return false;
    }
    action->trigger();
    settle();
    return true;
}

void WindowFixture::click(PatchListView *list, int row, Qt::KeyboardModifiers modifiers)
{
    const QModelIndex index = list->model()->index(row, 0);
    list->scrollTo(index);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, modifiers, list->visualRect(index).center());
    settle();
}

void WindowFixture::key(QWidget *widget, int key, Qt::KeyboardModifiers modifiers)
{
    widget->setFocus();
    QTest::keyClick(widget, static_cast<Qt::Key>(key), modifiers);
    settle();
}

QMessageBox *WindowFixture::box() const
{
    const QList<QMessageBox *> boxes = window->findChildren<QMessageBox *>();
    const auto found =
        std::find_if(boxes.begin(), boxes.end(), [](const QMessageBox *box) { return box->isVisible(); });
    return found != boxes.end() ? *found : nullptr;
}

QString WindowFixture::message() const
{
    settle();
    const QMessageBox *shown = box();
    return shown != nullptr ? shown->text() : QString();
}

QString WindowFixture::messageText() const
{
    const QMessageBox *shown = box();
    return shown != nullptr ? shown->informativeText() : QString();
}

bool WindowFixture::answer(const QString &name) const
{
    settle();
    const QMessageBox *shown = box();
    const QList<QAbstractButton *> buttons = shown != nullptr ? shown->buttons() : QList<QAbstractButton *>();
    for (QAbstractButton *candidate : buttons) {
        if (QString(candidate->text()).remove(u'&') == name) {
            QTest::mouseClick(candidate, Qt::LeftButton);
            settle();
            return true;
        }
    }
    return false;
}

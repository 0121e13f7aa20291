#include "WindowFixture.h"

#include "LibraryCheck.h"
#include "LibraryContentMainView.h"
#include "PatchRoles.h"
#include "ShownWidgets.h"
#include "UserFiles.h"
#include "VelgorContentView.h"
#include "VelgorLibraryView.h"
#include "VelgorStyle.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QSignalSpy>
#include <QStatusBar>

namespace {

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
    : DeskFixture(directory, savePeriod, std::make_unique<UserFiles>())
    , state(parentPath() + QStringLiteral("/state.ini"))
    , desk{library, content, storage, preferences, {libraryEditor, contentEditor, contentFiles},
          [this] { return std::make_unique<LibraryCheck>(library, storage, history); }}
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
    LibraryState stored;
    for (const QString &name : wordsOf(patches)) {
        stored.patches.append(patch(name));
    }
    auto fixture = std::make_unique<WindowFixture>(LibraryDirectory());
    if (!stored.patches.isEmpty()) {
        fixture->save(stored);
        fixture->lines.take();
    }
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
        QTest::qWaitFor([&loaded] { return loaded.count() > 0; }, 180'000) && QTest::qWaitForWindowActive(window.get());
    settle();
    return isShown;
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
    const QString path = parentPath() + u'/' + file;
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

QLineEdit *WindowFixture::field(const char *name) const
{
    return ShownWidgets::named<QLineEdit>(*window, QLatin1String(name));
}

QString WindowFixture::labelOf(const QString &name) const
{
    return button(name)->text();
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

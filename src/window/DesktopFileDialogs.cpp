#include "DesktopFileDialogs.h"

#include "WindowState.h"

#include <QAbstractItemView>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QStandardPaths>

namespace {

/// Where preset files are looked for at first: not where the program happens to have been started.
QString firstDirectory()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

/// Preset files first; other names are a choice away.
void filterPresetFiles(QFileDialog &dialog)
{
    dialog.setNameFilters({DesktopFileDialogs::tr("Preset files (*.prst)"), DesktopFileDialogs::tr("All files (*)")});
}

/// Mends the dialog that Qt draws itself, where the desktop has none.
void mendOwnDialog(QFileDialog &dialog)
{
    const QList<QLineEdit *> fields = dialog.findChildren<QLineEdit *>();
    for (QLineEdit *field : fields) {
        // A list of completions that is open when the dialog closes leaves the window without the focus.
        field->setCompleter(nullptr);
        // While a path is typed, each directory on its way gets selected, and a selection that stays goes before what
        // was typed.
        QObject::connect(field, &QLineEdit::textChanged, &dialog, [field, &dialog] {
            const QList<QAbstractItemView *> lists = dialog.findChildren<QAbstractItemView *>();
            for (QAbstractItemView *list : lists) {
                if (field->hasFocus() && list->selectionModel()) {
                    list->clearSelection();
                }
            }
        });
    }
}

/// One path, or nothing when the user cancelled.
std::optional<QString> ask(QFileDialog &dialog)
{
    mendOwnDialog(dialog);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    return dialog.selectedFiles().constFirst();
}

} // namespace

DesktopFileDialogs::DesktopFileDialogs(WindowState &state)
    : m_state(state)
{
}

std::optional<QString> DesktopFileDialogs::askOpenFile(const QString &title)
{
    const QString used = m_state.importDirectory();
    QFileDialog dialog(m_parent, title, used.isEmpty() ? firstDirectory() : used);
    dialog.setFileMode(QFileDialog::ExistingFile);
    filterPresetFiles(dialog);
    std::optional<QString> chosen = ask(dialog);
    if (chosen) {
        m_state.setImportDirectory(QFileInfo(*chosen).absolutePath());
    }
    return chosen;
}

std::optional<QString> DesktopFileDialogs::askSaveFile(const QString &title, const QString &proposedName)
{
    const QString used = m_state.exportDirectory();
    const QString directory = used.isEmpty() ? m_state.importDirectory() : used;
    QFileDialog dialog(m_parent, title, directory.isEmpty() ? firstDirectory() : directory);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    filterPresetFiles(dialog);
    dialog.setDefaultSuffix(QStringLiteral("prst"));
    dialog.selectFile(proposedName);
    std::optional<QString> chosen = ask(dialog);
    if (chosen) {
        m_state.setExportDirectory(QFileInfo(*chosen).absolutePath());
    }
    return chosen;
}

std::optional<QString> DesktopFileDialogs::askDirectory(const QString &title)
{
    QFileDialog dialog(m_parent, title, QDir::homePath());
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    return ask(dialog);
}

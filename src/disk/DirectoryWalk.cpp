#include "DirectoryWalk.h"

#include "Utf8Text.h"

#include <QFile>

#ifdef Q_OS_WIN
#include <filesystem>
#include <system_error>
#else
#include <cerrno>
#include <memory>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

using Kind = DirectoryWalk::Kind;

#ifdef Q_OS_WIN

namespace fs = std::filesystem;

namespace {

Kind kindOfEntry(const fs::directory_entry &entry)
{
    std::error_code ignored;
    if (entry.is_symlink(ignored)) {
        return Kind::Other;
    }
    if (entry.is_directory(ignored)) {
        return Kind::Directory;
    }
    return entry.is_regular_file(ignored) ? Kind::RegularFile : Kind::Other;
}

} // namespace

bool DirectoryWalk::visit(const QString &directory, const Visit &visit)
{
    std::error_code error;
    const fs::path root = directory.toStdWString();
    const fs::directory_iterator unlisted(root, error);
    if (error) {
        return false;
    }
    fs::recursive_directory_iterator entry(root, fs::directory_options::skip_permission_denied, error);
    if (error || !fs::is_directory(root, error)) {
        return false;
    }
    const qsizetype rootLength = directory.endsWith(u'/') ? directory.size() : directory.size() + 1;
    while (entry != fs::recursive_directory_iterator()) {
        const Kind kind = kindOfEntry(*entry);
        std::error_code denied;
        if (kind == Kind::Directory) {
            const fs::directory_iterator below(entry->path(), denied);
        }
        visit({.path = QString::fromStdWString(entry->path().generic_wstring()).sliced(rootLength),
            .kind = kind,
            .isListed = !denied});
        entry.increment(error);
        if (error) {
            return false;
        }
    }
    return true;
}

#else

namespace {

struct CloseDirectory {
    void operator()(DIR *stream) const { ::closedir(stream); }
};

/// A directory that is being read.
struct Level {
    std::unique_ptr<DIR, CloseDirectory> stream;
    QString prefix; ///< of the paths of its entries
    bool isUtf8 = true; ///< the path that leads here
};

enum class Opening { Done, Denied, Failed };

/// The directory comes as a new level, with an empty prefix.
Opening open(int parent, const char *name, int flags, std::vector<Level> &levels)
{
    const int handle = ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags);
    DIR *stream = handle < 0 ? nullptr : ::fdopendir(handle);
    if (!stream) {
        const bool isDenied = handle < 0 && errno == EACCES;
        if (handle >= 0) {
            ::close(handle);
        }
        return isDenied ? Opening::Denied : Opening::Failed;
    }
    levels.push_back({.stream = std::unique_ptr<DIR, CloseDirectory>(stream), .prefix = {}});
    return Opening::Done;
}

/// Not every file system says in its list what an entry is.
Kind kindByStatus(DIR *stream, const char *name)
{
    struct stat status { };
    if (::fstatat(::dirfd(stream), name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return Kind::Other;
    }
    if (S_ISDIR(status.st_mode)) {
        return Kind::Directory;
    }
    return S_ISREG(status.st_mode) ? Kind::RegularFile : Kind::Other;
}

Kind kindOfEntry(DIR *stream, const dirent &entry)
{
    switch (entry.d_type) {
    case DT_REG:
        return Kind::RegularFile;
    case DT_DIR:
        return Kind::Directory;
    case DT_UNKNOWN:
        return kindByStatus(stream, &entry.d_name[0]);
    default:
        return Kind::Other;
    }
}

/// QFile::decodeName() without its leaving out of a U+FEFF at the start; nothing for what is not UTF-8.
std::optional<QString> decodedName(const char *name)
{
    std::optional<QString> text = Utf8Text::decode(name);
#ifdef Q_OS_DARWIN
    // The file system takes letters and their accents apart.
    if (text) {
        text = text->normalized(QString::NormalizationForm_C);
    }
#endif
    return text;
}

bool isDots(const char *name)
{
    return qstrcmp(name, ".") == 0 || qstrcmp(name, "..") == 0;
}

/// The next entry of the innermost level; none at its end, where `errno` tells whether reading failed.
const dirent *next(const Level &level)
{
    errno = 0;
    const dirent *entry = ::readdir(level.stream.get());
    while (entry && isDots(&entry->d_name[0])) {
        entry = ::readdir(level.stream.get());
    }
    return entry;
}

} // namespace

bool DirectoryWalk::visit(const QString &directory, const Visit &visit)
{
    std::vector<Level> levels;
    const Opening root = open(AT_FDCWD, QFile::encodeName(directory).constData(), 0, levels);
    if (root != Opening::Done) {
        return false;
    }
    while (!levels.empty()) {
        const dirent *entry = next(levels.back());
        if (!entry) {
            if (errno != 0 && errno != EACCES) {
                return false;
            }
            levels.pop_back();
            continue;
        }
        DIR *stream = levels.back().stream.get();
        const std::optional<QString> name = decodedName(&entry->d_name[0]);
        Entry found{.path = levels.back().prefix + (name ? *name : QFile::decodeName(&entry->d_name[0])),
            .kind = kindOfEntry(stream, *entry),
            .isUtf8 = levels.back().isUtf8 && name};
        Opening opening = Opening::Denied;
        if (found.kind == Kind::Directory) {
            opening = open(::dirfd(stream), &entry->d_name[0], O_NOFOLLOW, levels);
            found.isListed = opening == Opening::Done;
        }
        visit(found);
        if (opening == Opening::Done) {
            levels.back().prefix = found.path + u'/';
            levels.back().isUtf8 = found.isUtf8;
        } else if (opening == Opening::Failed) {
            return false;
        }
    }
    return true;
}

#endif

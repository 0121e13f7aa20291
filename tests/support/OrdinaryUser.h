#pragma once

#include "LibraryDirectory.h"

#include <unistd.h>

/// Owns the directory and acts as an ordinary user while the object lives, as rights mean nothing to root. Where the
/// tests run as somebody else nothing changes. Ends with the given rights of the directory set back.
class OrdinaryUser {
public:
    OrdinaryUser(const LibraryDirectory &directory, mode_t rights)
        : m_path(QFile::encodeName(directory.path()))
        , m_isRoot(geteuid() == 0)
    {
        constexpr uid_t nobody = 65534;
        if (m_isRoot) {
            std::ignore = chown(m_path.constData(), nobody, gid_t(-1));
            std::ignore = chmod(QFile::encodeName(directory.parentPath()).constData(), 0755);
            std::ignore = seteuid(nobody);
        }
        std::ignore = chmod(m_path.constData(), rights);
    }
    ~OrdinaryUser()
    {
        std::ignore = chmod(m_path.constData(), 0755);
        if (m_isRoot) {
            std::ignore = seteuid(0);
        }
    }
    Q_DISABLE_COPY_MOVE(OrdinaryUser)

private:
    QByteArray m_path;
    bool m_isRoot;
};

#pragma once

#include <QtGlobal>

#include <unistd.h>

/// An open file of a POSIX system, closed with the object.
class FileHandle {
public:
    explicit FileHandle(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    ~FileHandle()
    {
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
        }
    }
    Q_DISABLE_COPY_MOVE(FileHandle)

    [[nodiscard]] int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

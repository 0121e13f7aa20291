#pragma once

#include <QtGlobal>

#include <cerrno>

/// Makes one system call of this process fail, once, during its life: the one after `before` others of its kind. The
/// others go through. The test's own executable defines these calls, and the libraries use those.
class FailingCall {
public:
    enum class Call { Open, Read, Write, Stat, Sync, SyncAll, Rename, MoveOnly, Unlink, Thread };

    /// An error for Call::Read that is none: there are no more bytes.
    static constexpr int endOfFile = -1;

    FailingCall(Call call, int error, int before = 0);
    ~FailingCall();
    Q_DISABLE_COPY_MOVE(FailingCall)

    /// True when the call was made, and failed.
    [[nodiscard]] bool wasMade() const;

private:
    Call m_call;
};

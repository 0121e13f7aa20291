#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

/// What a second start of the program tells the first, and the answer.
namespace InstanceMessage {

/// More bytes than this are no request. A program argument cannot come near it.
inline constexpr qsizetype longest = qsizetype(512) * 1024;

enum class State { Unfinished, Wrong, Complete };

struct Request {
    State state = State::Unfinished;
    QString file = {}; ///< an absolute path, or empty when only the window is asked for
};

/// `file` is an absolute path or empty.
[[nodiscard]] QByteArray encode(const QString &file);
/// Reads what has come in so far.
[[nodiscard]] Request decode(QByteArrayView bytes);
/// What the first sends back when it has understood.
[[nodiscard]] QByteArray answer();

} // namespace InstanceMessage

#pragma once

#include "StartRequest.h"

#include <QByteArray>
#include <QByteArrayView>

/// What a second start of the program tells the first, and the answer.
///
/// The two may be of different versions of the program, as an upgrade does not end the one that runs. A request is a
/// line with the version of this format, then fields of the form "name=value" that end with a zero byte each, then one
/// more zero byte. Fields that the first does not know are passed over, so that a newer start can give hints that an
/// older first may do without. What it must not do without makes a new action, or a new version of the format: a first
/// that does not know it says so in its answer, and the second start tells the user.
namespace InstanceMessage {

/// More bytes than this are no request. A program argument cannot come near it.
inline constexpr qsizetype longest = qsizetype(512) * 1024;

enum class State {
    Unfinished,
    Wrong,
    NotKnown, ///< a request of a program that can more or less than this one
    Complete,
};

struct Reading {
    State state = State::Unfinished;
    StartRequest request = {};
};

[[nodiscard]] QByteArray encode(const StartRequest &request);
/// Reads what has come in so far.
[[nodiscard]] Reading decode(QByteArrayView bytes);

enum class Answer {
    Unfinished,
    Wrong, ///< no program of ours has written it
    Yes,
    NotKnown,
};

/// What the first sends back when it has understood the request.
inline constexpr QByteArrayView yes = "yes\n";
/// What it sends back when it does not know what it is asked for.
inline constexpr QByteArrayView notKnown = "not known\n";
/// Reads what has come back so far.
[[nodiscard]] Answer decodeAnswer(QByteArrayView bytes);
/// No answer is longer than this.
inline constexpr qsizetype longestAnswer = 64;

} // namespace InstanceMessage

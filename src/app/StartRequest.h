#pragma once

#include "Activation.h"

#include <QString>

/// What a start of the program asks for.
struct StartRequest {
    enum class Action {
        Show, ///< the window alone
        Open, ///< the preset file `file`
        NewList, ///< a list of 99 default patches
    };

    Action action = Action::Show;
    QString file = {}; ///< for Open: an absolute path; otherwise empty
    Activation activation = {};

    /// `file` is an absolute path, or empty when there is none to open.
    [[nodiscard]] static StartRequest toOpen(const QString &file)
    {
        return {.action = file.isEmpty() ? Action::Show : Action::Open, .file = file};
    }

    friend bool operator==(const StartRequest &, const StartRequest &) = default;
};

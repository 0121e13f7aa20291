#pragma once

#include <QCoreApplication>
#include <QString>

#include <utility>
#include <variant>

/// Why something did not succeed.
struct Problem {
    Q_DECLARE_TR_FUNCTIONS(Problem)

public:
    enum class What {
        Failed,
        Malformed, ///< there, but not what it should be
        Absent, ///< there is nothing in this place
        Taken, ///< there is something in this place
        Touched, ///< failed, and what was there before is gone
        Cancelled, ///< the user changed their mind; there is nothing to tell
    };

    What what = What::Failed;
    QString where = {}; ///< the file or directory; may be empty
    QString why = {}; ///< the system's reason or ours, without the file; translated
    bool mayPass = false; ///< may succeed another time, as with a file that is there and may not be read

    /// What the user is told.
    [[nodiscard]] QString text() const { return where.isEmpty() ? why : tr("%1: %2").arg(where, why); }
    /// The same about the file as the user called it.
    [[nodiscard]] Problem in(const QString &place) const
    {
        return {.what = what, .where = place, .why = why, .mayPass = mayPass};
    }
};

/// The value of what gives none when it succeeds.
struct Success { };

/// A value, or the problem that there was instead.
template <typename Value = Success>
class Result {
public:
    Result(const Value &value)
        : m_outcome(value)
    {
    }
    Result(Value &&value)
        : m_outcome(std::move(value))
    {
    }
    Result(const Problem &problem)
        : m_outcome(problem)
    {
    }

    [[nodiscard]] explicit operator bool() const { return std::holds_alternative<Value>(m_outcome); }
    /// Not without a value.
    [[nodiscard]] const Value &operator*() const & { return std::get<Value>(m_outcome); }
    [[nodiscard]] Value &operator*() & { return std::get<Value>(m_outcome); }
    [[nodiscard]] Value &&operator*() && { return std::get<Value>(std::move(m_outcome)); }
    [[nodiscard]] const Value *operator->() const { return &std::get<Value>(m_outcome); }
    [[nodiscard]] Value *operator->() { return &std::get<Value>(m_outcome); }
    /// Not with one.
    [[nodiscard]] const Problem &problem() const { return std::get<Problem>(m_outcome); }

private:
    std::variant<Value, Problem> m_outcome;
};

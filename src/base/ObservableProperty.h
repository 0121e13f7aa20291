#pragma once

#include <QObject>
#include <QtGlobal>

/// Compares, assigns, announces: a setter that changes nothing announces nothing.
template <typename Object, typename Value>
void setObservable(Object *object, Value &member, const Value &value, void (Object::*changed)())
{
    if (!(member == value)) {
        member = value;
        Q_EMIT(object->*changed)();
    }
}

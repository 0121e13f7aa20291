#include "Activation.h"

#include <QtGlobal>

#include <algorithm>

namespace {

constexpr auto tokenVariable = "XDG_ACTIVATION_TOKEN";
constexpr auto startupVariable = "DESKTOP_STARTUP_ID";

QByteArray soundValueOf(const char *variable)
{
    const QByteArray value = qgetenv(variable);
    return Activation::isSound(value) ? value : QByteArray();
}

} // namespace

Activation Activation::extractFromEnvironment()
{
    Activation found{.token = soundValueOf(tokenVariable), .startupId = soundValueOf(startupVariable)};
    qunsetenv(tokenVariable);
    return found;
}

void Activation::removeStartupIdFromEnvironment()
{
    qunsetenv(startupVariable);
}

bool Activation::isSound(QByteArrayView text)
{
    constexpr qsizetype longest = 512;
    const auto isGraphic = [](char letter) { return letter > ' ' && letter <= '~'; };
    return !text.isEmpty() && text.size() <= longest && std::all_of(text.begin(), text.end(), isGraphic);
}

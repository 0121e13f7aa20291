#include "SystemColorScheme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEvent>
#include <QFileInfo>
#include <QPalette>
#include <QTimer>

namespace {

constexpr QLatin1StringView portalPath{"/org/freedesktop/portal/desktop"};
constexpr QLatin1StringView settingsInterface{"org.freedesktop.portal.Settings"};
constexpr QLatin1StringView appearanceGroup{"org.freedesktop.appearance"};
constexpr QLatin1StringView schemeKey{"color-scheme"};

/// Asking for a session bus that does not run may start one, which takes its time.
bool sessionBusRuns()
{
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")
        || QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

bool hasDarkWindow(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::Window).lightness() < 128;
}

SystemColorScheme::Preference preferenceOf(const QVariant &value)
{
    // Older portals wrap the value twice.
    QVariant inner = value;
    while (inner.canConvert<QDBusVariant>()) {
        inner = inner.value<QDBusVariant>().variant();
    }
    switch (inner.toUInt()) {
    case 1:
        return SystemColorScheme::Preference::Dark;
    case 2:
        return SystemColorScheme::Preference::Light;
    default:
        return SystemColorScheme::Preference::None;
    }
}

} // namespace

SystemColorScheme::SystemColorScheme()
    : m_paletteIsDark(hasDarkWindow(QGuiApplication::palette()))
{
#ifdef Q_OS_LINUX
    askDesktop();
#else
    qApp->installEventFilter(this);
#endif
}

bool SystemColorScheme::isDark() const
{
    return m_preference == Preference::None ? m_paletteIsDark : m_preference == Preference::Dark;
}

template <typename Change>
void SystemColorScheme::announceChangeOf(Change change)
{
    const bool before = isDark();
    change();
    if (isDark() != before) {
        Q_EMIT changed();
    }
}

void SystemColorScheme::setPreference(Preference preference)
{
    announceChangeOf([&] { m_preference = preference; });
}

void SystemColorScheme::setPalette(const QPalette &palette)
{
    announceChangeOf([&] { m_paletteIsDark = hasDarkWindow(palette); });
}

bool SystemColorScheme::eventFilter(QObject *watched, QEvent *event)
{
    // Every window gets the event; one look at the palette is enough for all of them.
    if (event->type() == QEvent::ThemeChange && !m_paletteReadIsPending) {
        m_paletteReadIsPending = true;
        QTimer::singleShot(0, this, &SystemColorScheme::readSystemPalette);
    }
    return QObject::eventFilter(watched, event);
}

void SystemColorScheme::readSystemPalette()
{
    m_paletteReadIsPending = false;
    // The application's own palette hides the system's. Nothing is painted between the two calls.
    const QPalette own = QGuiApplication::palette();
    QApplication::setPalette(QPalette());
    const QPalette system = QGuiApplication::palette();
    QApplication::setPalette(own);
    setPalette(system);
}

void SystemColorScheme::askDesktop()
{
    if (!sessionBusRuns()) {
        return;
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    // A slot of a type that is not known yet is refused without a word.
    qRegisterMetaType<QDBusVariant>();
    // Without the sender's name: resolving it would wait for the bus.
    bus.connect(QString(), portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
        SLOT(adoptSetting(QString, QString, QDBusVariant)));
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), portalPath, settingsInterface, QStringLiteral("Read"));
    question << QString(appearanceGroup) << QString(schemeKey);
    auto *answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (!reply.isError()) {
            adoptSetting(appearanceGroup, schemeKey, reply.value());
        }
        answer->deleteLater();
    });
}

void SystemColorScheme::adoptSetting(const QString &group, const QString &key, const QDBusVariant &value)
{
    if (group == appearanceGroup && key == schemeKey) {
        setPreference(preferenceOf(value.variant()));
    }
}

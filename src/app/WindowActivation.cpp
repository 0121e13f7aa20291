#include "WindowActivation.h"

#include "X11Startup.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWindow>
#include <QtGlobal>

namespace {

bool isOnWayland()
{
    return QGuiApplication::platformName().startsWith(QLatin1StringView("wayland"));
}

/// Qt's plugin for Wayland looks for the token in the environment when a window is activated. It must not stay there
/// for the programs that are started later, whether Qt has taken it or not.
class TokenInEnvironment {
public:
    explicit TokenInEnvironment(const QByteArray &token)
    {
        if (isOnWayland() && !token.isEmpty()) {
            qputenv(variable, token);
        }
    }
    ~TokenInEnvironment() { qunsetenv(variable); }
    Q_DISABLE_COPY_MOVE(TokenInEnvironment)

private:
    static constexpr auto variable = "XDG_ACTIVATION_TOKEN";
};

/// Compositors activate no window that has no picture yet.
class FirstExposure : public QObject {
public:
    FirstExposure(QWidget &window, const Activation &activation)
        : QObject(&window)
        , m_window(window)
        , m_activation(activation)
    {
        m_window.windowHandle()->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Expose && m_window.windowHandle()->isExposed()) {
            watched->removeEventFilter(this);
            // It is painted after this event.
            QMetaObject::invokeMethod(this, &FirstExposure::activate, Qt::QueuedConnection);
        }
        return false;
    }

private:
    void activate()
    {
        WindowActivation::raise(m_window, m_activation, [this] { m_window.activateWindow(); });
        deleteLater();
    }

    QWidget &m_window;
    Activation m_activation;
};

} // namespace

void WindowActivation::raise(QWidget &window, const Activation &activation, const std::function<void()> &raise)
{
    {
        const TokenInEnvironment token(activation.forWayland());
        raise();
    }
    if (window.windowHandle()) {
        X11Startup::activate(*window.windowHandle(), activation.forX11());
    }
}

void WindowActivation::activateOnceShown(QWidget &window, const Activation &activation)
{
    if (isOnWayland() && !activation.forWayland().isEmpty() && window.windowHandle()) {
        new FirstExposure(window, activation);
    }
}

#pragma once

#include <QObject>

class QDBusVariant;
class QPalette;

/// Whether the desktop is dark, for those who let the window follow it. Starts with the lightness of the palette that
/// the application has when this is made, so make it before the first applyLook(). Later the desktop's own setting
/// counts, where there is one; nothing here waits for it, and nothing fails without it.
class SystemColorScheme : public QObject {
    Q_OBJECT

public:
    /// What desktops call their setting "color-scheme".
    enum class Preference { None = 0, Dark = 1, Light = 2 };

    SystemColorScheme();

    [[nodiscard]] bool isDark() const;

    /// Takes over what the desktop prefers; `None` falls back on the lightness of its palette.
    void setPreference(Preference preference);
    /// Takes over the lightness of the desktop's palette.
    void setPalette(const QPalette &palette);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void adoptSetting(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void askDesktop();
    void readSystemPalette();
    template <typename Change>
    void announceChangeOf(Change change);

    Preference m_preference = Preference::None;
    bool m_paletteIsDark = false;
    bool m_paletteReadIsPending = false;
};

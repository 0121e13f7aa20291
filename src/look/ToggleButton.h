#pragma once

#include <QPushButton>

/// A flag with a box: empty while it is off, ticked on the tone's colour while it is on. Round lamps would look as if
/// only one could be chosen; any number of them may be on. A label that does not fit is elided and shown as the tool
/// tip, unless the button has a tool tip of its own.
class ToggleButton : public QPushButton {
    Q_OBJECT

public:
    enum class Tone { Accent, Instrument, Usage, Style };

    explicit ToggleButton(const QString &text, Tone tone, QWidget *parent = nullptr);

    [[nodiscard]] Tone tone() const { return m_tone; }
    /// What a set flag of this tone is filled with in the present scheme.
    [[nodiscard]] static QColor toneColour(Tone tone);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QRectF textRect() const;
    [[nodiscard]] QString shownText() const;
    [[nodiscard]] bool isElided() const { return shownText() != text(); }

    Tone m_tone;
};

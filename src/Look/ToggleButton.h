#pragma once

#include <QPushButton>

/// A flag with a lamp: a ring while it is off, a disc on the tone's colour while it is on. Toggles stand apart from
/// each other, because any number of them may be on. A label that does not fit is elided and shown as the tool tip,
/// unless the button has a tool tip of its own.
class ToggleButton : public QPushButton {
    Q_OBJECT

public:
    enum class Tone { Accent, Instrument, Usage, Style };

    explicit ToggleButton(const QString &text, Tone tone, QWidget *parent = nullptr);

    [[nodiscard]] Tone tone() const { return m_tone; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QRectF textRect() const;
    [[nodiscard]] QString shownText() const;
    [[nodiscard]] bool isElided() const;
    [[nodiscard]] QColor toneColour() const;

    Tone m_tone;
};

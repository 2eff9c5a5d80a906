#pragma once

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QWidget>

namespace ostrivane {

/// A piece of plain text in the theme's colours. Says its text to assistive programs. Setting the same text again does
/// nothing. Text that does not fit is elided and then has a tooltip, unless it wraps.
class TextLabel final : public QWidget, public AccessibleSentence {
    Q_OBJECT
public:
    explicit TextLabel(TypeRole role = TypeRole::body, Tone tone = Tone::text, QWidget* parent = nullptr);

    void setText(const QString& text);
    const QString& text() const { return shown; }
    void setTone(Tone tone);
    void setElideMode(Qt::TextElideMode mode); ///< right at first; none: the label is never narrower than its text
    void setWraps(bool wraps);
    void setAlignment(Qt::Alignment alignment); ///< leading and centred vertically at first
    /// Keeps room for this text, so that what stands beside does not move as figures change.
    void setReserved(const QString& widest);
    /// Digits all as wide as each other.
    void setTabular(bool tabular);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return wraps; }
    int heightForWidth(int width) const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::StaticText; }
    QString accessibleLabel() const override { return shown; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    int textWidth(const QString& text) const;
    int naturalWidth() const;
    void updateToolTip();

    QString shown;
    QString reserved;
    QString ownToolTip;
    TypeRole lettering;
    Tone ink;
    Qt::TextElideMode elide = Qt::ElideRight;
    Qt::Alignment place = Qt::AlignLeading | Qt::AlignVCenter;
    bool wraps = false;
    bool tabular = false;
};

} // namespace ostrivane

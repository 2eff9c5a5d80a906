#pragma once

#include <QAbstractButton>
#include <QPushButton>

#include <optional>
#include <string>
#include <string_view>

namespace ostrivane {

enum class Tone;

/// What a button means. `confirming` fills with the colour of danger: the confirming button of a dialog about something
/// that cannot be undone, nothing else.
enum class ButtonKind { plain, primary, destructive, confirming };

/// A push button as the style paints it.
class PushButton final : public QPushButton {
    Q_OBJECT
public:
    explicit PushButton(const QString& text, ButtonKind kind = ButtonKind::plain, QWidget* parent = nullptr);
    void setSmall(bool isSmall);
    /// One of the program's icons ahead of the text.
    /// @param tone  absent: of the text
    void setIconName(std::string_view name, std::optional<Tone> tone = std::nullopt);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ButtonKind meaning;
    std::string iconName;
    std::optional<Tone> iconTone;
    bool small = false;
};

/// A square button of one icon, 28 wide and high. `name` is its tooltip and what assistive programs call it.
class IconButton final : public QAbstractButton {
    Q_OBJECT
public:
    IconButton(std::string_view icon, const QString& name, QWidget* parent = nullptr);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::string icon;
};

/// A text that leads somewhere.
class LinkButton final : public QAbstractButton {
    Q_OBJECT
public:
    explicit LinkButton(const QString& text, QWidget* parent = nullptr);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// On or off, 32 by 18. Its accessible name must be set.
class Switch final : public QAbstractButton {
    Q_OBJECT
public:
    explicit Switch(const QString& name, QWidget* parent = nullptr);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace ostrivane

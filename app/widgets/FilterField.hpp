#pragma once

#include <QLineEdit>

namespace ostrivane {

class IconButton;

/// A field that narrows a list down, with the sign of a search and a button that clears it. Escape clears it too;
/// in an empty one it is left to the window.
class FilterField final : public QLineEdit {
    Q_OBJECT
public:
    explicit FilterField(const QString& placeholder, QWidget* parent = nullptr);
    /// Stands at the right end while the field is empty: "Ctrl F".
    void setShortcutText(const QString& text);
    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void placeParts();

    QString shortcut;
    IconButton* clearButton = nullptr;
};

} // namespace ostrivane

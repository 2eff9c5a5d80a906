#pragma once

#include <QWidget>

namespace ostrivane {

class TextLabel;

/// A line that says why a figure is missing, with the sign for information.
class InfoNote final : public QWidget {
    Q_OBJECT
public:
    explicit InfoNote(QWidget* parent = nullptr);
    void setText(const QString& text); ///< hidden when empty

private:
    TextLabel* label = nullptr;
};

} // namespace ostrivane

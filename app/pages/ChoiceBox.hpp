#pragma once

#include <QStringList>
#include <QWidget>

class QComboBox;

namespace ostrivane {

class SegmentedControl;

/// One of a few choices: side by side, or as a menu where large lettering leaves no room for that.
class ChoiceBox final : public QWidget {
    Q_OBJECT
public:
    /// @param widest  pixels that there is room for
    ChoiceBox(const QString& name, const QStringList& titles, int widest, QWidget* parent = nullptr);
    int index() const;
    void setIndex(int index); ///< signals nothing

Q_SIGNALS:
    /// The user chose another one.
    void indexChosen(int index);

private:
    SegmentedControl* segments = nullptr; ///< or null
    QComboBox* menu = nullptr;            ///< or null
};

} // namespace ostrivane

#pragma once

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/Theme.hpp"

#include <QString>
#include <QWidget>

#include <cstddef>
#include <vector>

namespace ostrivane {

/// A line of a `KeyValueList`. An empty key makes a line across.
struct KeyValue {
    QString key;
    QString value;
    Tone tone = Tone::text;

    friend bool operator==(const KeyValue&, const KeyValue&) = default;
};

/// Names at the left, values at the right, one below the other.
class KeyValueList final : public QWidget, public AccessibleSentence {
    Q_OBJECT
public:
    explicit KeyValueList(QWidget* parent = nullptr);
    void set(std::vector<KeyValue> lines);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::StaticText; }
    QString accessibleLabel() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    /// Room for the figure, ahead of which the name stands.
    int valueWidth(const KeyValue& line) const;
    QRect lineRect(std::size_t index) const;

    std::vector<KeyValue> lines;
};

} // namespace ostrivane

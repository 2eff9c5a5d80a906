#pragma once

#include "app/widgets/Accessibility.hpp"

#include <QWidget>

class QHBoxLayout;
class QVBoxLayout;

namespace ostrivane {

class TextLabel;

/// A flat sheet that holds one subject: a title, an optional note behind it, controls at the right, the body below.
class Card final : public QWidget, public AccessibleSentence {
    Q_OBJECT
public:
    explicit Card(const QString& title = {}, QWidget* parent = nullptr);

    void setTitle(const QString& title);
    void setNote(const QString& note);
    /// Adds a control at the right end of the title's row.
    void addControl(QWidget* control);
    /// Adds a widget ahead of the title.
    void addLead(QWidget* widget);
    /// Without padding around the body: for tables and lists that reach from edge to edge. Without a title they begin
    /// at the upper edge.
    void setFlush(bool flush);
    /// Where the content goes. Its spacing is the caller's.
    QVBoxLayout* body() const { return content; }

    /// A line across the card, inside its body.
    static QWidget* separator(QWidget* parent = nullptr);

    QAccessible::Role accessibleRole() const override { return QAccessible::Grouping; }
    QString accessibleLabel() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void layOut();

    QWidget* headRow = nullptr;
    QHBoxLayout* head = nullptr;
    QVBoxLayout* content = nullptr;
    QVBoxLayout* outer = nullptr;
    TextLabel* titleLabel = nullptr;
    TextLabel* noteLabel = nullptr;
    int leads = 0;
    bool isFlush = false;
};

} // namespace ostrivane

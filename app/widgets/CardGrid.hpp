#pragma once

#include <QWidget>

#include <vector>

class QGridLayout;

namespace ostrivane {

/// Lays its members in equal columns, row by row; those of one row are equally high. Hidden members leave no hole.
class CardGrid final : public QWidget {
    Q_OBJECT
public:
    explicit CardGrid(int columns, QWidget* parent = nullptr);

    void add(QWidget* member, int columnSpan = 1);
    void setColumns(int columns);
    int columns() const { return count; }
    /// Shows or hides a member, and closes the gap.
    void setShown(QWidget* member, bool shown);
    void setSpacing(int pixels);
    /// Makes a column wider in proportion to the others (1 at first).
    void setStretch(int column, int stretch);

private:
    struct Member {
        QWidget* widget;
        int span;
        bool shown;
    };
    void layOut();

    QGridLayout* grid = nullptr;
    int gap;
    std::vector<Member> members;
    std::vector<int> stretches;
    int count;
};

} // namespace ostrivane

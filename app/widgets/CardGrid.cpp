#include "app/widgets/CardGrid.hpp"

#include "app/widgets/Type.hpp"

#include <QGridLayout>

#include <algorithm>

namespace ostrivane {

CardGrid::CardGrid(int columns, QWidget* parent) : QWidget(parent), gap(Type::px(12)), count(std::max(1, columns)) {
    grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(0); // gaps are columns of their own, so that empty places keep theirs
    grid->setVerticalSpacing(gap);
}

void CardGrid::add(QWidget* member, int columnSpan) {
    // Columns are as wide as each other whatever stands in them.
    QSizePolicy policy = member->sizePolicy();
    policy.setHorizontalPolicy(QSizePolicy::Ignored);
    member->setSizePolicy(policy);
    members.push_back({member, std::max(1, columnSpan), true});
    layOut();
}

void CardGrid::setColumns(int columns) {
    if (columns == count || columns < 1)
        return;
    count = columns;
    layOut();
}

void CardGrid::setShown(QWidget* member, bool shown) {
    const auto found =
        std::find_if(members.begin(), members.end(), [&](const Member& each) { return each.widget == member; });
    if (found == members.end() || found->shown == shown)
        return;
    found->shown = shown;
    layOut();
}

void CardGrid::setSpacing(int pixels) {
    gap = pixels;
    grid->setVerticalSpacing(gap);
    layOut();
}

void CardGrid::setStretch(int column, int stretch) {
    if (column < 0)
        return;
    if (static_cast<std::size_t>(column) >= stretches.size())
        stretches.resize(static_cast<std::size_t>(column) + 1, 1);
    stretches[static_cast<std::size_t>(column)] = stretch;
    layOut();
}

void CardGrid::layOut() {
    for (const Member& member : members)
        grid->removeWidget(member.widget);
    int row = 0;
    int column = 0;
    for (const Member& member : members) {
        member.widget->setParent(this);
        member.widget->setVisible(member.shown);
        if (!member.shown)
            continue;
        const int span = std::min(member.span, count);
        if (column + span > count) {
            ++row;
            column = 0;
        }
        grid->addWidget(member.widget, row, 2 * column, 1, 2 * span - 1);
        column += span;
    }
    const int used = 2 * count - 1;
    for (int index = 0; index < std::max(used, grid->columnCount()); ++index) {
        const bool isGap = index % 2 == 1;
        const auto place = static_cast<std::size_t>(index / 2);
        const int stretch = place < stretches.size() ? stretches[place] : 1;
        grid->setColumnStretch(index, isGap || index >= used ? 0 : stretch);
        grid->setColumnMinimumWidth(index, isGap && index < used ? gap : 0);
    }
}

} // namespace ostrivane

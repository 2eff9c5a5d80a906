#pragma once

#include "app/model/Preferences.hpp"

#include <QListWidget>

#include <string>
#include <vector>

namespace ostrivane {

/// The figures of the menu bar: which are shown, and in which order. Dragging a line, or Alt with Up or Down, moves it;
/// a click on its box, or Space, ticks it.
class MenuItemsList final : public QListWidget {
    Q_OBJECT
public:
    explicit MenuItemsList(QWidget* parent = nullptr);
    void setItems(const std::vector<MenuBarItemConfig>& items);
    /// What each figure is now, in the order of the items.
    void setValues(const std::vector<std::string>& values);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// The user ticked or moved one.
    void itemsChosen(const std::vector<ostrivane::MenuBarItemConfig>& items);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void move(int from, int to);
    void choose();
    void fill();

    std::vector<MenuBarItemConfig> shown; ///< in the order of the lines
    bool filling = false;
};

} // namespace ostrivane

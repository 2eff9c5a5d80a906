#pragma once

#include "app/model/Subscription.hpp"
#include "core/model/Date.hpp"

#include <QWidget>

#include <functional>

class QListView;

namespace ostrivane {

class AppModel;
class FilterField;
class SidebarModel;
class TextLabel;
enum class Page;
struct PlatformWords;

/// All pages by section, each with what it has to say right now, and a field that narrows them down by title.
class Sidebar final : public QWidget {
    Q_OBJECT
public:
    Sidebar(AppModel& model, const PlatformWords& words, std::function<Date()> now, QWidget* parent = nullptr);
    ~Sidebar() override;

    void focusSearch();
    void focusList();
    void fitInto(int windowWidth, bool isNarrow);
    /// Follows the model only while it can be seen.
    void setSeen(bool seen);

Q_SIGNALS:
    void pageChosen(ostrivane::Page page);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void settle();
    void refresh();
    void showSelection();
    void chooseFirst();

    AppModel& model;
    std::function<Date()> now;
    FilterField* search = nullptr;
    TextLabel* nothing = nullptr; ///< matches
    QListView* list = nullptr;
    QListView* foot = nullptr;
    QWidget* line = nullptr; ///< above the foot
    SidebarModel* pages = nullptr;
    SidebarModel* footPages = nullptr;
    Subscription watching;
    bool seen = true;
    bool awake = false;
};

} // namespace ostrivane

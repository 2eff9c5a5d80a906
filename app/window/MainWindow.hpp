#pragma once

#include "app/model/Subscription.hpp"
#include "app/pages/PageContext.hpp"
#include "core/model/Page.hpp"

#include <QMainWindow>

#include <array>
#include <functional>
#include <optional>

class QStackedWidget;

namespace ostrivane {

class Banner;
class PageView;
class Sidebar;
class WelcomeSheet;
struct MenuActions;
struct ModelChanges;

/// Sidebar and the selected page, which is made at its first visit.
class MainWindow final : public QMainWindow {
    Q_OBJECT
public:
    /// @param mayClose  asked when the window is to be closed; false: it stays
    MainWindow(PageContext& context, MenuActions actions, std::function<bool()> mayClose);
    ~MainWindow() override;

    /// Whether anything of the window can be seen: unseen, nothing in it works or paints.
    void setSeen(bool seen);
    void focusSearch();
    /// Why the history is not kept as it should; absent when it is.
    void showHistoryProblem(const std::optional<std::string>& problem);
    /// That a recording is shown, and not this machine; from `file`.
    void showRecording(const QString& file, bool hasEnded);
    PageView* currentPage() const;

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void follow(const ModelChanges& changes);
    void showPage(Page page);
    void showWelcome();
    void moveFocus(bool forward);

    PageContext& context;
    std::function<bool()> mayClose;
    Sidebar* sidebar = nullptr;
    Banner* recordingBanner = nullptr;
    Banner* historyBanner = nullptr;
    QStackedWidget* stack = nullptr;
    WelcomeSheet* welcome = nullptr;
    std::array<PageView*, rawTexts(EnumTag<Page>()).size()> pages{}; ///< null until visited
    Subscription watching;
    bool seen = false;
    bool wasSeen = false; ///< ever
};

/// Below this a window is narrow, in pixels at a base of 13.
constexpr double narrowBelow = 1100;

} // namespace ostrivane

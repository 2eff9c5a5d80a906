#include "app/window/MainWindow.hpp"

#include "app/model/AppModel.hpp"
#include "app/pages/PageView.hpp"
#include "app/pages/Pages.hpp"
#include "app/pages/WelcomeSheet.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/Type.hpp"
#include "app/window/MainMenu.hpp"
#include "app/window/Sidebar.hpp"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QStackedWidget>

#include <utility>

namespace ostrivane {

MainWindow::MainWindow(PageContext& given, MenuActions actions, std::function<bool()> asked)
    : context(given), mayClose(std::move(asked)) {
    setWindowTitle(QStringLiteral("Ostrivane"));
    setMenuBar(buildMainMenu(context.model, context.words, std::move(actions), this));
    auto* content = new QWidget(this);
    sidebar = new Sidebar(context.model, context.words, context.now, content);
    connect(sidebar, &Sidebar::pageChosen, this, [this](Page page) { context.model.select(page); });
    auto* right = new QWidget(content);
    recordingBanner = new Banner(right);
    historyBanner = new Banner(right);
    stack = new QStackedWidget(right);
    auto* column = new QVBoxLayout(right);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    for (Banner* banner : {recordingBanner, historyBanner}) {
        banner->hide();
        column->addWidget(banner);
    }
    column->addWidget(stack, 1);
    auto* row = new QHBoxLayout(content);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(sidebar);
    row->addWidget(right, 1);
    setCentralWidget(content);

    watching = context.model.observe([this](const ModelChanges& changes) { follow(changes); });
    sidebar->setVisible(context.model.isSidebarVisible());
    showPage(context.model.navigation().selectedPage());
    showWelcome();
}

MainWindow::~MainWindow() = default;

void MainWindow::setSeen(bool isSeen) {
    seen = isSeen;
    sidebar->setSeen(seen);
    PageView* page = currentPage();
    page->setWindowSeen(seen);
    if (seen && !std::exchange(wasSeen, true))
        page->focusMain();
}

void MainWindow::focusSearch() {
    wasSeen = true; // the focus is where it is wanted
    sidebar->focusSearch();
}

void MainWindow::showHistoryProblem(const std::optional<std::string>& problem) {
    if (problem)
        historyBanner->set(Condition::high, QStringLiteral("The history is not being kept"), text(*problem));
    else
        historyBanner->set(Condition::good, {});
    historyBanner->setVisible(problem.has_value());
}

void MainWindow::showRecording(const QString& file, bool hasEnded) {
    recordingBanner->set(
        Condition::info,
        QStringLiteral("This is a recording, %1, and not this %2").arg(file, text(context.words.computer)),
        hasEnded ? QStringLiteral("It has ended: these are its last figures.") : QString());
    recordingBanner->show();
}

PageView* MainWindow::currentPage() const {
    return static_cast<PageView*>(stack->currentWidget());
}

void MainWindow::follow(const ModelChanges& changes) {
    if (!changes.navigation)
        return;
    sidebar->setVisible(context.model.isSidebarVisible());
    showPage(context.model.navigation().selectedPage());
    showWelcome();
}

void MainWindow::showPage(Page page) {
    PageView*& view = pages[static_cast<std::size_t>(page)];
    if (view && view == currentPage())
        return;
    if (!view) {
        view = makePage(page, context, stack);
        stack->addWidget(view);
    }
    view->setNarrow(width() < Type::px(narrowBelow));
    view->setWindowSeen(seen);
    stack->setCurrentWidget(view);
    if (seen && !sidebar->isAncestorOf(focusWidget()))
        view->focusMain();
}

void MainWindow::showWelcome() {
    if (context.model.showsWelcome() == (welcome != nullptr))
        return;
    if (welcome) {
        welcome->deleteLater();
        welcome = nullptr;
        return;
    }
    welcome = new WelcomeSheet(context, centralWidget());
    welcome->setGeometry(centralWidget()->rect());
    welcome->show();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(mayClose());
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    const bool narrow = width() < Type::px(narrowBelow);
    sidebar->fitInto(width(), narrow);
    if (PageView* page = currentPage())
        page->setNarrow(narrow);
    if (welcome)
        welcome->setGeometry(centralWidget()->rect());
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    PageView* page = currentPage();
    if (event->key() == Qt::Key_Slash && page && page->filterField()) {
        page->filterField()->setFocus(Qt::ShortcutFocusReason);
    } else if (event->key() == Qt::Key_Escape && page) {
        auto* filter = qobject_cast<QLineEdit*>(page->filterField());
        if (filter && !filter->text().isEmpty())
            filter->clear();
        else
            page->closeDetail();
    } else if (event->key() == Qt::Key_F6) {
        moveFocus(!(event->modifiers() & Qt::ShiftModifier));
    } else {
        QMainWindow::keyPressEvent(event);
    }
}

/// Between the sidebar, the page's header and its body.
void MainWindow::moveFocus(bool forward) {
    PageView* page = currentPage();
    if (!page)
        return;
    enum Place { inSidebar, inHeader, inBody };
    const QWidget* focused = focusWidget();
    const Place here = focused && sidebar->isAncestorOf(focused) ? inSidebar
                       : focused && page->headerHas(focused)     ? inHeader
                                                                 : inBody;
    const int places = sidebar->isVisible() ? 3 : 2;
    const int first = sidebar->isVisible() ? 0 : 1;
    const int next = first + (here - first + (forward ? 1 : places - 1)) % places;
    if (next == inSidebar)
        sidebar->focusList();
    else if (next == inHeader)
        page->focusHeader();
    else
        page->focusMain();
}

} // namespace ostrivane

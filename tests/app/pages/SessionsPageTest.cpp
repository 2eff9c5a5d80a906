#include "app/pages/SessionsPage.hpp"

#include "app/widgets/EmptyState.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/TwoLineList.hpp"
#include "tests/app/pages/PageHarness.hpp"
#include "tests/app/pages/Widgets.hpp"

#include <gtest/gtest.h>

#include <QLineEdit>

#include <algorithm>

namespace ostrivane {
namespace {

class SessionsPageTest : public testing::Test {
protected:
    bool shows(const char* words) const {
        return std::ranges::any_of(page.findChildren<QWidget*>(), [&](const QWidget* widget) {
            const auto* label = dynamic_cast<const TextLabel*>(widget);
            return label && label->isVisible() && label->text().startsWith(QString::fromUtf8(words));
        });
    }
    void record(const char* name) {
        page.findChild<QLineEdit*>()->setText(QString::fromUtf8(name));
        button(page, "Start Session")->click();
        harness.play(developer, 3);
        button(page, "Stop Session")->click();
    }
    int rows() const { return page.findChild<TwoLineList*>()->model()->rowCount(); }

    PageHarness harness;
    SessionsPage page{harness.page};
};

TEST_F(SessionsPageTest, recordsShowsAndDeletes) {
    harness.show(page);
    EXPECT_TRUE(page.findChild<EmptyState*>()->isVisible());
    page.findChild<QLineEdit*>()->setText(QStringLiteral("  Refactoring "));
    button(page, "Start Session")->click();
    harness.play(developer, 3);
    EXPECT_TRUE(shows("Recording “Refactoring”"));
    EXPECT_EQ(rows(), 0) << "the one under way is not in the list";

    button(page, "Stop Session")->click();
    EXPECT_TRUE(shows("Refactoring")) << "before the history has answered";
    EXPECT_FALSE(shows("Recording"));
    harness.settle();
    EXPECT_EQ(rows(), 1);
    record("Second");
    harness.settle();
    ASSERT_EQ(rows(), 2);
    EXPECT_TRUE(shows("Second"));

    answerDialog("Cancel");
    button(page, "Delete the session “Second”")->click();
    harness.settle();
    EXPECT_EQ(rows(), 2);
    answerDialog("Delete");
    button(page, "Delete the session “Second”")->click();
    harness.settle();
    EXPECT_EQ(rows(), 1);
    EXPECT_TRUE(shows("Refactoring"));
    answerDialog("Delete");
    button(page, "Delete the session “Refactoring”")->click();
    harness.settle();
    EXPECT_TRUE(page.findChild<EmptyState*>()->isVisible()) << "a deleted session is not shown from memory";
}

TEST_F(SessionsPageTest, handsTheFocusOnAsItsButtonsTakeTurns) {
    harness.show(page);
    QApplication::setActiveWindow(&page);
    QApplication::processEvents();
    QAbstractButton* start = button(page, "Start Session");
    QAbstractButton* stop = button(page, "Stop Session");
    start->setFocus();
    ASSERT_TRUE(start->hasFocus());
    start->click();
    harness.settle();
    EXPECT_TRUE(stop->hasFocus());
    stop->click();
    harness.settle();
    EXPECT_TRUE(start->hasFocus());
}

TEST_F(SessionsPageTest, showsOnWakingWhatEndedElsewhere) {
    harness.model->startSession("Elsewhere");
    harness.play(developer, 2);
    harness.model->stopSession();
    harness.show(page);
    EXPECT_TRUE(shows("Elsewhere"));
    EXPECT_EQ(rows(), 1);
}

} // namespace
} // namespace ostrivane

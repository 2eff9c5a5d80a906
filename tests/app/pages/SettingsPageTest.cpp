#include "app/pages/SettingsPage.hpp"

#include "app/model/WayBack.hpp"
#include "app/pages/MenuItemsList.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/SegmentedControl.hpp"
#include "app/widgets/TextLabel.hpp"
#include "tests/app/pages/PageHarness.hpp"
#include "tests/app/pages/Widgets.hpp"

#include <QDoubleSpinBox>
#include <QTest>

#include <algorithm>

namespace ostrivane {
namespace {

class SettingsPageTest : public ::testing::Test {
protected:
    SettingsPageTest() { harness.wayBack = WayBack::furtherStart; }

    void open(int tab) {
        harness.model->start();
        harness.settle();
        page.emplace(harness.page);
        harness.show(*page);
        auto* tabs = named<SegmentedControl>(*page, "Part of the settings");
        for (int step = 0; step < tab; ++step)
            QTest::keyClick(tabs, Qt::Key_Right);
    }
    const Preferences& chosen() { return *harness.model->settings(); }
    /// What the engine asks for when it reads the machine once more.
    const ProcessRequest& nextRequest() {
        harness.collectors->asked.clear();
        harness.clock->pass();
        harness.settle();
        return harness.collectors->requests.back();
    }
    /// Seconds between that reading and the next one.
    double nextPause() {
        nextRequest();
        return harness.clock->waited.back();
    }
    void step(const char* name, Qt::Key key) {
        auto* box = named<QDoubleSpinBox>(*page, name);
        ASSERT_NE(box, nullptr);
        QTest::keyClick(box, key);
    }
    bool says(const char* words) {
        for (const auto* child : page->findChildren<QWidget*>())
            if (const auto* label = dynamic_cast<const TextLabel*>(child);
                label && label->isVisible() && label->text() == QString::fromUtf8(words))
                return true;
        return false;
    }

    PageHarness harness;
    std::optional<SettingsPage> page;
};

TEST_F(SettingsPageTest, writesEveryChoiceOfTheGeneralTab) {
    open(0);
    for (const char* name : {"Theme", "Unit of temperatures", "Unit of network rates", "What 100% of CPU stands for",
                             "How the organizer sorts files"}) {
        auto* control = named<SegmentedControl>(*page, name);
        ASSERT_NE(control, nullptr);
        QTest::keyClick(control, Qt::Key_Right);
    }
    EXPECT_EQ(chosen().appearance, AppearanceMode::light);
    EXPECT_EQ(chosen().temperatureUnit, TemperatureUnit::fahrenheit);
    EXPECT_EQ(chosen().rateUnit, RateUnit::bits);
    EXPECT_EQ(chosen().cpuScale, CPUScale::perMac);
    EXPECT_EQ(chosen().organizerGrouping, OrganizerGrouping::kindAndMonth);
    button(*page, "Notify me")->click();
    EXPECT_FALSE(chosen().notificationsEnabled);
    EXPECT_TRUE(harness.stored->values.contains("appearance")); // and none waits
    button(*page, "Edit rules")->click();
    EXPECT_EQ(harness.model->navigation().selectedPage(), Page::alerts);
    harness.model->settings().resetAll(); // the units are those of the whole process
}

TEST_F(SettingsPageTest, tellsTheEngineOfProjectsAndServers) {
    open(0);
    step("Hours after which a server is idle", Qt::Key_Up);
    EXPECT_EQ(chosen().idleThresholdHours, 3);
    nextRequest();
    EXPECT_EQ(harness.collectors->idleThreshold, 3 * 3600);
    EXPECT_EQ(std::ranges::count(harness.collectors->asked, "projects"), 1);
    button(*page, "Detect projects and ports")->click();
    EXPECT_FALSE(chosen().projectDetection);
    nextRequest();
    EXPECT_EQ(std::ranges::count(harness.collectors->asked, "projects"), 0);
}

TEST_F(SettingsPageTest, showsWhatTheSystemSaysOfTheLoginItem) {
    open(0);
    auto* toggle = button(*page, "Start at login");
    toggle->click();
    EXPECT_EQ(harness.loginItem.now, LoginItem::State::on);
    EXPECT_TRUE(toggle->isChecked());
    harness.loginItem.problem = "The folder cannot be written.";
    toggle->click();
    EXPECT_TRUE(toggle->isChecked());
    EXPECT_TRUE(says("The folder cannot be written."));
    harness.loginItem.now = LoginItem::State::needsApproval;
    page->hide();
    page->show();
    EXPECT_FALSE(toggle->isChecked());
    EXPECT_TRUE(says("Approve Ostrivane in System Settings → General → Login Items."));
}

TEST_F(SettingsPageTest, letsTheAnswerAboutClosingBeChanged) {
    open(0);
    EXPECT_TRUE(says("There is no icon to come back by; the first time Ostrivane asks"));
    auto* keeps = button(*page, "Keep running without the window");
    keeps->click();
    EXPECT_EQ(harness.model->settings().defaults().boolean(keepRunningKey), true);
    keeps->click();
    EXPECT_EQ(harness.model->settings().defaults().boolean(keepRunningKey), false);
    EXPECT_TRUE(says("Ostrivane quits"));
    harness.wayBack = WayBack::icon;
    page->hide();
    page->show();
    EXPECT_FALSE(keeps->isEnabled());
}

TEST_F(SettingsPageTest, writesTheMenuBar) {
    open(1);
    QTest::keyClick(named<SegmentedControl>(*page, "Layout of the menu bar"), Qt::Key_Left);
    QTest::keyClick(named<SegmentedControl>(*page, "Temperature source"), Qt::Key_Right);
    button(*page, "Compact list")->click();
    EXPECT_EQ(chosen().menuBarLayout, MenuBarLayout::iconOnly);
    EXPECT_EQ(chosen().temperatureSource, TemperatureSource::gpu);
    EXPECT_TRUE(chosen().popoverListLayout);

    auto* items = page->findChild<MenuItemsList*>();
    items->setFocus();
    items->setCurrentRow(0);
    QTest::keyClick(items, Qt::Key_Up, Qt::AltModifier); // at the end already
    EXPECT_EQ(chosen().menuBarItems, Preferences().menuBarItems);
    QTest::keyClick(items, Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(items->currentRow(), 1);
    QTest::keyClick(items, Qt::Key_Space);
    auto wanted = Preferences().menuBarItems;
    std::swap(wanted[0], wanted[1]);
    wanted[1].enabled = false;
    EXPECT_EQ(chosen().menuBarItems, wanted);
    ASSERT_TRUE(items->model()->moveRow({}, 7, {}, 0)); // as a drag does
    QApplication::processEvents();
    std::rotate(wanted.begin(), wanted.end() - 1, wanted.end());
    EXPECT_EQ(chosen().menuBarItems, wanted);
}

TEST_F(SettingsPageTest, keepsAMetricThatStandsTwice) {
    auto twice = Preferences().menuBarItems;
    twice.push_back({MenuMetric::cpu, true, MenuItemStyle::graph, false});
    harness.model->settings().set(&Preferences::menuBarItems, twice);
    open(1);
    auto* items = page->findChild<MenuItemsList*>();
    items->setCurrentRow(8);
    QTest::keyClick(items, Qt::Key_Up, Qt::AltModifier);
    std::swap(twice[7], twice[8]);
    EXPECT_EQ(chosen().menuBarItems, twice);
}

TEST_F(SettingsPageTest, tellsTheEngineOfSampling) {
    open(2);
    step("Seconds between readings in the background", Qt::Key_Up);
    EXPECT_EQ(chosen().backgroundInterval, 6);
    EXPECT_EQ(nextPause(), 6);
    harness.model->setWindowVisible(true);
    harness.settle();
    step("Seconds between readings while the window is seen", Qt::Key_Down);
    EXPECT_EQ(nextPause(), 1);
    step("Seconds between readings while the window is seen", Qt::Key_Down);
    EXPECT_EQ(chosen().foregroundInterval, 1); // the least that is offered

    EXPECT_TRUE(nextRequest().systemEntries);
    button(*page, "Processes of the system and other users")->click();
    EXPECT_FALSE(chosen().includeSystemProcesses);
    EXPECT_FALSE(nextRequest().systemEntries);
    EXPECT_TRUE(nextRequest().network);
    button(*page, "Network traffic by process")->click();
    EXPECT_FALSE(chosen().perProcessNetwork);
    EXPECT_FALSE(nextRequest().network);
}

TEST_F(SettingsPageTest, tellsWhatIsKeptAndClearsItWhenConfirmed) {
    harness.model->history().recordAlert(harness.now, "swapGrowth", "warning", "Swap grew", "", "system");
    open(3);
    harness.settle();
    EXPECT_EQ(harness.state().alerts.size(), 1U);
    step("Days that history is kept", Qt::Key_Down);
    EXPECT_EQ(chosen().retentionDays, 29);
    const auto status =
        harness.answer<HistoryStatus>([](HistoryStore& store, auto got) { store.status(std::move(got)); });
    EXPECT_EQ(status.retentionDays, 29);
    button(*page, "Reveal the history")->click();
    EXPECT_EQ(harness.revealed, std::vector<std::string>{harness.path});
    EXPECT_FALSE(says("…"));
    EXPECT_TRUE(says("Local-only: no account, no telemetry."));
    answerDialog("Cancel");
    button(*page, "Clear History…")->click();
    EXPECT_EQ(harness.storedAlerts().size(), 1U);
    answerDialog("Clear History");
    button(*page, "Clear History…")->click();
    harness.settle();
    EXPECT_TRUE(harness.storedAlerts().empty());
    EXPECT_TRUE(harness.state().alerts.empty());
}

TEST_F(SettingsPageTest, showsWhatAnotherProgramChoseAndResets) {
    open(4);
    harness.stored->values["checkForUpdates"] = false;
    harness.model->settings().reload();
    EXPECT_FALSE(button(*page, "Check for updates")->isChecked());
    answerDialog("Cancel");
    button(*page, "Reset All Settings…")->click();
    EXPECT_FALSE(chosen().checkForUpdates);
    answerDialog("Reset");
    button(*page, "Reset All Settings…")->click();
    EXPECT_TRUE(chosen().checkForUpdates);
    EXPECT_TRUE(button(*page, "Check for updates")->isChecked());
}

TEST_F(SettingsPageTest, saysWhenNothingCanBeKept) {
    open(0);
    auto* banner = page->findChild<Banner*>();
    EXPECT_FALSE(banner->isVisible());
    harness.stored->problem = "The disk is full.";
    button(*page, "Notify me")->click();
    EXPECT_TRUE(banner->isVisible());
    EXPECT_TRUE(says("The disk is full."));
}

} // namespace
} // namespace ostrivane

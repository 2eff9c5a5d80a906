#include "app/pages/HistoryPage.hpp"

#include "app/pages/HistoryExporting.hpp"
#include "app/pages/HistoryFeed.hpp"
#include "app/pages/HistoryStrips.hpp"
#include "app/pages/Links.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/EmptyState.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/SegmentedControl.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TableView.hpp"
#include "app/widgets/Type.hpp"

#include <QDir>
#include <QFileDialog>
#include <QStackedWidget>
#include <QStandardPaths>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace ostrivane {

namespace {

constexpr std::int64_t mostBusy = 20;
constexpr std::int64_t mostAtMoment = 5;
constexpr int fewestRows = 5; // of the table, so that it does not jump with each range

QStringList rangeTitles() {
    QStringList titles;
    for (const auto& [range, raw] : rawTexts(EnumTag<HistoryRange>{}))
        titles << text(raw);
    return titles;
}

HistoryRange rangeAt(int index) {
    return rawTexts(EnumTag<HistoryRange>{}).at(static_cast<std::size_t>(index)).first;
}

int indexOf(HistoryRange range) {
    return static_cast<int>(range);
}

} // namespace

HistoryPage::HistoryPage(PageContext& given, QWidget* parent) : PageView(Page::history, given, parent) {
    makeHeader();
    auto* body = new QWidget(this);
    auto* column = new QVBoxLayout(body);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Type::px(12));
    problem = new Banner(body);
    problem->set(Condition::high, {});
    exported = new Banner(body);
    exported->set(Condition::good, {});
    exported->setClosable(true);
    connect(exported, &Banner::closed, this, [this] { exported->set(Condition::good, {}); });
    empty = new EmptyState(Icons::nameOf(Page::history), body);
    empty->set(QStringLiteral("History builds up as Ostrivane runs."));
    empty->hide();
    content = new QWidget(body);
    content->hide();
    auto* cards = new QVBoxLayout(content);
    cards->setContentsMargins(0, 0, 0, 0);
    cards->setSpacing(Type::px(12));
    stripsCard = new Card({}, content);
    strips = new HistoryStrips(body);
    connect(strips, &HistoryStrips::cursorMoved, this, &HistoryPage::moveCursor);
    nothing = new EmptyState({}, content);
    nothing->hide();
    stripsCard->body()->addWidget(strips);
    stripsCard->body()->addWidget(nothing);
    cards->addWidget(stripsCard);
    cards->addWidget(makeTable());
    column->addWidget(problem);
    column->addWidget(exported);
    column->addWidget(empty, 1);
    column->addWidget(content);
    column->addStretch();
    setBody(body, false);

    feed = new HistoryFeed(context, this);
    connect(feed, &HistoryFeed::changed, this, &HistoryPage::showRows);
    feed->setRange(HistoryRange::hours24);
    pause.setSingleShot(true);
    pause.setInterval(std::chrono::milliseconds(120));
    connect(&pause, &QTimer::timeout, this, &HistoryPage::askMoment);
}

void HistoryPage::makeHeader() {
    ranges = new SegmentedControl(QStringLiteral("Range"), rangeTitles(), this);
    ranges->setIndex(indexOf(HistoryRange::hours24));
    connect(ranges, &SegmentedControl::indexChosen, this, [this](int index) { feed->setRange(rangeAt(index)); });
    addHeaderControl(ranges);
    auto* button = new PushButton(QStringLiteral("Export…"), ButtonKind::plain, this);
    button->setIconName("export");
    button->setAccessibleName(QStringLiteral("Export the history of this range"));
    connect(button, &QAbstractButton::clicked, this, &HistoryPage::chooseFile);
    addHeaderControl(button);
}

QWidget* HistoryPage::makeTable() {
    tableCard = new Card(busiestTitle(HistoryRange::hours24), content);
    tableCard->setFlush(true);
    tableCard->setNote(QStringLiteral("Thin lines above show peaks. In a gap nothing was recorded."));
    busiest = new RowsModel<BusyApp, std::string>(
        busyColumns(), [](const BusyApp& app) { return app.usage->appKey; }, this);
    busiest->sort(1, Qt::DescendingOrder);
    tablePlace = new QStackedWidget(tableCard);
    tablePlace->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    table =
        new TableView("history", QStringLiteral("Busiest applications"), &model().settings().defaults(), tablePlace);
    noBusiest = new EmptyState({}, tablePlace);
    tablePlace->addWidget(table);
    tablePlace->addWidget(noBusiest);
    table->setRows(busiest);
    table->setNarrowHides({"written", "active"});
    table->setVisibleRows(fewestRows);
    connect(table, &TableView::rowActivated, this, [this](int row) {
        if (const auto key = busiest->id(row))
            openApp(model(), *key);
    });
    tableCard->body()->addWidget(tablePlace);
    return tableCard;
}

HistoryRange HistoryPage::range() const {
    return rangeAt(ranges->index());
}

void HistoryPage::wake() {
    feed->setAwake(true);
}

void HistoryPage::sleep() {
    feed->setAwake(false);
    pause.stop();
    if (!momentApps) // what was not answered is asked anew
        momentBucket.reset();
    strips->setMoment(std::nullopt);
}

void HistoryPage::narrowChanged() {
    strips->setNarrow(isNarrow());
    table->setNarrow(isNarrow());
}

void HistoryPage::refresh(const ModelChanges& changes) {
    if (changes.session)
        askSessions();
}

void HistoryPage::showRows() {
    if (!feed->isReady()) // what was shown stays until the other range is there
        return;
    shownStrips = presentStrips(feed->rows(), state().snapshot->memory.total);
    strips->set(shownStrips, feed->since(), feed->until());
    showBands();
    showState();
    moveCursor(strips->cursor());
    askAround();
}

/// What belongs to the rows and is asked as often.
void HistoryPage::askAround() {
    HistoryStore& history = model().history();
    const int mine = ++rankingAsked;
    history.topApps(Date{feed->since()}, mostBusy,
                    here<std::vector<AppUsageSummary>>([this, mine](std::vector<AppUsageSummary> found) {
                        if (mine == rankingAsked)
                            showBusiest(std::move(found));
                    }));
    history.earliestSample(here<std::optional<Date>>([this](std::optional<Date> date) {
        earliest = date;
        knowsEarliest = true;
        showState();
    }));
    askSessions();
}

void HistoryPage::askSessions() {
    model().history().sessions(here<std::vector<StoredSession>>([this](std::vector<StoredSession> found) {
        storedSessions = std::move(found);
        if (feed->isReady()) // else they come with the rows
            showBands();
    }));
}

void HistoryPage::showBands() {
    std::optional<std::pair<std::string, Date>> recording;
    if (const auto& session = state().session)
        recording.emplace(session->name(), session->start());
    sessions = sessionSpans(storedSessions, recording, context.now());
    strips->setBands(sessionBands(sessions, feed->since(), feed->until()));
}

void HistoryPage::showState() {
    setSubtitle(keptText(model().settings()->retentionDays, earliest, context.now()));
    const auto& failure = feed->problem();
    problem->set(Condition::high, failure ? QStringLiteral("The history cannot be read.") : QString(),
                 failure ? text(*failure) : QString());
    if (!feed->isReady())
        return;
    const bool hasRows = !shownStrips.empty();
    const bool isEmpty = !hasRows && knowsEarliest && !earliest;
    empty->setVisible(isEmpty && !failure);
    content->setVisible(hasRows || (knowsEarliest && !isEmpty));
    strips->setVisible(hasRows);
    nothing->set(QStringLiteral("Nothing was recorded in the last %1.").arg(text(label(range()))));
    nothing->setVisible(!hasRows && !failure);
}

void HistoryPage::showBusiest(std::vector<AppUsageSummary> found) {
    tableCard->setTitle(busiestTitle(range()));
    auto kept = std::make_shared<const std::vector<AppUsageSummary>>(std::move(found));
    double most = 0;
    for (const AppUsageSummary& usage : *kept)
        most = std::max(most, usage.avgCPU);
    std::vector<BusyApp> rows;
    rows.reserve(kept->size());
    for (const AppUsageSummary& usage : *kept) {
        const ApplicationSnapshot* running = state().app(usage.appKey);
        rows.push_back({.usage = &usage,
                        .share = most > 0 ? usage.avgCPU / most : 0,
                        .bundlePath = running ? running->bundlePath : std::nullopt});
    }
    table->setVisibleRows(std::max(static_cast<int>(rows.size()), fewestRows));
    busiest->assign(std::move(rows), kept);
    noBusiest->set(QStringLiteral("No application was recorded in the last %1.").arg(text(label(range()))));
    tablePlace->setCurrentWidget(busiest->rowCount() > 0 ? static_cast<QWidget*>(table) : noBusiest);
}

void HistoryPage::moveCursor(std::optional<double> time) {
    const SystemRow* row = time ? rowAt(feed->rows(), *time) : nullptr;
    const std::optional<std::int64_t> bucket = row ? std::optional(row->bucket) : std::nullopt;
    if (bucket != momentBucket) {
        momentBucket = bucket;
        momentApps.reset();
        if (bucket)
            pause.start();
        else
            pause.stop();
    }
    showMoment();
}

void HistoryPage::askMoment() {
    if (!momentBucket)
        return;
    model().history().appsAt(Date{static_cast<double>(*momentBucket)}, mostAtMoment,
                             here<std::vector<AppMoment>>([this, asked = momentBucket](std::vector<AppMoment> apps) {
                                 if (asked != momentBucket)
                                     return;
                                 momentApps = std::move(apps);
                                 showMoment();
                             }));
}

void HistoryPage::showMoment() {
    const std::optional<double> time = strips->cursor();
    if (!time)
        return strips->setMoment(std::nullopt);
    strips->setMoment(
        presentMoment(shownStrips, rowAt(feed->rows(), *time), *time, momentApps, sessions, context.now()));
}

void HistoryPage::chooseFile() {
    const HistoryRange wanted = range();
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString name = QStringLiteral("Ostrivane history %1.csv").arg(text(rawValue(wanted)));
    auto* dialog = new QFileDialog(this, QStringLiteral("Export History"), QDir(folder).filePath(name));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilter(QStringLiteral("Comma-separated values (*.csv)"));
    dialog->setDefaultSuffix(QStringLiteral("csv"));
    connect(dialog, &QFileDialog::fileSelected, this, [this, wanted](const QString& file) {
        const Date until = context.now();
        exportHistory(model().history(), until + -seconds(wanted), until, QFile::encodeName(file).toStdString(),
                      here<ExportOutcome>([this](const ExportOutcome& outcome) { tellExport(outcome); }));
    });
    dialog->open();
}

void HistoryPage::tellExport(const ExportOutcome& outcome) {
    exported->set(outcome.problem ? Condition::high : Condition::good, exportTitle(outcome),
                  outcome.problem ? text(*outcome.problem) : QString());
}

} // namespace ostrivane

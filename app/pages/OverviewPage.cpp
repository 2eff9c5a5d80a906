#include "app/pages/OverviewPage.hpp"

#include "app/pages/Findings.hpp"
#include "app/pages/Freshness.hpp"
#include "app/pages/HealthRow.hpp"
#include "app/pages/Links.hpp"
#include "app/pages/OverviewText.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/CardGrid.hpp"
#include "app/widgets/EmptyState.hpp"
#include "app/widgets/EvidenceList.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/MetricTile.hpp"
#include "app/widgets/RankList.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/TotalsList.hpp"
#include "app/widgets/Type.hpp"
#include "core/model/Formatters.hpp"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double cardGap = 12;
constexpr double cardSide = 14;
constexpr std::size_t insightsShown = 4;
constexpr double insightHeight = 47;
constexpr double machineWidth = 220;
constexpr double leastTile = 150;
constexpr double leastPair = 640; ///< below that, cards stand one below the other
constexpr int wideShare = 2;      // of the findings to the card beside them

QString measuring() {
    return QStringLiteral("Measuring…");
}

std::string iconOf(TileKind kind) {
    return kind == TileKind::power ? "bolt" : std::string(Icons::nameOf(pageOf(kind)));
}

} // namespace

OverviewPage::OverviewPage(PageContext& given, QWidget* parent) : PageView(Page::overview, given, parent) {
    makeHeader();
    auto* body = new QWidget(this);
    auto* column = new QVBoxLayout(body);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Type::px(cardGap));
    column->addWidget(makeTiles());
    cards = new CardGrid(2, body);
    cards->setStretch(0, wideShare);
    cards->setStretch(1, 1);
    for (QWidget* card : {makeInsights(), makeHealth(), makeRanks(), makeTotals()})
        cards->add(card);
    column->addWidget(cards);
    column->addStretch(1);
    setBody(body, false);
}

void OverviewPage::makeHeader() {
    updated = new TextLabel(TypeRole::secondary, Tone::text2, this);
    machine = new TextLabel(TypeRole::secondary, Tone::text2, this);
    machine->setMaximumWidth(Type::px(machineWidth));
    uptime = new TextLabel(TypeRole::secondary, Tone::text2, this);
    uptime->setElideMode(Qt::ElideNone);
    session = new PushButton(QStringLiteral("Stop Session"), ButtonKind::plain, this);
    session->setIconName("stopsquare");
    const int stopWidth = session->sizeHint().width();
    session->setText(QStringLiteral("Start Session"));
    session->setIconName("play");
    session->setMinimumWidth(std::max(stopWidth, session->sizeHint().width()));
    connect(session, &QAbstractButton::clicked, this, [this] {
        if (state().session)
            model().stopSession();
        else
            model().startSession("");
    });
    auto* about = new QWidget(this);
    auto* row = new QHBoxLayout(about);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Type::px(4));
    row->addWidget(machine);
    row->addWidget(uptime);
    for (QWidget* control : std::initializer_list<QWidget*>{updated, about, session})
        addHeaderControl(control);
    freshness = new Freshness(context, updated, this);
}

QWidget* OverviewPage::makeTiles() {
    tileGrid = new CardGrid(static_cast<int>(tileKinds.size()), this);
    for (std::size_t index = 0; index < tileKinds.size(); ++index) {
        const TileKind kind = tileKinds[index];
        tiles[index] = new MetricTile(iconOf(kind), tileGrid);
        connect(tiles[index], &QAbstractButton::clicked, this, [this, kind] { model().select(pageOf(kind)); });
        tileGrid->add(tiles[index]);
    }
    return tileGrid;
}

QWidget* OverviewPage::makeInsights() {
    auto* card = new Card(QStringLiteral("Insights"), this);
    allInsights = new LinkButton({}, card);
    connect(allInsights, &QAbstractButton::clicked, this, [this] { model().select(Page::health); });
    QSizePolicy kept = allInsights->sizePolicy();
    kept.setRetainSizeWhenHidden(true);
    allInsights->setSizePolicy(kept);
    card->addControl(allInsights);
    card->setFlush(true);
    auto* room = new QWidget(card); // always of one height: what is below must not move
    room->setMinimumHeight(static_cast<int>(insightsShown) * Type::px(insightHeight));
    auto* column = new QVBoxLayout(room);
    column->setContentsMargins(Type::px(cardSide), 0, Type::px(cardSide), 0);
    insights = new EvidenceList(QStringLiteral("Insights"), room);
    connect(insights, &EvidenceList::activated, this, [this](const std::string& id) { openInsight(model(), id); });
    noInsights = new EmptyState({}, room);
    column->addWidget(insights, 0, Qt::AlignTop);
    column->addWidget(noInsights);
    card->body()->addWidget(room);
    return card;
}

QWidget* OverviewPage::makeHealth() {
    auto* card = new Card(QStringLiteral("Health"), this);
    auto* details = new LinkButton(QStringLiteral("Details"), card);
    details->setAccessibleName(QStringLiteral("Health details"));
    connect(details, &QAbstractButton::clicked, this, [this] { model().select(Page::health); });
    card->addControl(details);
    healthColumn = new QVBoxLayout;
    healthColumn->setSpacing(0);
    healthColumn->setContentsMargins(Type::px(cardSide), 0, Type::px(cardSide), 0);
    notJudged = new TextLabel(TypeRole::table, Tone::text2, card);
    notJudged->setText(measuring());
    healthColumn->addWidget(notJudged, 0, Qt::AlignTop);
    card->setFlush(true);
    card->body()->addLayout(healthColumn, 1);
    return card;
}

RankList* OverviewPage::makeRank(QVBoxLayout* column, const QString& title, RankFigure figure) {
    auto* name = new TextLabel(TypeRole::tableStrong, Tone::text, this);
    name->setText(title);
    auto* list = new RankList(title, static_cast<int>(rankedApplications),
                              figure == RankFigure::memory ? Series::s4 : Series::s1, this);
    list->setEmptyText(measuring());
    connect(list, &RowList::activated, this, [this, list](int row) {
        const auto index = static_cast<std::size_t>(row);
        if (index < list->rows().size())
            openApp(model(), list->rows()[index].key);
    });
    column->setSpacing(Type::px(4));
    column->addWidget(name);
    column->addWidget(list);
    column->addStretch(1);
    return list;
}

QWidget* OverviewPage::makeRanks() {
    auto* card = new Card({}, this);
    auto* columns = new QHBoxLayout;
    columns->setSpacing(Type::px(28));
    auto* left = new QVBoxLayout;
    auto* right = new QVBoxLayout;
    columns->addLayout(left, 1);
    columns->addLayout(right, 1);
    byMemory = makeRank(left, QStringLiteral("Using the most memory"), RankFigure::memory);
    byCPU = makeRank(right, QStringLiteral("Using the most CPU"), RankFigure::cpu);
    card->body()->addLayout(columns, 1);
    return card;
}

QWidget* OverviewPage::makeTotals() {
    auto* card = new Card(QStringLiteral("Totals"), this);
    card->setFlush(true);
    totals = new TotalsList(QStringLiteral("Totals"),
                            {QStringLiteral("Today"), QStringLiteral("7 days"), QStringLiteral("30 days")}, card);
    connect(totals, &RowList::activated, this, [this](int row) {
        if (const auto index = static_cast<std::size_t>(row); index < totalsPages.size())
            model().select(totalsPages[index]);
    });
    card->body()->addWidget(totals, 1);
    return card;
}

void OverviewPage::refresh(const ModelChanges& changes) {
    const bool begins = state().hasFirstSample != wasMeasured; // every list waited for it
    wasMeasured = state().hasFirstSample;
    if (changes.snapshot || changes.health || changes.session)
        showHead();
    if (changes.snapshot || changes.totals)
        showTiles();
    if (changes.snapshot)
        showRanks();
    if (changes.insights || begins)
        showInsights();
    if (changes.health || begins)
        showHealth();
    if (changes.totals)
        totals->set(presentTotals(state()));
}

void OverviewPage::sleep() {
    freshness->sleep();
}

void OverviewPage::narrowChanged() {
    for (MetricTile* tile : tiles)
        tile->setNarrow(isNarrow());
}

void OverviewPage::resizeEvent(QResizeEvent* event) {
    PageView::resizeEvent(event);
    arrange();
}

/// With large lettering in a small window there is room for fewer columns.
void OverviewPage::arrange() {
    tileGrid->setColumns(tileColumns(shownTiles, width() / Type::px(leastTile)));
    cards->setColumns(width() < Type::px(leastPair) ? 1 : 2);
}

void OverviewPage::showHead() {
    const OverviewHead head = presentOverviewHead(state());
    setSubtitle(head.status);
    setSubtitleCondition(head.condition, head.condition ? wordOf(*head.condition) : QString());
    machine->setText(head.machine);
    uptime->setText(head.uptime);
    uptime->setVisible(!head.uptime.isEmpty());
    session->setText(head.isRecording ? QStringLiteral("Stop Session") : QStringLiteral("Start Session"));
    session->setIconName(head.isRecording ? "stopsquare" : "play",
                         head.isRecording ? std::optional(Tone::high) : std::nullopt);
    freshness->look();
}

void OverviewPage::showTiles() {
    const double now = state().snapshot->timestamp.seconds;
    shownTiles = 0;
    for (std::size_t index = 0; index < tileKinds.size(); ++index) {
        auto tile = presentTile(tileKinds[index], state(), model().settings()->temperatureSource);
        tileGrid->setShown(tiles[index], tile.has_value());
        if (!tile)
            continue;
        ++shownTiles;
        tiles[index]->set(std::move(tile->text));
        tiles[index]->setLines(std::move(tile->lines), tile->top, now);
    }
    arrange();
}

void OverviewPage::showInsights() {
    const auto& all = state().insights;
    auto rows = state().hasFirstSample ? insightRows(all, insightsShown) : std::vector<EvidenceRow>();
    allInsights->setVisible(!rows.empty());
    allInsights->setText(QStringLiteral("All %1").arg(all.size()));
    allInsights->setAccessibleName(QStringLiteral("All %1 insights").arg(all.size()));
    noInsights->setVisible(rows.empty());
    noInsights->set(state().hasFirstSample ? QStringLiteral("Nothing stands out right now.") : measuring());
    insights->setVisible(!rows.empty());
    insights->set(std::move(rows));
}

void OverviewPage::showHealth() {
    const std::vector<HealthLine> lines = presentHealthLines(state());
    notJudged->setVisible(lines.empty());
    while (healthRows.size() < lines.size()) {
        auto* row = new HealthRow(healthColumn->parentWidget());
        connect(row, &QAbstractButton::clicked, this, [this, row] { model().select(row->line().page); });
        healthColumn->addWidget(row, 1);
        healthRows.push_back(row);
    }
    for (std::size_t index = 0; index < healthRows.size(); ++index) {
        healthRows[index]->setVisible(index < lines.size());
        if (index < lines.size())
            healthRows[index]->set(lines[index]);
    }
}

void OverviewPage::showRanks() {
    using Rows = std::vector<RankRow>;
    for (const auto& [list, figure] : {std::pair(byMemory, RankFigure::memory), std::pair(byCPU, RankFigure::cpu)}) {
        list->set(presentRanks(state(), figure, list->isHeld() ? list->rows() : Rows()));
        if (wasMeasured)
            list->setEmptyText(text(Formatters::unavailable));
    }
}

} // namespace ostrivane

#pragma once

#include "app/pages/HistoryPageText.hpp"
#include "app/pages/PageView.hpp"
#include "app/widgets/RowsModel.hpp"

#include <QTimer>

#include <memory>
#include <optional>
#include <string>
#include <vector>

class QStackedWidget;

namespace ostrivane {

class Banner;
class Card;
class EmptyState;
class HistoryFeed;
class HistoryStrips;
class SegmentedControl;
class TableView;
struct ExportOutcome;

/// The machine's past: its figures on one axis of time, what ran at any moment of it, and who used most.
class HistoryPage final : public PageView {
public:
    explicit HistoryPage(PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges& changes) override;
    void wake() override;
    void sleep() override;
    void narrowChanged() override;

private:
    void makeHeader();
    QWidget* makeTable();
    void showRows();
    void askAround();
    void askSessions();
    void showBands();
    void showState();
    void showBusiest(std::vector<AppUsageSummary> found);
    void moveCursor(std::optional<double> time);
    void askMoment();
    void showMoment();
    void chooseFile();
    void tellExport(const ExportOutcome& outcome);
    HistoryRange range() const;

    HistoryFeed* feed = nullptr;
    SegmentedControl* ranges = nullptr;
    Banner* problem = nullptr;
    Banner* exported = nullptr;
    EmptyState* empty = nullptr;
    QWidget* content = nullptr;
    Card* stripsCard = nullptr;
    EmptyState* nothing = nullptr; ///< in the place of the strips
    HistoryStrips* strips = nullptr;
    Card* tableCard = nullptr;
    QStackedWidget* tablePlace = nullptr; ///< the table, or why there is none
    TableView* table = nullptr;
    EmptyState* noBusiest = nullptr;
    RowsModel<BusyApp, std::string>* busiest = nullptr;

    std::vector<HistoryStrip> shownStrips;
    std::vector<SessionSpan> sessions;
    std::vector<StoredSession> storedSessions;
    std::optional<Date> earliest;
    bool knowsEarliest = false;

    QTimer pause;                             ///< the cursor stands still for a moment before anything is asked
    std::optional<std::int64_t> momentBucket; ///< that `momentApps` are of, or are asked for
    std::optional<std::vector<AppMoment>> momentApps;
    int rankingAsked = 0; ///< a late answer to an older question is dropped
};

} // namespace ostrivane

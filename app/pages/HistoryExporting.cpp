#include "app/pages/HistoryExporting.hpp"

#include "app/widgets/Strings.hpp"
#include "core/history/HistoryExport.hpp"
#include "core/history/HistoryStore.hpp"
#include "core/model/Text.hpp"
#include "core/model/WholeFile.hpp"

#include <QThreadPool>

#include <memory>
#include <utility>
#include <vector>

namespace ostrivane {

void exportHistory(HistoryStore& history, Date since, Date until, std::string path,
                   std::function<void(ExportOutcome)> answer) {
    auto rows = std::make_shared<std::vector<SystemRow>>();
    history.systemRows(since, until, [rows](std::vector<SystemRow> found) { *rows = std::move(found); });
    history.readProblem([rows, path = std::move(path), answer = std::move(answer)](std::optional<std::string> unread) {
        if (unread) // an empty file would claim that there is no history
            return answer({.path = path, .problem = std::move(unread)});
        QThreadPool::globalInstance()->start([rows, path, answer] {
            answer({.path = path, .rows = rows->size(), .problem = WholeFile::write(path, HistoryExport::text(*rows))});
        });
    });
}

QString exportTitle(const ExportOutcome& outcome) {
    if (outcome.problem)
        return QStringLiteral("The history could not be exported.");
    const std::string name = Text::visible(Text::repaired(outcome.path.substr(outcome.path.rfind('/') + 1)));
    return QStringLiteral("Exported %1 %2 to %3")
        .arg(QString::number(outcome.rows), outcome.rows == 1 ? QStringLiteral("row") : QStringLiteral("rows"),
             text(name));
}

} // namespace ostrivane

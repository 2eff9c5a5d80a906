#pragma once

#include "app/widgets/MessageDialog.hpp"
#include "app/widgets/StatGrid.hpp"
#include "app/widgets/TableColumn.hpp"
#include "core/history/StoredSession.hpp"
#include "core/judgement/SessionSummary.hpp"
#include "core/model/Date.hpp"

#include <QString>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// A session in the list.
struct SessionRow {
    QString name;
    QString when;     ///< "Today, 09:12"
    QString duration; ///< "2h 41m", or "Not finished"

    friend bool operator==(const SessionRow&, const SessionRow&) = default;
};
SessionRow presentSessionRow(const StoredSession& session, Date now);

/// The same in one line, for a menu: "Release 2.4 · Today, 09:12 · 2h 41m".
QString menuText(const SessionRow& row);

/// The session that is being recorded.
struct RecordingText {
    QString title;   ///< "Recording “Refactoring”"
    QString figures; ///< "for 1h 12m · CPU 24% average, 92% peak · 21.8 GB memory"

    friend bool operator==(const RecordingText&, const RecordingText&) = default;
};
RecordingText presentRecording(const SessionSummary& soFar);

/// The chosen session.
struct SessionText {
    QString name;
    QString when;            ///< "Today, 09:12 to 11:53 · 2h 41m · 4812 samples"
    QString problem;         ///< why there are no figures; empty when there are
    std::vector<Stat> stats; ///< twelve, those that nobody measured as a dash
    QString opened;          ///< names; empty when there are none
    QString quit;
    std::optional<SessionSummary> summary; ///< the tables; absent with a problem
};
SessionText presentSummary(const SessionSummary& summary, Date now);

/// From what is kept of it; says so where that cannot be read.
SessionText presentSession(const StoredSession& session, Date now);

/// Whether a row is that of the session with this name and beginning.
bool isOf(const StoredSession& session, const std::string& name, Date start);

MessageText deleteQuestion(const QString& name);

/// @param bundlePath  of an application by its key, for its icon; absent where it does not run now
std::vector<TableColumn<const SessionSummary::AppLine*>>
sessionAppColumns(std::function<std::optional<std::string>(const std::string& key)> bundlePath);
std::vector<TableColumn<const SessionSummary::ProcessLine*>> sessionProcessColumns();

} // namespace ostrivane

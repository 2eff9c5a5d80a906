#pragma once

#include "app/pages/SessionsText.hpp"
#include "app/widgets/RowsModel.hpp"

#include <QWidget>

#include <functional>
#include <optional>
#include <string>

namespace ostrivane {

class KeyValueStore;
class PushButton;
class StatGrid;
class TableView;
class TextLabel;

/// What one session cost, on a card.
class SessionDetail final : public QWidget {
    Q_OBJECT
public:
    SessionDetail(KeyValueStore* store, std::function<std::optional<std::string>(const std::string& key)> bundlePath,
                  QWidget* parent = nullptr);

    void set(const SessionText& session);
    /// Whether it is kept, and so can be deleted.
    void setDeletable(bool deletable);

Q_SIGNALS:
    void deleteWanted();
    void appActivated(const std::string& key);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* makeHead();
    QWidget* makeNames();

    TextLabel* name = nullptr;
    TextLabel* when = nullptr;
    TextLabel* problem = nullptr;
    PushButton* remove = nullptr;
    StatGrid* stats = nullptr;
    QWidget* names = nullptr;
    TextLabel* openedTitle = nullptr;
    TextLabel* opened = nullptr;
    TextLabel* quitTitle = nullptr;
    TextLabel* quit = nullptr;
    TableView* appTable = nullptr;
    TableView* processTable = nullptr;
    RowsModel<const SessionSummary::AppLine*, std::string>* apps = nullptr;
    RowsModel<const SessionSummary::ProcessLine*, std::string>* processes = nullptr;
};

} // namespace ostrivane

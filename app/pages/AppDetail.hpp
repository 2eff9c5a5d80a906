#pragma once

#include "app/pages/AppDetailText.hpp"
#include "app/pages/PageContext.hpp"
#include "app/widgets/RowsModel.hpp"

#include <QWidget>

#include <cstdint>
#include <optional>
#include <string>

class QHBoxLayout;

namespace ostrivane {

class AppHistoryView;
class IconButton;
class PushButton;
class StatGrid;
class TableView;
class TextLabel;

/// One application beside the list of all: who it is, what it uses, what it used, and its processes. Stays when the
/// application ends, and says so.
class AppDetail final : public QWidget {
    Q_OBJECT
public:
    explicit AppDetail(PageContext& context, QWidget* parent = nullptr);

    /// Absent: shows nothing, and asks nothing.
    void setApp(const std::optional<std::string>& key);
    /// Looks at the present snapshot.
    void refresh();
    void setAwake(bool awake);
    /// Wide in place of high, without a button that closes it: for a place of its own.
    void setAlone(bool alone);

Q_SIGNALS:
    void closeWanted();
    void processWanted(std::int32_t pid);

private:
    using ProcessRows = RowsModel<const ProcessSnapshot*, std::int32_t>;

    QWidget* makeHead();
    void makeTable();
    void openProcess(int row);
    void askForName();

    PageContext& context;
    std::optional<AppHead> head;
    bool isAlone = false;
    class AppIcon;
    AppIcon* icon = nullptr;
    TextLabel* name = nullptr;
    TextLabel* summary = nullptr;
    IconButton* closer = nullptr;
    QHBoxLayout* actions = nullptr; ///< what can be done with the application
    PushButton* reveal = nullptr;
    StatGrid* stats = nullptr;
    AppHistoryView* history = nullptr;
    TableView* table = nullptr;
    ProcessRows* processes = nullptr;
};

} // namespace ostrivane

#pragma once

#include <QListView>

namespace ostrivane {

class AlertLines;

/// Alerts by day. A click or Enter opens one, the menu key or the other button asks for its menu.
class AlertsView final : public QListView {
    Q_OBJECT
public:
    explicit AlertsView(AlertLines* lines, QWidget* parent = nullptr);

Q_SIGNALS:
    void opened(const QModelIndex& index);
    void menuWanted(const QModelIndex& index, QPoint global);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    AlertLines* lines;
};

} // namespace ostrivane

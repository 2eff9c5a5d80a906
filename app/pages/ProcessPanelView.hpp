#pragma once

#include "app/pages/ProcessesText.hpp"

#include <QWidget>

class QHBoxLayout;

namespace ostrivane {

class PushButton;
class Tag;
class TextLabel;

/// The panel below the table of processes: who the selected one is, what it does, and what can be done with it.
class ProcessPanelView final : public QWidget {
    Q_OBJECT
public:
    explicit ProcessPanelView(QWidget* parent = nullptr);

    /// @param revealable  whether its executable can be shown
    void set(const ProcessPanel& panel, bool revealable);
    void setIcon(const QPixmap& icon);

Q_SIGNALS:
    void revealWanted();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    class Picture;
    Picture* picture = nullptr;
    TextLabel* name = nullptr;
    Tag* kind = nullptr;
    TextLabel* facts = nullptr;
    TextLabel* commandLine = nullptr;
    TextLabel* activity = nullptr;
    QHBoxLayout* actions = nullptr;
    PushButton* reveal = nullptr;
};

} // namespace ostrivane

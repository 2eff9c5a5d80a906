#pragma once

#include "app/pages/PageView.hpp"
#include "app/pages/SessionsText.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class QComboBox;
class QLineEdit;
class QScrollArea;

namespace ostrivane {

class Banner;
class Card;
class EmptyState;
class PushButton;
class SessionDetail;
class TextLabel;
class TwoLineList;

/// Named stretches of work: starting and ending one, and what each of the past cost.
class SessionsPage final : public PageView {
public:
    explicit SessionsPage(PageContext& context, QWidget* parent = nullptr);

protected:
    QWidget* mainWidget() const override;
    void refresh(const ModelChanges& changes) override;
    void narrowChanged() override;

private:
    void makeHeader();
    QWidget* makeStrip(QWidget* parent);
    QWidget* makeContent(QWidget* parent);
    void start();
    void showRecording();
    void showControls(bool isRecording);
    void takeLast();
    void ask();
    void take(std::vector<StoredSession> found);
    void showList();
    void showDetail();
    void choose(std::int64_t id);
    void askToDelete(std::int64_t id);
    const StoredSession* find(std::optional<std::int64_t> id) const;

    QLineEdit* nameField = nullptr;
    PushButton* startButton = nullptr;
    PushButton* stopButton = nullptr;
    Banner* problem = nullptr;
    Card* strip = nullptr;
    TextLabel* recordingTitle = nullptr;
    TextLabel* recordingFigures = nullptr;
    EmptyState* empty = nullptr;
    QWidget* content = nullptr;
    QComboBox* menu = nullptr; ///< in the place of the list where it is narrow
    Card* listCard = nullptr;
    TwoLineList* list = nullptr;
    QScrollArea* scroll = nullptr;
    SessionDetail* detail = nullptr;

    std::vector<StoredSession> stored; ///< without the one under way
    bool hasAnswer = false;
    std::optional<std::int64_t> chosen;
    bool showsLast = false;                  ///< the session that ended last, while its row is not known
    std::optional<SessionSummary> lastTaken; ///< the last one that was shown at once
};

} // namespace ostrivane

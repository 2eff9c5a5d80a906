#include "app/pages/SessionsPage.hpp"

#include "app/pages/Links.hpp"
#include "app/pages/SessionDetail.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/EmptyState.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/MessageDialog.hpp"
#include "app/widgets/Scrolling.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/TwoLineList.hpp"
#include "app/widgets/Type.hpp"
#include "core/judgement/SessionSummaryJSON.hpp"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPainter>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace ostrivane {

namespace {

constexpr double listWidth = 244;
constexpr double fieldWidth = 200;
constexpr double fieldPadding = 6;
constexpr double dot = 10;

/// The sign of a recording; the word beside it says the same.
class RecordingDot final : public QWidget {
public:
    explicit RecordingDot(QWidget* parent) : QWidget(parent) { setFixedSize(Type::px(dot), Type::px(dot)); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Theme::current().high.mark);
        painter.drawEllipse(rect());
    }
};

} // namespace

SessionsPage::SessionsPage(PageContext& given, QWidget* parent) : PageView(Page::sessions, given, parent) {
    setSubtitle(QStringLiteral("What a stretch of work cost, recorded when you ask for it"));
    makeHeader();
    auto* body = new QWidget(this);
    auto* column = new QVBoxLayout(body);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Type::px(12));
    problem = new Banner(body);
    problem->set(Condition::high, {});
    empty = new EmptyState(Icons::nameOf(Page::sessions), body);
    empty->set(QStringLiteral("No sessions yet"),
               QStringLiteral("Start one before a piece of work and see afterwards what it cost."));
    empty->hide();
    column->addWidget(problem);
    column->addWidget(makeStrip(body));
    column->addWidget(empty, 1);
    column->addWidget(makeContent(body), 1);
    setBody(body, true);
    narrowChanged();
}

void SessionsPage::makeHeader() {
    nameField = new QLineEdit(this);
    nameField->setPlaceholderText(QStringLiteral("Session name"));
    nameField->setAccessibleName(QStringLiteral("Session name"));
    nameField->setFixedWidth(Type::px(fieldWidth));
    nameField->setTextMargins(Type::px(fieldPadding), 0, Type::px(fieldPadding), 0);
    connect(nameField, &QLineEdit::returnPressed, this, &SessionsPage::start);
    startButton = new PushButton(QStringLiteral("Start Session"), ButtonKind::primary, this);
    startButton->setIconName("play");
    connect(startButton, &QAbstractButton::clicked, this, &SessionsPage::start);
    stopButton = new PushButton(QStringLiteral("Stop Session"), ButtonKind::plain, this);
    stopButton->setIconName("stopsquare", Tone::high);
    connect(stopButton, &QAbstractButton::clicked, this, [this] { model().stopSession(); });
    addHeaderControl(nameField);
    addHeaderControl(startButton);
    addHeaderControl(stopButton);
}

QWidget* SessionsPage::makeStrip(QWidget* parent) {
    strip = new Card({}, parent);
    auto* row = new QHBoxLayout;
    row->setSpacing(Type::px(6));
    recordingTitle = new TextLabel(TypeRole::bodyStrong, Tone::text, strip);
    recordingFigures = new TextLabel(TypeRole::body, Tone::text2, strip);
    recordingFigures->setTabular(true);
    row->addWidget(new RecordingDot(strip));
    row->addSpacing(Type::px(5));
    row->addWidget(recordingTitle);
    row->addWidget(recordingFigures, 1);
    strip->body()->addLayout(row);
    strip->hide();
    return strip;
}

QWidget* SessionsPage::makeContent(QWidget* parent) {
    content = new QWidget(parent);
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Type::px(12));
    menu = new QComboBox(content);
    menu->setAccessibleName(QStringLiteral("Session"));
    menu->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    connect(menu, &QComboBox::activated, this, [this](int index) { choose(menu->itemData(index).toLongLong()); });
    column->addWidget(menu);

    auto* row = new QHBoxLayout;
    row->setSpacing(Type::px(12));
    listCard = new Card(QStringLiteral("Sessions"), content);
    listCard->setFlush(true);
    listCard->setFixedWidth(Type::px(listWidth));
    list = new TwoLineList(QStringLiteral("Sessions"), listCard);
    connect(list, &TwoLineList::rowChosen, this, &SessionsPage::choose);
    connect(list, &TwoLineList::deleteWanted, this, &SessionsPage::askToDelete);
    listCard->body()->addWidget(list);
    row->addWidget(listCard);

    detail = new SessionDetail(&model().settings().defaults(), [this](const std::string& key) {
        const ApplicationSnapshot* app = state().app(key);
        return app ? app->bundlePath : std::nullopt;
    });
    connect(detail, &SessionDetail::deleteWanted, this, [this] {
        if (chosen)
            askToDelete(*chosen);
    });
    connect(detail, &SessionDetail::appActivated, this, [this](const std::string& key) { openApp(model(), key); });
    scroll = scrolling(detail, content);
    scroll->setFocusPolicy(Qt::StrongFocus); // its keys scroll
    scroll->setAccessibleName(QStringLiteral("Chosen session"));
    row->addWidget(scroll, 1);
    column->addLayout(row, 1);
    content->hide();
    return content;
}

QWidget* SessionsPage::mainWidget() const {
    return isNarrow() ? static_cast<QWidget*>(menu) : list;
}

void SessionsPage::narrowChanged() {
    menu->setVisible(isNarrow());
    listCard->setVisible(!isNarrow());
}

void SessionsPage::refresh(const ModelChanges& changes) {
    if (changes.snapshot || changes.session)
        showRecording();
    if (changes.session) {
        takeLast();
        ask();
    }
}

void SessionsPage::start() {
    if (state().session)
        return;
    model().startSession(nameField->text().trimmed().toStdString());
    nameField->clear();
}

void SessionsPage::showRecording() {
    const auto& session = state().session;
    showControls(session.has_value());
    if (session) {
        const RecordingText recording = presentRecording(session->figures(context.now()));
        recordingTitle->setText(recording.title);
        recordingFigures->setText(recording.figures);
    }
    strip->setVisible(session.has_value());
}

/// What is hidden hands its focus on: else it would go to whatever comes first in the window.
void SessionsPage::showControls(bool isRecording) {
    const bool hadFocus = isRecording ? nameField->hasFocus() || startButton->hasFocus() : stopButton->hasFocus();
    PushButton* next = isRecording ? stopButton : startButton;
    next->setVisible(true);
    if (hadFocus)
        next->setFocus(Qt::OtherFocusReason);
    nameField->setVisible(!isRecording);
    startButton->setVisible(!isRecording);
    stopButton->setVisible(isRecording);
}

/// A session that ended here is shown at once, before the history has its row.
void SessionsPage::takeLast() {
    const auto& last = state().lastSessionSummary;
    if (!last || last == lastTaken)
        return;
    lastTaken = last;
    showsLast = true;
    chosen.reset();
    list->choose(std::nullopt);
    showDetail();
}

void SessionsPage::ask() {
    model().history().sessions(
        here<std::vector<StoredSession>>([this](std::vector<StoredSession> found) { take(std::move(found)); }));
    model().history().readProblem(here<std::optional<std::string>>([this](const std::optional<std::string>& error) {
        problem->set(Condition::high, error ? QStringLiteral("The history cannot be read.") : QString(),
                     text(error.value_or("")));
    }));
}

void SessionsPage::take(std::vector<StoredSession> found) {
    hasAnswer = true;
    const auto& session = state().session;
    const auto& last = state().lastSessionSummary;
    std::erase_if(found, [&](const StoredSession& row) {
        return session && !row.end && isOf(row, session->name(), session->start());
    });
    for (StoredSession& row : found) {
        if (!last || !isOf(row, last->name, last->start))
            continue;
        if (!row.end) { // its end is still on its way
            row.end = last->end;
            row.summaryJSON = sessionSummaryJSON(*last);
        }
        if (std::exchange(showsLast, false))
            chosen = row.id;
    }
    stored = std::move(found);
    if (!find(chosen) && !showsLast)
        chosen = stored.empty() ? std::nullopt : std::optional(stored.front().id);
    showList();
    showDetail();
}

void SessionsPage::showList() {
    std::vector<TwoLineRow> rows;
    rows.reserve(stored.size());
    const QSignalBlocker quiet(menu);
    menu->clear();
    for (const StoredSession& session : stored) {
        const SessionRow row = presentSessionRow(session, context.now());
        rows.push_back({session.id, row.name, row.duration, row.when});
        menu->addItem(menuText(row), QVariant::fromValue<qlonglong>(session.id));
    }
    list->set(std::move(rows));
    list->choose(chosen);
    menu->setCurrentIndex(chosen ? menu->findData(QVariant::fromValue<qlonglong>(*chosen)) : -1);
}

void SessionsPage::showDetail() {
    const StoredSession* session = find(chosen);
    if (session)
        detail->set(presentSession(*session, context.now()));
    else if (showsLast)
        detail->set(presentSummary(*state().lastSessionSummary, context.now()));
    detail->setDeletable(session != nullptr);
    const bool isEmpty = !session && !showsLast;
    empty->setVisible(isEmpty && hasAnswer);
    content->setVisible(!isEmpty);
}

void SessionsPage::choose(std::int64_t id) {
    chosen = id;
    showsLast = false;
    list->choose(chosen);
    menu->setCurrentIndex(menu->findData(QVariant::fromValue<qlonglong>(id)));
    showDetail();
    scroll->ensureVisible(0, 0);
}

void SessionsPage::askToDelete(std::int64_t id) {
    const StoredSession* session = find(id);
    if (!session || !MessageDialog::ask(deleteQuestion(presentSessionRow(*session, context.now()).name), this))
        return;
    model().history().deleteSession(id);
    ask();
}

const StoredSession* SessionsPage::find(std::optional<std::int64_t> id) const {
    const auto found = std::ranges::find_if(stored, [&](const StoredSession& session) { return session.id == id; });
    return found == stored.end() ? nullptr : &*found;
}

} // namespace ostrivane

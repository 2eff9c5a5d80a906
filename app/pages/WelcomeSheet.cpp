#include "app/pages/WelcomeSheet.hpp"

#include "app/model/AppModel.hpp"
#include "app/pages/LoginRow.hpp"
#include "app/pages/SettingsGroup.hpp"
#include "app/pages/ShownState.hpp"
#include "app/pages/WelcomeText.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/Scrolling.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TextLabel.hpp"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double sheetWidth = 540;
constexpr double margin = 30;
constexpr double around = 16; ///< of the window, at least
constexpr double corner = 12;

/// An icon on a tinted square.
class IconSquare final : public QWidget {
public:
    IconSquare(std::string_view name, double size, bool isFilled, QWidget* parent)
        : QWidget(parent), icon(name), filled(isFilled) {
        setFixedSize(Type::px(size), Type::px(size));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const Theme& theme = Theme::current();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(filled ? theme.accentFill : theme.accentBg);
        painter.drawRoundedRect(rect(), width() / 4.5, width() / 4.5);
        const int side = width() / 2;
        QRect place(0, 0, side, side);
        place.moveCenter(rect().center());
        painter.drawPixmap(place,
                           Icons::pixmap(icon, side, filled ? theme.onAccent : theme.accent, devicePixelRatioF()));
    }

private:
    std::string_view icon;
    bool filled;
};

/// Lays out what is within a widget, the innermost first: what a layout needs that stands within another one is known
/// only then.
void settle(QWidget& widget) {
    for (QWidget* child : widget.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        settle(*child);
    widget.ensurePolished();
    if (QLayout* layout = widget.layout())
        layout->activate();
}

} // namespace

WelcomeSheet::WelcomeSheet(PageContext& given, QWidget* parent) : QWidget(parent), context(given) {
    setAccessibleName(tr("Welcome to Ostrivane"));
    setFocusPolicy(Qt::NoFocus);
    content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(Type::px(margin), Type::px(margin - 4), Type::px(margin), Type::px(20));
    column->setSpacing(Type::px(16));
    addHeading(*column);
    addPoints(*column);
    column->addWidget(Card::separator(content));
    addChoices(*column);
    addButtons(*column);
    panel = scrolling(content, this); // large lettering may need more than there is
    stops = {login->control(), notifications, settings, start};
    parent->installEventFilter(this);
    content->installEventFilter(this);
    setGeometry(parent->rect());
    place();
}

void WelcomeSheet::addHeading(QVBoxLayout& column) {
    auto* title = new TextLabel(TypeRole::pageTitle, Tone::text, content);
    title->setText(tr("Welcome to Ostrivane"));
    title->setWraps(true);
    auto* line = new TextLabel(TypeRole::body, Tone::text2, content);
    line->setText(tr("See what your machine is doing, and why."));
    line->setWraps(true);
    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    words->addStretch(1);
    words->addWidget(title);
    words->addWidget(line);
    words->addStretch(1);
    auto* row = new QHBoxLayout;
    row->setSpacing(Type::px(14));
    row->addWidget(new IconSquare("gauge.with.dots.needle.50percent", 48, true, content));
    row->addLayout(words, 1);
    column.addLayout(row);
}

void WelcomeSheet::addPoints(QVBoxLayout& column) {
    for (const WelcomePoint& point : welcomePoints(context.wayBack())) {
        auto* title = new TextLabel(TypeRole::bodyStrong, Tone::text, content);
        title->setText(text(point.title));
        title->setWraps(true);
        auto* detail = new TextLabel(TypeRole::secondary, Tone::text2, content);
        detail->setText(text(point.detail));
        detail->setWraps(true);
        auto* words = new QVBoxLayout;
        words->setSpacing(0);
        words->addWidget(title);
        words->addWidget(detail);
        auto* row = new QHBoxLayout;
        row->setSpacing(Type::px(14));
        row->addWidget(new IconSquare(point.icon, 34, false, content), 0, Qt::AlignTop);
        row->addLayout(words, 1);
        column.addLayout(row);
    }
}

void WelcomeSheet::addChoices(QVBoxLayout& column) {
    auto* rows = new QVBoxLayout;
    rows->setSpacing(0);
    login = new LoginRow(context, content);
    login->setFlush();
    rows->addWidget(login);
    const QString wording = tr("Notify me when something needs attention");
    notifications = new Switch(wording, content);
    connect(notifications, &QAbstractButton::toggled, this,
            [this](bool isOn) { context.model.settings().set(&Preferences::notificationsEnabled, isOn); });
    auto* row = new SettingRow(wording, {}, notifications, content);
    row->setFlush();
    rows->addWidget(row);
    column.addLayout(rows);
}

void WelcomeSheet::addButtons(QVBoxLayout& column) {
    settings = new PushButton(tr("Settings…"), ButtonKind::plain, content);
    connect(settings, &QAbstractButton::clicked, this, [this] {
        context.model.select(Page::settings);
        close();
    });
    start = new PushButton(tr("Get Started"), ButtonKind::primary, content);
    connect(start, &QAbstractButton::clicked, this, [this] { close(); });
    auto* row = new QHBoxLayout;
    row->setSpacing(Type::px(8));
    row->addStretch(1);
    row->addWidget(settings);
    row->addWidget(start);
    column.addLayout(row);
}

void WelcomeSheet::close() {
    hide();
    context.model.setShowsWelcome(false); // whoever shows the sheet may end it now
}

void WelcomeSheet::place() {
    const int room = Type::px(around);
    const int wide = std::max(0, std::min(Type::px(sheetWidth), width() - 2 * room));
    settle(*content);
    const int wanted = std::max(content->heightForWidth(wide), content->minimumSizeHint().height());
    const int high = std::max(0, std::min(wanted, height() - 2 * room));
    // A bar that was needed once takes the width from which it would be needed again.
    panel->setVerticalScrollBarPolicy(high < wanted ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    panel->setGeometry((width() - wide) / 2, (height() - high) / 2, wide, high);
    update();
}

bool WelcomeSheet::eventFilter(QObject* watched, QEvent* happened) {
    if (watched == parent() && happened->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    if (watched == content && happened->type() == QEvent::LayoutRequest)
        place();
    return QWidget::eventFilter(watched, happened);
}

void WelcomeSheet::resizeEvent(QResizeEvent* resized) {
    QWidget::resizeEvent(resized);
    place();
}

bool WelcomeSheet::event(QEvent* happened) {
    // Ahead of the window's own shortcuts.
    if (happened->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(happened)->matches(QKeySequence::Cancel)) {
        happened->accept();
        return true;
    }
    return QWidget::event(happened);
}

bool WelcomeSheet::focusNextPrevChild(bool next) {
    const auto present = std::ranges::find(stops, QApplication::focusWidget());
    const auto count = static_cast<std::ptrdiff_t>(stops.size());
    const std::ptrdiff_t at = present == stops.end() ? (next ? -1 : 0) : present - stops.begin();
    QWidget* target = stops[static_cast<std::size_t>((at + (next ? 1 : count - 1)) % count)];
    target->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void WelcomeSheet::showEvent(QShowEvent* shown) {
    QWidget::showEvent(shown);
    raise();
    watchingSettings = context.model.settings().observe(
        [this] { showChecked(*notifications, context.model.settings()->notificationsEnabled); });
    showChecked(*notifications, context.model.settings()->notificationsEnabled);
    login->refresh();
    place();
    watchingFocus = connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now && now->window() == window() && !isAncestorOf(now))
            start->setFocus(Qt::OtherFocusReason);
    });
    start->setFocus(Qt::OtherFocusReason);
}

void WelcomeSheet::hideEvent(QHideEvent* hidden) {
    disconnect(watchingFocus);
    watchingSettings.disconnect();
    QWidget::hideEvent(hidden);
}

void WelcomeSheet::keyPressEvent(QKeyEvent* pressed) {
    if (pressed->matches(QKeySequence::Cancel))
        close();
    else if (pressed->key() == Qt::Key_Return || pressed->key() == Qt::Key_Enter)
        static_cast<QAbstractButton*>(start)->click();
    // Nothing is for what lies below.
}

void WelcomeSheet::mousePressEvent(QMouseEvent* pressed) {
    pressed->accept();
}

void WelcomeSheet::paintEvent(QPaintEvent*) {
    const Theme& theme = Theme::current();
    QPainter painter(this);
    QColor veil = theme.isDark ? theme.window : theme.text;
    veil.setAlphaF(theme.isDark ? 0.6F : 0.3F);
    painter.fillRect(rect(), veil);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(theme.border);
    painter.setBrush(theme.card);
    painter.drawRoundedRect(QRectF(panel->geometry()).adjusted(-0.5, -0.5, 0.5, 0.5), Type::px(corner),
                            Type::px(corner));
}

} // namespace ostrivane

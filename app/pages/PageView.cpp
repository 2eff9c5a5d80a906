#include "app/pages/PageView.hpp"

#include "app/widgets/Buttons.hpp"
#include "app/widgets/Scrolling.hpp"
#include "app/widgets/StatusGlyph.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Type.hpp"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <map>
#include <utility>

namespace ostrivane {

namespace {

constexpr double headerHeight = 52;
constexpr double pageMargin = 20;
constexpr double narrowMargin = 16;

constexpr ModelChanges everything{.snapshot = true,
                                  .alerts = true,
                                  .insights = true,
                                  .health = true,
                                  .totals = true,
                                  .session = true,
                                  .navigation = true};

/// Shows a line under itself once the body has scrolled.
class Header final : public QWidget {
public:
    using QWidget::QWidget;
    void setLine(bool shows) {
        if (shows == line)
            return;
        line = shows;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        if (line)
            QPainter(this).fillRect(0, height() - 1, width(), 1, Theme::current().separator);
    }

private:
    bool line = false;
};

} // namespace

PageView::PageView(Page page, PageContext& given, QWidget* parent) : QWidget(parent), context(given), ownPage(page) {
    header = new Header(this);
    header->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    back = new IconButton("back", tr("Back"), header);
    forward = new IconButton("forward", tr("Forward"), header);
    connect(back, &QAbstractButton::clicked, this, [this] { model().goBack(); });
    connect(forward, &QAbstractButton::clicked, this, [this] { model().goForward(); });
    heading = new TextLabel(TypeRole::pageTitle, Tone::text, header);
    heading->setText(text(title(page, context.words)));
    heading->setElideMode(Qt::ElideNone);
    glyph = new StatusGlyph(Condition::good, 14, header);
    glyph->hide();
    subtitle = new TextLabel(TypeRole::secondary, Tone::text2, header);

    controls = new QHBoxLayout;
    controls->setSpacing(Type::px(8));
    titleRow = new QHBoxLayout;
    titleRow->setSpacing(Type::px(2));
    titleRow->addWidget(back);
    titleRow->addWidget(forward);
    titleRow->addSpacing(Type::px(12));
    titleRow->addWidget(heading);
    titleRow->addSpacing(Type::px(10));
    titleRow->addWidget(glyph);
    titleRow->addSpacing(Type::px(4));
    titleRow->addWidget(subtitle, 1);
    titleRow->addSpacing(Type::px(8));
    titleRow->addLayout(controls);
    auto* rows = new QVBoxLayout(header);
    rows->setContentsMargins(Type::px(pageMargin), 0, Type::px(pageMargin), 0);
    rows->setSpacing(0);
    rows->addLayout(titleRow);
    titleRow->addStrut(Type::px(headerHeight));

    strips = new QWidget(this);
    auto* stripLayout = new QVBoxLayout(strips);
    stripLayout->setContentsMargins(Type::px(pageMargin), 0, Type::px(pageMargin), 0);
    stripLayout->setSpacing(Type::px(12));
    strips->hide();

    holder = new QWidget(this);
    auto* holderLayout = new QVBoxLayout(holder);
    holderLayout->setContentsMargins(0, 0, 0, 0);

    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->addWidget(header);
    all->addWidget(strips);
    all->addWidget(holder, 1);
    setAccessibleName(heading->text());
    setFocusPolicy(Qt::ClickFocus);
    updateHeader();
}

PageView::~PageView() {
    if (awake)
        model().unregisterPage(std::string(rawValue(ownPage)));
}

void PageView::setWindowSeen(bool isSeen) {
    seen = isSeen;
    settle();
}

void PageView::setNarrow(bool isNarrow) {
    if (isNarrow == narrow)
        return;
    narrow = isNarrow;
    const int margin = Type::px(narrow ? narrowMargin : pageMargin);
    header->layout()->setContentsMargins(margin, 0, margin, 0);
    strips->layout()->setContentsMargins(margin, 0, margin, Type::px(12));
    if (scroll)
        placeBody();
    else
        holder->setContentsMargins(margin, 0, margin, margin);
    narrowChanged();
}

void PageView::focusMain() {
    QWidget* main = mainWidget();
    if (!main || !main->isVisible())
        main = this;
    main->setFocus(Qt::OtherFocusReason);
}

void PageView::focusHeader() {
    for (QWidget* widget = header->nextInFocusChain(); widget != header; widget = widget->nextInFocusChain())
        if (header->isAncestorOf(widget) && widget->isVisible() && widget->isEnabled() &&
            (widget->focusPolicy() & Qt::TabFocus))
            return widget->setFocus(Qt::TabFocusReason);
}

bool PageView::headerHas(const QWidget* widget) const {
    return header->isAncestorOf(widget);
}

void PageView::setSubtitle(const QString& line) {
    subtitle->setText(line);
}

void PageView::setSubtitleCondition(std::optional<Condition> condition, const QString& word) {
    glyph->setVisible(condition.has_value());
    if (condition)
        glyph->set(*condition, word);
}

void PageView::addHeaderControl(QWidget* control) {
    controls->addWidget(control);
}

void PageView::setBody(QWidget* body, bool fills) {
    const int margin = Type::px(pageMargin);
    if (fills) {
        holder->setContentsMargins(margin, 0, margin, margin);
        holder->layout()->addWidget(body);
        return;
    }
    scroll = scrolling(body, holder);
    holder->layout()->addWidget(scroll);
    connect(scroll->verticalScrollBar(), &QScrollBar::valueChanged, header,
            [line = static_cast<Header*>(header)](int value) { line->setLine(value > 0); });
    connect(scroll->verticalScrollBar(), &QScrollBar::rangeChanged, this, &PageView::placeBody);
    placeBody();
}

/// The scroll bar lies in the margin, so that what scrolls is as wide as what does not.
void PageView::placeBody() {
    const int margin = Type::px(narrow ? narrowMargin : pageMargin);
    const QScrollBar* bar = scroll->verticalScrollBar();
    const int beside = bar->maximum() > bar->minimum() ? std::max(margin - bar->sizeHint().width(), 0) : margin;
    const bool fromLeft = layoutDirection() == Qt::LeftToRight;
    scroll->widget()->setContentsMargins(fromLeft ? margin : beside, 0, fromLeft ? beside : margin, margin);
}

/// What has the focus took the key already if it wanted it.
void PageView::keyPressEvent(QKeyEvent* event) {
    static const std::map<int, QAbstractSlider::SliderAction> moves = {
        {Qt::Key_Up, QAbstractSlider::SliderSingleStepSub},   {Qt::Key_Down, QAbstractSlider::SliderSingleStepAdd},
        {Qt::Key_PageUp, QAbstractSlider::SliderPageStepSub}, {Qt::Key_PageDown, QAbstractSlider::SliderPageStepAdd},
        {Qt::Key_Home, QAbstractSlider::SliderToMinimum},     {Qt::Key_End, QAbstractSlider::SliderToMaximum}};
    const auto move = moves.find(event->key());
    if (scroll && move != moves.end() && !(event->modifiers() & ~Qt::KeypadModifier))
        scroll->verticalScrollBar()->triggerAction(move->second);
    else
        QWidget::keyPressEvent(event);
}

void PageView::addStrip(QWidget* strip) {
    strips->layout()->addWidget(strip);
    strips->layout()->setContentsMargins(Type::px(pageMargin), 0, Type::px(pageMargin), Type::px(12));
    strips->show();
}

/// Below the title, at its end, where both are too wide for one line.
void PageView::placeControls() {
    const QMargins margins = header->layout()->contentsMargins();
    const int more = areControlsBelow ? titleRow->spacing() + controls->minimumSize().width() : 0;
    const int wide = titleRow->minimumSize().width() + more;
    const bool goBelow = wide > width() - margins.left() - margins.right();
    if (goBelow == areControlsBelow)
        return;
    areControlsBelow = goBelow;
    auto* rows = static_cast<QVBoxLayout*>(header->layout());
    if (areControlsBelow) {
        titleRow->removeItem(controls);
        rows->addLayout(controls);
        rows->setAlignment(controls, Qt::AlignTrailing);
        controls->setContentsMargins(0, 0, 0, Type::px(12));
    } else {
        rows->removeItem(controls);
        titleRow->addLayout(controls);
        titleRow->setAlignment(controls, {});
        controls->setContentsMargins(0, 0, 0, 0);
    }
}

bool PageView::event(QEvent* event) {
    const bool isHandled = QWidget::event(event);
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest)
        placeControls();
    return isHandled;
}

void PageView::showEvent(QShowEvent* shown) {
    QWidget::showEvent(shown);
    settle();
}

void PageView::hideEvent(QHideEvent* hidden) {
    QWidget::hideEvent(hidden);
    settle();
}

void PageView::settle() {
    const bool wanted = seen && isVisible();
    if (wanted == awake)
        return;
    awake = wanted;
    const std::string name(rawValue(ownPage));
    if (!awake) {
        watching.disconnect();
        model().unregisterPage(name);
        sleep();
        return;
    }
    model().registerPage(name);
    watching = model().observe([this](const ModelChanges& changes) {
        if (changes.navigation)
            updateHeader();
        refresh(changes);
    });
    updateHeader();
    wake();
    refresh(everything);
}

void PageView::updateHeader() {
    back->setEnabled(!model().navigation().backStack().empty());
    forward->setEnabled(!model().navigation().forwardStack().empty());
}

} // namespace ostrivane

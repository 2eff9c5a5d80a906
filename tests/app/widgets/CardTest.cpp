#include "app/widgets/Card.hpp"
#include "tests/app/widgets/WidgetHarness.hpp"

#include "app/widgets/Badge.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/CardGrid.hpp"
#include "app/widgets/TextLabel.hpp"

#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace ostrivane {

namespace {

class CardTest : public testing::Test {
    WidgetSetting setting;
};

Card* cardOf(const QString& text) {
    auto* card = new Card(QStringLiteral("Title"));
    auto* label = new TextLabel;
    label->setText(text);
    label->setElideMode(Qt::ElideNone);
    card->body()->addWidget(label);
    return card;
}

TEST_F(CardTest, AGridClosesTheGapOfWhatIsHidden) {
    CardGrid grid(2);
    std::vector<Card*> cards;
    for (int index = 0; index < 4; ++index) {
        cards.push_back(cardOf(QString(1 + 20 * index, u'x'))); // of very different need
        grid.add(cards.back());
    }
    showActive(grid, {600, 400});
    EXPECT_EQ(cards[0]->width(), cards[1]->width()) << "columns are equal whatever stands in them";
    EXPECT_EQ(cards[0]->height(), cards[1]->height());
    const QPoint second = cards[1]->pos();
    const QPoint third = cards[2]->pos();
    grid.setShown(cards[1], false);
    QCoreApplication::processEvents();
    EXPECT_EQ(cards[2]->pos(), second);
    EXPECT_EQ(cards[3]->x(), third.x());
    grid.setShown(cards[1], true);
    grid.setColumns(1);
    QCoreApplication::processEvents();
    for (std::size_t index = 1; index < cards.size(); ++index) {
        EXPECT_EQ(cards[index]->x(), 0);
        EXPECT_GT(cards[index]->y(), cards[index - 1]->y());
        EXPECT_EQ(cards[index]->width(), 600);
    }
}

TEST_F(CardTest, AWideMemberTakesItsColumnsAndNoMore) {
    CardGrid grid(3);
    auto* first = cardOf({});
    auto* wide = cardOf({});
    grid.add(first);
    grid.add(wide, 2);
    showActive(grid, {624, 100});
    EXPECT_EQ(first->width(), 200);
    EXPECT_EQ(wide->width(), 2 * 200 + 12) << "the same columns, whatever stands in other rows";
    grid.setColumns(1); // narrower than the span
    QCoreApplication::processEvents();
    EXPECT_EQ(wide->width(), 624);
    EXPECT_GT(wide->y(), first->y());
}

/// Cards beside each other, one with a control in its head, one without: their titles stand on one line.
TEST_F(CardTest, TitlesStandOnOneLine) {
    const auto middle = [](Card& card) {
        card.body()->addWidget(new QWidget);
        card.resize(300, 200);
        card.show();
        QCoreApplication::processEvents();
        const auto* title = card.findChild<TextLabel*>();
        return title->mapTo(&card, title->rect().center()).y();
    };
    Card plain(QStringLiteral("Plain"));
    Card withButton(QStringLiteral("Button"));
    auto* button = new PushButton(QStringLiteral("Export…"));
    withButton.addControl(button);
    EXPECT_NEAR(middle(plain), middle(withButton), 1);
    EXPECT_TRUE(withButton.rect().contains(QRect(button->mapTo(&withButton, QPoint()), button->size())));
}

TEST_F(CardTest, AHeadKeepsTitleAndControlsAheadOfItsNote) {
    Card card(QStringLiteral("Applications by memory"));
    card.setNote(QString(200, u'x'));
    auto* badge = new Badge;
    badge->set(Condition::good, QStringLiteral("Normal"));
    card.addControl(badge);
    showActive(card, {320, 80});
    const QList<TextLabel*> labels = card.findChildren<TextLabel*>();
    EXPECT_EQ(labels[0]->toolTip(), QString()) << "the title is whole";
    EXPECT_NE(labels[1]->toolTip(), QString()) << "the note is cut";
    EXPECT_EQ(badge->width(), badge->sizeHint().width());
}

TEST_F(CardTest, AHeadIsNeverLowerThanItsControls) {
    Card card(QStringLiteral("Applications"));
    auto* link = new LinkButton(QStringLiteral("All applications"));
    card.addControl(link);
    card.body()->addWidget(new TextLabel);
    showActive(card, {300, 1});
    EXPECT_EQ(card.height(), card.minimumSizeHint().height());
    EXPECT_EQ(link->height(), link->sizeHint().height());
    EXPECT_TRUE(link->parentWidget()->rect().contains(link->geometry()));
}

TEST_F(CardTest, ATableWithoutTitleBeginsAtItsEdge) {
    Card card;
    card.setFlush(true);
    auto* table = new QWidget;
    card.body()->addWidget(table, 1);
    showActive(card, {300, 100});
    EXPECT_EQ(table->geometry().topLeft(), QPoint(1, 1));
    EXPECT_LT(table->geometry().bottom(), card.height() - 2) << "the round corners at the foot stay free";
}

} // namespace

} // namespace ostrivane

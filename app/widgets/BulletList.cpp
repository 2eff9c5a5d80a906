#include "app/widgets/BulletList.hpp"

#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QPainter>
#include <QStyle>
#include <QTextLayout>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double indent = 12;
constexpr double between = 4;
constexpr double bullet = 4;
constexpr qsizetype longestSentence = 600; // with names of any length in it

/// Breaks a sentence between words, and within one that is longer than a line.
void breakLines(QTextLayout& layout, int width, Qt::LayoutDirection direction) {
    QTextOption option;
    option.setAlignment(direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    qreal top = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, top});
        top += Type::lineHeight(TypeRole::table);
    }
    layout.endLayout();
}

} // namespace

BulletList::BulletList(QWidget* parent) : QWidget(parent) {
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void BulletList::set(const QStringList& sentences) {
    if (sentences == shown)
        return;
    const int before = heightForWidth(width());
    shown = sentences;
    for (QString& sentence : shown)
        if (sentence.size() > longestSentence)
            sentence = sentence.left(longestSentence) + QChar(0x2026);
    setAccessibleName(shown.join(QChar::Space));
    if (heightForWidth(width()) != before)
        updateGeometry();
    update();
}

int BulletList::sentenceHeight(const QString& sentence, int width) const {
    QTextLayout layout(sentence, Type::font(TypeRole::table));
    breakLines(layout, std::max(width - Type::px(indent), 1), layoutDirection());
    return layout.lineCount() * Type::lineHeight(TypeRole::table);
}

int BulletList::heightForWidth(int width) const {
    int height = 0;
    for (const QString& sentence : shown)
        height += sentenceHeight(sentence, width) + (height > 0 ? Type::px(between) : 0);
    return height;
}

QSize BulletList::sizeHint() const {
    const int width = Type::px(280);
    return {width, heightForWidth(width)};
}

QSize BulletList::minimumSizeHint() const {
    return {Type::px(80), Type::lineHeight(TypeRole::table)};
}

void BulletList::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme& theme = Theme::current();
    const int line = Type::lineHeight(TypeRole::table);
    const int dot = Type::px(bullet);
    const QRect room(Type::px(indent), 0, std::max(width() - Type::px(indent), 1), height());
    int top = 0;
    for (const QString& sentence : shown) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.text3);
        painter.drawEllipse(
            QStyle::visualRect(layoutDirection(), rect(), QRect(Type::px(1), top + (line - dot) / 2, dot, dot)));
        painter.setPen(theme.text);
        QTextLayout layout(sentence, Type::font(TypeRole::table));
        breakLines(layout, room.width(), layoutDirection());
        layout.draw(&painter, {QStyle::visualRect(layoutDirection(), rect(), room).left() + 0.0, top + 0.0});
        top += layout.lineCount() * line + Type::px(between);
    }
}

} // namespace ostrivane

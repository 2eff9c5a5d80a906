#include "app/widgets/BulletList.hpp"

#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double indent = 12;
constexpr double between = 4;
constexpr double bullet = 4;
constexpr qsizetype longestSentence = 600; // with names of any length in it
constexpr int wrapping = Qt::TextWordWrap | Qt::TextWrapAnywhere;

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
    const QRect room(0, 0, std::max(width - Type::px(indent), 1), QWIDGETSIZE_MAX);
    return QFontMetrics(Type::font(TypeRole::table)).boundingRect(room, wrapping, sentence).height();
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
    const QFont font = Type::font(TypeRole::table);
    painter.setFont(font);
    const int line = QFontMetrics(font).height();
    const int dot = Type::px(bullet);
    int top = 0;
    for (const QString& sentence : shown) {
        const int high = sentenceHeight(sentence, width());
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.text3);
        painter.drawEllipse(
            QStyle::visualRect(layoutDirection(), rect(), QRect(Type::px(1), top + (line - dot) / 2, dot, dot)));
        painter.setPen(theme.text);
        const QRect room(Type::px(indent), top, width() - Type::px(indent), high);
        painter.drawText(QStyle::visualRect(layoutDirection(), rect(), room),
                         static_cast<int>(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignTop)) |
                             wrapping,
                         sentence);
        top += high + Type::px(between);
    }
}

} // namespace ostrivane

#include "app/widgets/Icons.hpp"

#include "app/widgets/Strings.hpp"
#include "app/widgets/Theme.hpp"
#include "core/model/Page.hpp"
#include "core/model/RawValue.hpp"

#include <QFile>
#include <QIcon>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <array>
#include <string>

/// The drawings lie in a static library, whose resources are not registered by themselves. Not in a namespace: the
/// macro names a function of the generated source.
static void registerDrawings() {
    static const bool isDone = [] {
        Q_INIT_RESOURCE(icons);
        return true;
    }();
    static_cast<void>(isDone);
}

namespace ostrivane::Icons {

namespace {

QString fileOf(std::string_view name) {
    return QStringLiteral(":/icons/%1.svg").arg(text(name));
}

/// Draws at the size and ratio that is asked for.
class OneInk final : public QIconEngine {
public:
    explicit OneInk(std::string_view which) : name(which) {}
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        painter->drawPixmap(rect, pixmap(rect.size(), mode, state));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        const Theme& theme = Theme::current();
        return Icons::pixmap(name, size.height(), mode == QIcon::Disabled ? theme.text3 : theme.text2, 1);
    }
    QIconEngine* clone() const override { return new OneInk(*this); }

private:
    std::string name;
};

} // namespace

std::string_view nameOf(Page page) {
    static const auto names = [] {
        std::array<std::string, rawTexts(EnumTag<Page>()).size()> made;
        for (const auto& [value, raw] : rawTexts(EnumTag<Page>()))
            made[static_cast<std::size_t>(value)] = "page." + std::string(raw);
        return made;
    }();
    return names[static_cast<std::size_t>(page)];
}

QPixmap pixmap(std::string_view name, int pixels, const QColor& colour, qreal deviceRatio) {
    const QString key =
        QStringLiteral("ostrivane %1 %2 %3 %4").arg(text(name)).arg(pixels).arg(colour.rgba()).arg(deviceRatio);
    QPixmap drawn;
    if (QPixmapCache::find(key, &drawn))
        return drawn;
    if (!exists(name) || pixels <= 0)
        return {};
    const int dots = qMax(1, qRound(pixels * deviceRatio));
    drawn = QPixmap(dots, dots);
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    QSvgRenderer(fileOf(name)).render(&painter, QRectF(0, 0, dots, dots));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(drawn.rect(), colour);
    painter.end();
    drawn.setDevicePixelRatio(deviceRatio);
    QPixmapCache::insert(key, drawn);
    return drawn;
}

QIcon icon(std::string_view name) {
    return QIcon(new OneInk(name));
}

bool exists(std::string_view name) {
    registerDrawings();
    return QFile::exists(fileOf(name));
}

void clear() {
    QPixmapCache::clear();
}

} // namespace ostrivane::Icons

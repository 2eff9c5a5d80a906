#include "app/widgets/AppIcons.hpp"

#include "app/widgets/AppIconFinder.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"
#include "core/attribution/AppGrouper.hpp"
#include "core/model/ApplicationSnapshot.hpp"

#include <QHash>
#include <QPainter>
#include <QStringList>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>
#include <cstdint>

namespace ostrivane::AppIcons {

namespace {

constexpr qsizetype mostKept = 4000; // pictures; some per application and size

QHash<QString, QPixmap>& kept() {
    static QHash<QString, QPixmap> pictures;
    return pictures;
}

bool isProgram(std::string_view key) {
    return key.starts_with(AppGrouper::executablePrefix);
}

QPixmap blank(int pixels, qreal deviceRatio) {
    const int dots = qMax(1, qRound(pixels * deviceRatio));
    QPixmap made(dots, dots);
    made.setDevicePixelRatio(deviceRatio);
    made.fill(Qt::transparent);
    return made;
}

QPixmap gear(int pixels, qreal deviceRatio) {
    const Theme& theme = Theme::current();
    QPixmap made = blank(pixels, deviceRatio);
    QPainter painter(&made);
    Paint::sheet(painter, QRectF(0, 0, pixels, pixels), pixels / 4.5, theme.unknown.ground, theme.border);
    const int sign = qMax(8, pixels * 5 / 8);
    const QPixmap drawn = Icons::pixmap("gearshape.2", sign, theme.unknown.text, deviceRatio);
    painter.drawPixmap(QPointF((pixels - sign) / 2.0, (pixels - sign) / 2.0), drawn);
    return made;
}

/// The first thing that a person would call a letter, or a digit; absent letters leave the tile bare.
QString initialOf(const QString& name) {
    for (qsizetype at = 0; at < qMin<qsizetype>(name.size(), 64); ++at) {
        if (!name[at].isLetterOrNumber() && !name[at].isHighSurrogate())
            continue;
        QTextBoundaryFinder ends(QTextBoundaryFinder::Grapheme, name.mid(at, 16));
        const qsizetype end = ends.toNextBoundary();
        return name.mid(at, std::clamp<qsizetype>(end, 1, 8)).toUpper();
    }
    return {};
}

/// What decides how a picture looks, and so what it is kept under.
QString placeOf(std::string_view key, std::string_view name, const std::optional<std::string>& bundlePath, int pixels,
                qreal deviceRatio) {
    QStringList parts{QString::number(pixels), QString::number(deviceRatio)};
    if (isProgram(key))
        parts << text(AppGrouper::executablePrefix);
    else
        parts << text(key) << text(name) << text(bundlePath.value_or(""));
    return parts.join(QLatin1Char('\n'));
}

QPixmap tile(std::string_view key, const QString& name, int pixels, qreal deviceRatio) {
    QPixmap made = blank(pixels, deviceRatio);
    QPainter painter(&made);
    Paint::sheet(painter, QRectF(0, 0, pixels, pixels), pixels / 4.5, tileColour(key));
    QFont font = Type::font(TypeRole::bodyStrong);
    font.setPixelSize(qMax(7, qRound(pixels * 0.58)));
    painter.setFont(font);
    painter.setPen(Theme::current().onAccent);
    painter.drawText(QRectF(0, 0, pixels, pixels), Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip,
                     initialOf(name));
    return made;
}

} // namespace

QColor tileColour(std::string_view key) {
    // The light set's colours, made dark enough for white lettering, are told apart on either ground.
    const Theme& theme = Theme::light();
    const std::array<QColor, 7> colours{theme.s1, theme.s2, theme.s3, theme.s4, theme.s5, theme.s6, theme.neutral};
    std::uint32_t hash = 2166136261U; // FNV-1a: the same in every run
    for (const char character : key)
        hash = (hash ^ static_cast<unsigned char>(character)) * 16777619U;
    return Paint::mixed(colours[hash % colours.size()], theme.text, 0.28);
}

QPixmap pixmap(std::string_view key, std::string_view name, const std::optional<std::string>& bundlePath, int pixels,
               qreal deviceRatio) {
    if (pixels <= 0)
        return {};
    const QString place = placeOf(key, name, bundlePath, pixels, deviceRatio);
    if (const auto found = kept().constFind(place); found != kept().constEnd())
        return *found;
    if (kept().size() >= mostKept)
        kept().clear();
    if (isProgram(key))
        return *kept().insert(place, gear(pixels, deviceRatio));
    if (bundlePath) {
        if (const QIcon icon = AppIconFinder::instance().icon(*bundlePath); !icon.isNull()) {
            QPixmap made = blank(pixels, deviceRatio);
            QPainter painter(&made);
            icon.paint(&painter, QRect(0, 0, pixels, pixels));
            painter.end();
            return *kept().insert(place, made);
        }
    }
    return *kept().insert(place, tile(key, text(name), pixels, deviceRatio));
}

QPixmap pixmap(const ApplicationSnapshot& app, int pixels, qreal deviceRatio) {
    return pixmap(app.key, app.name, app.bundlePath, pixels, deviceRatio);
}

void clear() {
    kept().clear();
}

} // namespace ostrivane::AppIcons

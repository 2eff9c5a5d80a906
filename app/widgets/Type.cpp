#include "app/widgets/Type.hpp"

#include <QFontDatabase>

#include <algorithm>
#include <cmath>

namespace ostrivane::Type {

namespace {

constexpr double drawn = 13; // the base at which the sizes are told

double size = drawn;

struct Face {
    double pixels = 13;
    int line = 18;
    int weight = 400;
};

Face face(TypeRole role) {
    switch (role) {
    case TypeRole::hero:
        return {30, 36, 600};
    case TypeRole::tileValue:
        return {22, 28, 600};
    case TypeRole::gaugeValue:
        return {24, 28, 600};
    case TypeRole::pageTitle:
        return {19, 24, 600};
    case TypeRole::sectionValue:
        return {20, 26, 600};
    case TypeRole::statValue:
        return {15, 20, 600};
    case TypeRole::body:
        return {13, 18, 400};
    case TypeRole::bodyStrong:
        return {13, 18, 600};
    case TypeRole::cardTitle:
        return {13, 20, 600};
    case TypeRole::dialogTitle:
        return {14, 20, 600};
    case TypeRole::table:
        return {12.5, 18, 400};
    case TypeRole::tableStrong:
        return {12.5, 18, 500};
    case TypeRole::tableHead:
        return {11.5, 16, 400};
    case TypeRole::secondary:
        return {12, 16, 400};
    case TypeRole::caption:
        return {11, 14, 400};
    case TypeRole::captionStrong:
        return {11, 14, 600};
    case TypeRole::code:
        return {12, 16, 400};
    }
    return {};
}

} // namespace

void setBase(double pixels) {
    size = std::clamp(pixels, 12.0, 32.0);
}

double base() {
    return size;
}

QFont font(TypeRole role) {
    const Face told = face(role);
    QFont made =
        QFontDatabase::systemFont(role == TypeRole::code ? QFontDatabase::FixedFont : QFontDatabase::GeneralFont);
    made.setPixelSize(std::max(1, static_cast<int>(std::lround(told.pixels * size / drawn))));
    made.setWeight(static_cast<QFont::Weight>(told.weight));
    return made;
}

int lineHeight(TypeRole role) {
    return px(face(role).line);
}

int px(double length) {
    return static_cast<int>(std::lround(length * size / drawn));
}

} // namespace ostrivane::Type

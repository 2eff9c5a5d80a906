#include "app/model/NotificationText.hpp"

#include "core/judgement/Alert.hpp"
#include "core/model/Text.hpp"

#include <string_view>

namespace ostrivane {

namespace {

constexpr int titleColumns = 120;
constexpr int bodyColumns = 400;
constexpr std::size_t mostBytes = 4096; // combining characters take no column, so columns alone bound nothing

std::string shown(std::string_view text, int columns) {
    return Text::fitted(Text::visible(text.substr(0, mostBytes)), columns);
}

} // namespace

NotificationText notificationText(const Alert& alert) {
    return {shown(alert.title, titleColumns), shown(alert.body, bodyColumns)};
}

} // namespace ostrivane

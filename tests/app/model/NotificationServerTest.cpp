#include "app/model/NotificationServer.hpp"

#include "core/judgement/Alert.hpp"
#include "core/model/Text.hpp"

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

Alert alertOf(AlertKind kind, std::optional<std::string> subject) {
    return {.kind = kind, .title = "Title", .body = "Body", .subject = std::move(subject)};
}

TEST(NotificationServer, tellsHowUrgentAnAlertIs) {
    const NotificationServer server(":1.1", false);
    Alert alert = alertOf(AlertKind::lowStorage, "/");
    std::vector<int> urgencies;
    for (const auto severity : {AlertSeverity::info, AlertSeverity::warning, AlertSeverity::critical}) {
        alert.severity = severity;
        urgencies.push_back(server.notificationOf(alert).urgency);
    }
    EXPECT_EQ(urgencies, (std::vector{0, 1, 2}));
}

TEST(NotificationServer, replacesTheLastOfTheSameKindAndSubject) {
    NotificationServer server(":1.1", false);
    const Alert alert = alertOf(AlertKind::sustainedCPU, "a");
    EXPECT_EQ(server.notificationOf(alert).replaces, 0U);
    server.shown(alert, 7);
    server.shown(alertOf(AlertKind::sustainedCPU, "b"), 8);
    server.shown(alertOf(AlertKind::sustainedCPU, std::nullopt), 9);
    EXPECT_EQ(server.notificationOf(alert).replaces, 7U);
    EXPECT_EQ(server.notificationOf(alertOf(AlertKind::sustainedCPU, "")).replaces, 0U);
    EXPECT_EQ(server.notificationOf(alertOf(AlertKind::sustainedCPU, std::nullopt)).replaces, 9U);
    EXPECT_EQ(server.notificationOf(alertOf(AlertKind::unusualCPU, "a")).replaces, 0U);

    server.shown(alert, 10); // a server may give another number to what it replaced
    EXPECT_EQ(server.notificationOf(alert).replaces, 10U);
}

TEST(NotificationServer, remembersTheLatestOnly) {
    NotificationServer server(":1.1", false);
    const auto numbered = [](std::uint32_t number) {
        return alertOf(AlertKind::excessiveMemory, std::to_string(number));
    };
    const auto most = static_cast<std::uint32_t>(NotificationServer::mostRemembered);
    for (std::uint32_t number = 1; number <= most; ++number)
        server.shown(numbered(number), number);
    server.shown(numbered(1), most + 1); // the oldest is the latest again
    server.shown(numbered(most + 2), most + 2);
    EXPECT_EQ(server.notificationOf(numbered(1)).replaces, most + 1);
    EXPECT_EQ(server.notificationOf(numbered(2)).replaces, 0U);
    EXPECT_EQ(server.notificationOf(numbered(3)).replaces, 3U);
}

TEST(NotificationServer, namesCannotPassForMarkup) {
    Alert alert = alertOf(AlertKind::idleServer, "1");
    alert.title = alert.body = R"(<a href="x">R&D</a> &lt;)";
    const auto marked = NotificationServer(":1.1", true).notificationOf(alert);
    EXPECT_EQ(marked.summary, alert.title);
    EXPECT_EQ(marked.body, R"(&lt;a href="x"&gt;R&amp;D&lt;/a&gt; &amp;lt;)");
    EXPECT_EQ(NotificationServer(":1.1", false).notificationOf(alert).body, alert.body);

    alert.body = "\xE2\x80\xAE"; // what stands for a character that hides is escaped too
    EXPECT_EQ(NotificationServer(":1.1", true).notificationOf(alert).body, "&lt;U+202E&gt;");
}

TEST(NotificationServer, namesCanNeitherHideNorFillTheScreen) {
    Alert alert = alertOf(AlertKind::idleServer, "1");
    alert.title = std::string("a\0b\nc\x1B[2J\xFF", 10);
    const std::string accent = "\xCC\x81"; // takes no column
    alert.body = "e";
    for (int i = 0; i < 100'000; ++i)
        alert.body += accent;
    const auto combined = NotificationServer(":1.1", false).notificationOf(alert);
    EXPECT_EQ(combined.summary, "a␀b␊c␛[2J�");
    EXPECT_LT(combined.body.size(), 5000U);
    EXPECT_EQ(combined.body, Text::repaired(combined.body));

    alert.title = alert.body = std::string(3000, '&');
    const auto wide = NotificationServer(":1.1", true).notificationOf(alert);
    EXPECT_EQ(wide.summary, std::string(119, '&') + "…");
    EXPECT_TRUE(wide.body.ends_with("&amp;…")) << wide.body; // cut before it is escaped: never within an entity
    EXPECT_LT(wide.body.size(), 2100U);
}

} // namespace
} // namespace ostrivane

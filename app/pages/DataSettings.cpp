#include "app/pages/DataSettings.hpp"

#include "app/model/AppModel.hpp"
#include "app/pages/SettingsControls.hpp"
#include "app/pages/SettingsPageText.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/MessageDialog.hpp"
#include "app/widgets/Stepper.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TextLabel.hpp"

#include <QPointer>

namespace ostrivane {

namespace {

TextLabel* makeFigure() {
    auto* figure = new TextLabel(TypeRole::body, Tone::text2);
    figure->setElideMode(Qt::ElideNone);
    figure->setText(QStringLiteral("…"));
    return figure;
}

} // namespace

DataSettings::DataSettings(PageContext& given, SettingsControls& controls, QWidget* parent)
    : SettingsColumns(parent), context(given) {
    addLeading(makeHistory(controls));
    addTrailing(makePrivacy());
    addTrailing(makePlaces());
}

QWidget* DataSettings::makeHistory(SettingsControls& controls) {
    auto* group = new SettingsGroup(tr("History"), this);
    group->add(tr("Keep history for"), tr("Older samples, alerts and sessions are removed"),
               controls.number(tr("Days that history is kept"), "retentionDays", &Preferences::retentionDays));
    size = makeFigure();
    group->add(tr("Size on disk"), {}, size);
    earliest = makeFigure();
    group->add(tr("Earliest sample"), {}, earliest);
    auto* clearing = new PushButton(tr("Clear History…"), ButtonKind::destructive);
    connect(clearing, &QAbstractButton::clicked, this, [this] { clear(); });
    group->add(tr("Everything that was recorded"), {}, clearing);
    return group;
}

QWidget* DataSettings::makePrivacy() {
    auto* group = new SettingsGroup(tr("Privacy"), this);
    group->add(tr("Local-only: no account, no telemetry."), tr("Everything is measured and kept on this machine"),
               nullptr);
    return group;
}

QWidget* DataSettings::makePlaces() {
    auto* group = new SettingsGroup(tr("Files"), this);
    addPlace(*group, tr("History"), text(context.model.history().path()), tr("Reveal the history"));
    addPlace(*group, tr("Settings"), text(context.model.settings().defaults().place()), tr("Reveal the settings"));
    return group;
}

void DataSettings::addPlace(SettingsGroup& group, const QString& title, const QString& path,
                            const QString& revealName) {
    PushButton* reveal = nullptr;
    if (context.reveal && path.startsWith(QLatin1Char('/'))) {
        reveal = new PushButton(tr("Reveal"));
        reveal->setSmall(true);
        reveal->setAccessibleName(revealName);
        connect(reveal, &QAbstractButton::clicked, this, [this, path] { context.reveal(path.toStdString()); });
    }
    group.add(title, path, reveal);
}

void DataSettings::ask() {
    const auto here = [post = context.onMainThread, self = QPointer<DataSettings>(this)](auto show) {
        return [post, self, show](auto answer) {
            post([self, show, answer] {
                if (self)
                    show(*self, answer);
            });
        };
    };
    context.model.history().sizeOnDisk(
        here([](DataSettings& shown, std::uint64_t bytes) { shown.size->setText(text(historySizeText(bytes))); }));
    context.model.history().earliestSample(here([](DataSettings& shown, std::optional<Date> date) {
        shown.earliest->setText(text(earliestText(date, shown.context.now())));
    }));
}

void DataSettings::clear() {
    // Who keeps it would go on from what it has in memory.
    if (const auto keeper = context.otherKeeper ? context.otherKeeper() : std::nullopt) {
        MessageDialog::ask({.heading = tr("The history cannot be cleared now"),
                            .text = tr("%1 End it first.").arg(text(*keeper)),
                            .confirm = tr("OK")},
                           window());
        return;
    }
    if (!MessageDialog::ask({.condition = Condition::high,
                             .heading = tr("Clear all history?"),
                             .text = tr("Samples, alerts, sessions and storage trends are removed for good."),
                             .confirm = tr("Clear History"),
                             .kind = ButtonKind::confirming,
                             .cancel = tr("Cancel")},
                            window()))
        return;
    context.model.clearAlerts(); // those in view, too
    context.model.history().clearAll();
    context.model.refreshTotals();
    ask(); // comes after it
}

} // namespace ostrivane

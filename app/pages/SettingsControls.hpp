#pragma once

#include "app/model/AppModel.hpp"
#include "app/model/OfferedValues.hpp"
#include "app/pages/ChoiceBox.hpp"

#include <QObject>
#include <QString>

#include <functional>
#include <string_view>
#include <vector>

namespace ostrivane {

class Stepper;
class Switch;

/// Makes controls that each stand for one choice: they write it at once, and show it whoever changes it.
class SettingsControls final : public QObject {
public:
    /// Whether engine, history and rules must hear of a choice.
    enum class Reach { window, engine };

    SettingsControls(AppModel& model, QObject* parent);

    Switch* toggle(const QString& name, bool Preferences::*choice, Reach reach = Reach::window);
    /// One of an enumeration, in the order of its cases.
    template <class Enum>
    ChoiceBox* oneOf(const QString& name, const QStringList& titles, Enum Preferences::*choice) {
        ChoiceBox* box = makeBox(name, titles);
        connect(box, &ChoiceBox::indexChosen, this,
                [this, choice](int index) { set(choice, static_cast<Enum>(index), Reach::window); });
        follow([box, choice](const Preferences& chosen) { box->setIndex(static_cast<int>(chosen.*choice)); });
        return box;
    }
    /// A number in the range that is offered under its key.
    template <class Number>
    Stepper* number(const QString& name, std::string_view key, Number Preferences::*choice) {
        return makeStepper(
            name, *offeredRange(key),
            [choice](const Preferences& chosen) { return static_cast<double>(chosen.*choice); },
            [this, choice](double value) { set(choice, static_cast<Number>(value), Reach::engine); });
    }
    /// Has `show` called now and after each change.
    void follow(std::function<void(const Preferences&)> show);

    template <class Value>
    void set(Value Preferences::*choice, Value value, Reach reach) {
        model.settings().set(choice, std::move(value));
        if (reach == Reach::engine)
            model.applySettings();
    }

    void refresh();

private:
    static ChoiceBox* makeBox(const QString& name, const QStringList& titles);
    Stepper* makeStepper(const QString& name, const OfferedRange& range,
                         const std::function<double(const Preferences&)>& read,
                         const std::function<void(double)>& write);

    AppModel& model;
    std::vector<std::function<void(const Preferences&)>> followers;
};

} // namespace ostrivane

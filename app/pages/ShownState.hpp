#pragma once

#include <QAbstractButton>
#include <QSignalBlocker>

namespace ostrivane {

/// Makes a switch show what is so. Nobody is told: `toggled` is for what a person does, by whatever means.
inline void showChecked(QAbstractButton& button, bool isOn) {
    const QSignalBlocker quiet(button);
    button.setChecked(isOn);
}

} // namespace ostrivane

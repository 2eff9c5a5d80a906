#pragma once

class QWidget;

namespace ostrivane {

class SettingsColumns;
class SettingsControls;

/// How often the machine is read, and what of it.
SettingsColumns* makeSamplingSettings(SettingsControls& controls, QWidget* parent);

/// The version, and whether to look for another.
SettingsColumns* makeUpdateSettings(SettingsControls& controls, QWidget* parent);

} // namespace ostrivane

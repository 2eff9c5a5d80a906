#pragma once

#include <QWidget>

class QBoxLayout;
class QVBoxLayout;

namespace ostrivane {

class Card;
class TextLabel;

/// A line of settings: what it is, a remark below, and its control.
class SettingRow final : public QWidget {
public:
    /// @param control  null: the line only tells something
    SettingRow(const QString& title, const QString& detail, QWidget* control, QWidget* parent = nullptr);
    void setDetail(const QString& detail); ///< empty: none
    /// Without padding at its ends, and with its title whole: for a line outside of a card.
    void setFlush();

private:
    TextLabel* label = nullptr;
    TextLabel* remark = nullptr;
};

/// Settings of one subject: a title over a card of lines.
class SettingsGroup final : public QWidget {
public:
    explicit SettingsGroup(const QString& title, QWidget* parent = nullptr);
    SettingRow* add(const QString& title, const QString& detail, QWidget* control);
    void addRow(QWidget* row);
    /// At the trailing end of the title.
    void setHint(const QString& hint);
    /// A sentence below the card.
    void setFoot(const QString& foot);

private:
    Card* card = nullptr;
    TextLabel* hint = nullptr;
    TextLabel* foot = nullptr;
    bool isEmpty = true;
};

/// Groups in two columns, or in one where the window is narrow.
class SettingsColumns : public QWidget {
public:
    explicit SettingsColumns(QWidget* parent = nullptr);
    void addLeading(QWidget* group);
    void addTrailing(QWidget* group);
    void setNarrow(bool narrow);

private:
    QBoxLayout* columns = nullptr;
    QVBoxLayout* leading = nullptr;
    QVBoxLayout* trailing = nullptr;
};

} // namespace ostrivane

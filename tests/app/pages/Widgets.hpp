#pragma once

#include <QApplication>
#include <QPushButton>
#include <QScrollArea>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

namespace ostrivane {

/// The widget of that kind which assistive programs call so; null without one.
template <class Kind>
Kind* named(const QWidget& root, const char* name) {
    for (Kind* found : root.findChildren<Kind*>())
        if (found->accessibleName() == QString::fromUtf8(name))
            return found;
    ADD_FAILURE() << "there is no " << name;
    return nullptr;
}

/// The button with that text, or that name; null without one.
inline QAbstractButton* button(const QWidget& root, const char* words) {
    for (auto* found : root.findChildren<QAbstractButton*>())
        if (found->text() == QString::fromUtf8(words) || found->accessibleName() == QString::fromUtf8(words))
            return found;
    ADD_FAILURE() << "there is no button " << words;
    return nullptr;
}

/// What scrolls up and down alone must fit in at its sides.
inline void expectNothingCutOff(const QWidget& root) {
    for (const auto* area : root.findChildren<QScrollArea*>())
        if (area->isVisible() && area->widget()) {
            EXPECT_LE(area->widget()->minimumSizeHint().width(), area->viewport()->width())
                << root.accessibleName().toStdString();
        }
}

/// Clicks a button of the dialog that comes next.
inline void answerDialog(const char* words) {
    QTimer::singleShot(0, [words] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        if (QAbstractButton* found = button(*dialog, words))
            found->click();
        else
            dialog->close();
    });
}

} // namespace ostrivane

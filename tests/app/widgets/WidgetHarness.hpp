#pragma once

#include "app/widgets/Style.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QApplication>
#include <QEvent>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include <utility>

namespace ostrivane {

/// Gives a test the program's style, and every test after it the usual lettering and theme again.
class WidgetSetting {
public:
    WidgetSetting() {
        static const bool isStyled = (QApplication::setStyle(new Style), true);
        Q_UNUSED(isStyled);
        reset();
    }
    ~WidgetSetting() { reset(); }
    WidgetSetting(const WidgetSetting&) = delete;
    WidgetSetting& operator=(const WidgetSetting&) = delete;

private:
    static void reset() {
        Type::setBase(13);
        Theme::use(Theme::light());
        QApplication::setLayoutDirection(Qt::LeftToRight);
    }
};

/// Counts how often a widget is painted.
class PaintCount final : public QObject {
public:
    explicit PaintCount(QWidget& widget) { widget.installEventFilter(this); }

    /// Paints since it was asked last, those that are due included.
    int take() {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        return std::exchange(count, 0);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

private:
    int count = 0;
};

/// Shows a widget in that size, with the focus on its window.
inline void showActive(QWidget& window, QSize size = {}) {
    window.resize(size.isValid() ? size : window.sizeHint());
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
}

} // namespace ostrivane

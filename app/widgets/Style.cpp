#include "app/widgets/Style.hpp"

#include "app/widgets/ButtonLook.hpp"
#include "app/widgets/StyleParts.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStyleOption>

namespace ostrivane {

namespace {

constexpr double controlHeight = 28;
constexpr double leastTarget = 24;

template <class Option>
const Option* as(const QStyleOption* option) {
    return qstyleoption_cast<const Option*>(option);
}

/// Standard buttons are those of the toolkit's own dialogs.
ButtonKind kindOf(const QStyleOptionButton& option) {
    return option.features & QStyleOptionButton::DefaultButton ? ButtonKind::primary : ButtonKind::plain;
}

} // namespace

Style::Style() : QProxyStyle(QStringLiteral("Fusion")) {}

void Style::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    const bool isInner =
        qobject_cast<QAbstractSpinBox*>(widget->parentWidget()) || qobject_cast<QComboBox*>(widget->parentWidget());
    const bool isPressed = qobject_cast<QPushButton*>(widget) || qobject_cast<QComboBox*>(widget);
    if (isPressed || qobject_cast<QAbstractSpinBox*>(widget) || (qobject_cast<QLineEdit*>(widget) && !isInner)) {
        widget->setAttribute(Qt::WA_Hover);
        giveFocusRing(*widget, 6);
    } else if (qobject_cast<QCheckBox*>(widget) || qobject_cast<QRadioButton*>(widget)) {
        giveFocusRing(*widget, 4);
    } else if (qobject_cast<QScrollBar*>(widget)) {
        widget->setAttribute(Qt::WA_Hover);
        widget->setAttribute(Qt::WA_OpaquePaintEvent, false); // what it stands on shows
    } else if (widget->inherits("QTipLabel")) {
        QPalette palette = widget->palette();
        for (const QPalette::ColorRole role : {QPalette::ToolTipText, QPalette::WindowText, QPalette::Text})
            palette.setColor(role, Theme::current().onTooltip);
        widget->setPalette(palette);
    }
}

int Style::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_FocusFrameHMargin:
    case PM_FocusFrameVMargin:
        return 3;
    case PM_ScrollBarExtent:
        return Type::px(11);
    case PM_ScrollBarSliderMin:
        return Type::px(28);
    case PM_ScrollView_ScrollBarSpacing:
    case PM_ScrollView_ScrollBarOverlap:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_MenuHMargin:
    case PM_MenuBarPanelWidth:
        return 0;
    case PM_DefaultFrameWidth:
    case PM_MenuPanelWidth:
        return 1;
    case PM_MenuVMargin:
    case PM_ToolTipLabelFrameWidth:
        return Type::px(4);
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
    case PM_SmallIconSize:
        return Type::px(16);
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
        return Type::px(8);
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* data) const {
    switch (hint) {
    case SH_FocusFrame_AboveWidget:
    case SH_ItemView_ShowDecorationSelected:
    case SH_Menu_MouseTracking:
    case SH_MenuBar_MouseTracking:
    case SH_ComboBox_ListMouseTracking:
        return 1;
    case SH_FocusFrame_Mask:
    case SH_Widget_Animate:
    case SH_Widget_Animation_Duration:
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
    case SH_ComboBox_Popup:
    case SH_ScrollBar_Transient:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
    const Theme& theme = Theme::current();
    painter->save();
    switch (element) {
    case PE_PanelLineEdit:
        if (const auto* frame = as<QStyleOptionFrame>(option); frame && frame->lineWidth > 0)
            StyleParts::drawField(*painter, *option);
        break;
    case PE_FrameLineEdit:
        StyleParts::drawField(*painter, *option);
        break;
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        StyleParts::drawTick(*painter, *option);
        break;
    case PE_IndicatorRadioButton:
        StyleParts::drawRadio(*painter, *option);
        break;
    case PE_PanelMenu:
        painter->fillRect(option->rect, theme.card);
        break;
    case PE_FrameMenu:
    case PE_Frame:
        painter->setBrush(Qt::NoBrush);
        painter->setPen(theme.border);
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        break;
    case PE_PanelMenuBar:
        painter->fillRect(option->rect, theme.window);
        break;
    case PE_PanelTipLabel:
        painter->fillRect(option->rect, theme.tooltip);
        break;
    case PE_FrameFocusRect:        // the ring is a widget of its own
    case PE_PanelScrollAreaCorner: // what it stands on shows
    case PE_FrameStatusBarItem:
        break;
    case PE_IndicatorArrowDown:
        ButtonLook::drawChevron(*painter, option->rect, option->state & State_Enabled ? theme.text2 : theme.text3);
        break;
    default:
        painter->restore();
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    painter->restore();
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const {
    const Theme& theme = Theme::current();
    const auto* item = as<QStyleOptionMenuItem>(option);
    const auto* button = as<QStyleOptionButton>(option);
    const bool showsMnemonics = styleHint(SH_UnderlineShortcut, option, widget, nullptr) != 0;
    painter->save();
    if (element == CE_MenuItem && item) {
        StyleParts::drawMenuItem(*painter, *item, showsMnemonics);
    } else if (element == CE_MenuBarItem && item) {
        StyleParts::drawMenuBarItem(*painter, *item, showsMnemonics);
    } else if (element == CE_MenuBarEmptyArea) {
        painter->fillRect(option->rect, theme.window);
    } else if (element == CE_PushButtonBevel && button) {
        ButtonLook::drawGround(*painter, option->rect, kindOf(*button),
                               {(option->state & State_Enabled) != 0, (option->state & State_MouseOver) != 0,
                                (option->state & (State_Sunken | State_On)) != 0});
    } else if (element == CE_PushButtonLabel && button && kindOf(*button) == ButtonKind::primary) {
        QStyleOptionButton filled = *button;
        filled.palette.setColor(QPalette::Active, QPalette::ButtonText, theme.onAccent);
        filled.palette.setColor(QPalette::Inactive, QPalette::ButtonText, theme.onAccent);
        QProxyStyle::drawControl(element, &filled, painter, widget);
    } else {
        painter->restore();
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    painter->restore();
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const {
    painter->save();
    if (const auto* bar = as<QStyleOptionSlider>(option); bar && control == CC_ScrollBar)
        StyleParts::drawScrollBar(*painter, *bar);
    else if (const auto* combo = as<QStyleOptionComboBox>(option); combo && control == CC_ComboBox)
        StyleParts::drawComboBox(*painter, *combo);
    else if (const auto* spin = as<QStyleOptionSpinBox>(option); spin && control == CC_SpinBox)
        StyleParts::drawSpinBox(*painter, *spin);
    else
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    painter->restore();
}

QRect Style::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                            const QWidget* widget) const {
    if (const auto* bar = as<QStyleOptionSlider>(option); bar && control == CC_ScrollBar)
        return StyleParts::scrollBarPart(*bar, part);
    if (const auto* combo = as<QStyleOptionComboBox>(option);
        combo && control == CC_ComboBox && part != SC_ComboBoxListBoxPopup)
        return StyleParts::comboBoxPart(*combo, part);
    if (const auto* spin = as<QStyleOptionSpinBox>(option); spin && control == CC_SpinBox)
        return StyleParts::spinBoxPart(*spin, part);
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                              const QWidget* widget) const {
    const int tall = Type::px(controlHeight);
    switch (type) {
    case CT_MenuItem:
        if (const auto* item = as<QStyleOptionMenuItem>(option))
            return StyleParts::menuItemSize(*item, size);
        break;
    case CT_MenuBarItem:
        return {size.width() + Type::px(16), std::max(Type::px(leastTarget), size.height() + Type::px(6))};
    case CT_ComboBox:
        return {size.width() + Type::px(40), std::max(tall, size.height())};
    case CT_SpinBox: {
        const auto* spin = as<QStyleOptionSpinBox>(option);
        const bool hasSteps = !spin || spin->buttonSymbols != QAbstractSpinBox::NoButtons;
        return {size.width() + Type::px(hasSteps ? 2 * 26 + 14 : 16), std::max(tall, size.height())};
    }
    case CT_LineEdit:
        return {size.width() + Type::px(8), std::max(tall, size.height())};
    case CT_PushButton:
        return {std::max(size.width() + Type::px(26), Type::px(64)), std::max(tall, size.height())};
    case CT_CheckBox:
    case CT_RadioButton:
        return QProxyStyle::sizeFromContents(type, option, size, widget)
            .expandedTo(QSize(Type::px(leastTarget), Type::px(leastTarget)));
    default:
        break;
    }
    return QProxyStyle::sizeFromContents(type, option, size, widget);
}

} // namespace ostrivane

#include "app/pages/ChoiceBox.hpp"

#include "app/widgets/SegmentedControl.hpp"

#include <QComboBox>
#include <QHBoxLayout>

namespace ostrivane {

ChoiceBox::ChoiceBox(const QString& name, const QStringList& titles, int widest, QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    segments = new SegmentedControl(name, titles, this);
    if (segments->sizeHint().width() <= widest) {
        connect(segments, &SegmentedControl::indexChosen, this, &ChoiceBox::indexChosen);
        row->addWidget(segments);
        setFocusProxy(segments);
        return;
    }
    delete segments;
    segments = nullptr;
    menu = new QComboBox(this);
    menu->addItems(titles);
    menu->setAccessibleName(name);
    connect(menu, &QComboBox::activated, this, &ChoiceBox::indexChosen);
    row->addWidget(menu);
    setFocusProxy(menu);
}

int ChoiceBox::index() const {
    return segments ? segments->index() : menu->currentIndex();
}

void ChoiceBox::setIndex(int index) {
    if (segments)
        segments->setIndex(index);
    else
        menu->setCurrentIndex(index);
}

} // namespace ostrivane

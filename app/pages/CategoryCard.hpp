#pragma once

#include "app/pages/HealthText.hpp"

#include <QWidget>

namespace ostrivane {

class Badge;
class BulletList;
class Card;
class LinkButton;
class SymbolMark;
class TextLabel;

/// One side of the machine's condition: name, badge, evidence, and the way to the page that explains it.
class CategoryCard final : public QWidget {
    Q_OBJECT
public:
    explicit CategoryCard(QWidget* parent = nullptr);
    void set(const HealthCard& text);

Q_SIGNALS:
    void opened(Page page);

private:
    HealthCard shown;
    Card* card = nullptr;
    SymbolMark* symbol = nullptr;
    Badge* badge = nullptr;
    BulletList* evidence = nullptr;
    TextLabel* note = nullptr;
    LinkButton* link = nullptr;
};

} // namespace ostrivane

#pragma once

#include "app/widgets/Theme.hpp"

#include <QWidget>

#include <string>

namespace ostrivane {

/// One of the program's icons beside a text that says the same; assistive programs are not told of it.
class SymbolMark final : public QWidget {
public:
    explicit SymbolMark(std::string name = {}, Tone tone = Tone::text2, QWidget* parent = nullptr);
    void setSymbol(const std::string& name);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::string symbol;
    Tone tone;
};

} // namespace ostrivane

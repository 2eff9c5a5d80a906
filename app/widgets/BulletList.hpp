#pragma once

#include <QStringList>
#include <QWidget>

namespace ostrivane {

/// Sentences below each other, each behind a bullet, broken into lines as the width asks.
class BulletList final : public QWidget {
public:
    explicit BulletList(QWidget* parent = nullptr);
    /// Asks for a new layout only where the lines take more or less room than before.
    void set(const QStringList& sentences);
    const QStringList& sentences() const { return shown; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int sentenceHeight(const QString& sentence, int width) const;

    QStringList shown;
};

} // namespace ostrivane

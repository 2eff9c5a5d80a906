#pragma once

#include "app/widgets/RowList.hpp"
#include "app/widgets/Theme.hpp"

#include <QString>

#include <string>
#include <vector>

namespace ostrivane {

/// A finding: a tinted icon, a line, a line of evidence, a time where it has one.
struct EvidenceRow {
    std::string id; ///< the same for the same finding
    std::string icon;
    Condition condition = Condition::info;
    QString title;
    QString evidence;
    QString time{};
    bool leadsSomewhere = false; ///< shows a chevron, and can be activated

    friend bool operator==(const EvidenceRow&, const EvidenceRow&) = default;
};

/// Findings, 47 high each. The keyboard's place stays with its finding.
class EvidenceList final : public RowList {
    Q_OBJECT
public:
    explicit EvidenceList(const QString& name, QWidget* parent = nullptr);
    void set(std::vector<EvidenceRow> rows);
    const std::vector<EvidenceRow>& rows() const { return shown; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void activated(const std::string& id);

protected:
    int rowCount() const override { return static_cast<int>(shown.size()); }
    QRect rowRect(int row) const override;
    bool leads(int row) const override { return shown[static_cast<std::size_t>(row)].leadsSomewhere; }
    void paintRow(QPainter& painter, const QRect& rect, int row) override;
    QString rowText(int row) const override;
    bool event(QEvent* event) override;

private:
    std::vector<EvidenceRow> shown;
    bool hasChevrons = false;
};

} // namespace ostrivane

#pragma once

#include <QListView>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace ostrivane {

struct TwoLineRow {
    std::int64_t id = 0;
    QString title;
    QString side; ///< at the end of the title's line, never elided
    QString detail;

    friend bool operator==(const TwoLineRow&, const TwoLineRow&) = default;
};

/// A list of which each row has a title, a figure at its side and a line below; one row is chosen.
class TwoLineList final : public QListView {
    Q_OBJECT
public:
    explicit TwoLineList(const QString& name, QWidget* parent = nullptr);
    ~TwoLineList() override;

    /// The chosen row stays chosen by its id. Setting equal rows does nothing.
    void set(std::vector<TwoLineRow> rows);
    void choose(std::optional<std::int64_t> id); ///< signals nothing

Q_SIGNALS:
    /// The user chose another row.
    void rowChosen(std::int64_t id);
    /// Delete was pressed on a row.
    void deleteWanted(std::int64_t id);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    class Rows;
    Rows* rows = nullptr;
    std::optional<std::int64_t> chosen;
    bool isSetting = false;
};

} // namespace ostrivane

#pragma once

#include "app/model/AppModel.hpp"
#include "app/pages/PageContext.hpp"
#include "app/widgets/Theme.hpp"
#include "core/model/Page.hpp"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <optional>
#include <utility>

class QHBoxLayout;
class QScrollArea;

namespace ostrivane {

class IconButton;
class StatusGlyph;
class TextLabel;

/// What every page is: a header with the way back and forward, the title, a line below or beside it and the page's
/// controls, and a body that scrolls as a whole or fills the window.
///
/// A page is awake while it can really be seen. Then it is registered with the model and hears of changes; asleep it
/// holds no timer, asks nothing and is told nothing. On waking it takes the present state once.
class PageView : public QWidget {
    Q_OBJECT
public:
    PageView(Page page, PageContext& context, QWidget* parent = nullptr);
    ~PageView() override;

    Page page() const { return ownPage; }
    bool isAwake() const { return awake; }
    /// Whether the window can be seen; the page is awake when it is also the one that is shown.
    void setWindowSeen(bool seen);
    /// Below 1100 pixels of the window's width, in proportion to the lettering.
    void setNarrow(bool narrow);
    bool isNarrow() const { return narrow; }

    /// Puts the focus where work on this page begins.
    void focusMain();
    void focusHeader();
    bool headerHas(const QWidget* widget) const;
    /// The field that "/" goes to; null without one.
    virtual QWidget* filterField() { return nullptr; }
    /// Escape, after the filter is clear: closes a detail. Whether there was something to close.
    virtual bool closeDetail() { return false; }

protected:
    /// Looks again at what changed. On waking all is set. Called while awake only.
    virtual void refresh(const ModelChanges& changes) = 0;
    /// The page appeared, ahead of its first `refresh`, or goes.
    virtual void wake() {}
    virtual void sleep() {}
    virtual void narrowChanged() {}
    /// What the page is mostly about, a list for instance; null: its body.
    virtual QWidget* mainWidget() const { return nullptr; }

    void setSubtitle(const QString& subtitle);
    /// A status glyph ahead of the subtitle; absent: none.
    void setSubtitleCondition(std::optional<Condition> condition, const QString& word = {});
    /// Adds to the right end of the header.
    void addHeaderControl(QWidget* control);
    /// @param fills  the body fills the window and scrolls within itself; else the page scrolls as a whole
    void setBody(QWidget* body, bool fills);
    /// A strip between header and body that does not scroll; for banners and toolbars.
    void addStrip(QWidget* strip);

    AppModel& model() const { return context.model; }
    const AppState& state() const { return context.model.state(); }

    /// Wraps an answer of the history: called on the main thread, and not once this page is gone.
    template <class Result>
    std::function<void(Result)> here(std::function<void(Result)> answer) {
        return
            [post = context.onMainThread, page = QPointer<PageView>(this), answer = std::move(answer)](Result result) {
                post([page, answer, result = std::move(result)]() mutable {
                    if (page)
                        answer(std::move(result));
                });
            };
    }

    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

    PageContext& context;

private:
    void settle();
    void placeBody();
    void placeControls();
    void updateHeader();

    const Page ownPage;
    bool seen = true;
    bool awake = false;
    bool narrow = false;
    Subscription watching;
    IconButton* back = nullptr;
    IconButton* forward = nullptr;
    QWidget* header = nullptr;
    TextLabel* heading = nullptr;
    StatusGlyph* glyph = nullptr;
    TextLabel* subtitle = nullptr;
    QHBoxLayout* titleRow = nullptr;
    QHBoxLayout* controls = nullptr;
    bool areControlsBelow = false;
    QWidget* strips = nullptr;
    QScrollArea* scroll = nullptr;
    QWidget* holder = nullptr;
};

} // namespace ostrivane

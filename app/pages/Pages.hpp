#pragma once

class QWidget;

namespace ostrivane {

enum class Page;
class PageView;
struct PageContext;

/// The view of a page. Belongs to `parent`.
PageView* makePage(Page page, PageContext& context, QWidget* parent);

} // namespace ostrivane

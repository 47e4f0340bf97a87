#pragma once
// How people call the things of this kind of desktop. The texts of windows, menus, notifications
// and speech bubbles are written for another one; what the real computer shows of them passes here.
// One table holds whole texts, so that nothing is ever translated by accident.

#include <span>
#include <string>
#include <string_view>

#include "platform/Menu.h"
#include "platform/Notifications.h"
#include "views/View.h"

namespace quibbits::words {

struct Row {
    std::string_view original;
    std::string_view here;  // empty: it is of no use here and is left out
};
std::span<const Row> rows();

/// A whole text as it is shown here; most are as they were.
std::string worded(const std::string& original);
/// Every text in the tree. A text or a button that is of no use here goes.
views::View worded(views::View tree);
Menu worded(Menu menu);
NotificationRequest worded(NotificationRequest request);

}  // namespace quibbits::words

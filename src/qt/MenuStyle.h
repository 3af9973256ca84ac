#pragma once

class QMenu;

namespace sorbel {

/// Lets a menu that is higher than the screen scroll. In several columns, as most styles show it, it would be
/// wider than the screen, and what lies beyond could not be reached.
void LetScroll(QMenu& menu);

}  // namespace sorbel

#pragma once

#include <memory>

#include "ui/toolkit/MenuItem.h"

namespace sorbel {

/// The program's only menu bar: one instance serves the application and all windows.
[[nodiscard]] std::unique_ptr<MenuBar> MakeMenuBar1();

}  // namespace sorbel

#pragma once

#include <QIcon>

namespace sorbel {

/// The program's icon out of its data folder, so that windows have it also where the program is not
/// installed. Empty if it is not there.
[[nodiscard]] QIcon ProgramIcon();

}  // namespace sorbel

#pragma once

namespace sorbel {

/// From now on assistive technology reads of every `QtWindow` what its model tells about it.
void ReadWindowsByModel();

}  // namespace sorbel

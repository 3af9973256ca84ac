#pragma once

namespace sorbel {

/// From now on assistive technology reads every `ListView` row by row: what the list tells about a row,
/// whether it is selected, and whether it is a folder that is open. A row costs something only once it has
/// been asked for.
void ReadListsByRow();

}  // namespace sorbel

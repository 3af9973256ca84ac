#pragma once

#include "headless/JsonText.h"
#include "platform/Color.h"
#include "stringset/LocalizedStringSet.h"
#include "ui/toolkit/Control.h"
#include "ui/toolkit/Listbox.h"
#include "ui/toolkit/MenuItem.h"

namespace sorbel::headless {

/// "#RRGGBB"; two more digits for an alpha byte that is not 0.
[[nodiscard]] String ColorText(Color color);

/// What a user can see of a control; the fields go by its kind.
[[nodiscard]] Json DescribeControl(Control& control);

/// The visible items of a menu with their menus below them.
[[nodiscard]] Json DescribeItems(const MenuItem& menu);

[[nodiscard]] Json DescribeRow(const Listbox& list, int64_t row);

/// Each identifier with its platforms, default and translated values, in the order of the document.
[[nodiscard]] Json DescribeEntries(const LocalizedStringSet& set);

/// The moment that a version is labelled with, or null.
[[nodiscard]] Json DescribeDate(const LocalizedStringSet& set);

}  // namespace sorbel::headless

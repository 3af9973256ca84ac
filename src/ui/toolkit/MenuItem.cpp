#include "ui/toolkit/MenuItem.h"

#include "platform/Exceptions.h"

namespace sorbel {

MenuItem& MenuItem::Append(std::unique_ptr<MenuItem> item) {
    mItems.push_back(std::move(item));
    return *mItems.back();
}

void MenuItem::Remove(size_t index) {
    if (index >= mItems.size()) throw OutOfBoundsException("No such item in the menu.");
    mItems.erase(mItems.begin() + static_cast<std::ptrdiff_t>(index));
}

MenuItem* MenuItem::FindByName(StringView name) const {
    if (name.empty()) return nullptr;
    for (const std::shared_ptr<MenuItem>& item : mItems) {
        if (item->mName == name) return item.get();
        if (MenuItem* const found = item->FindByName(name)) return found;
    }
    return nullptr;
}

}  // namespace sorbel

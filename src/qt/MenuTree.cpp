#include <QMenu>

#include "qt/MenuStyle.h"
#include "qt/QtMenus.h"
#include "qt/Text.h"

namespace sorbel {

namespace {

enum class Kind { Separator, Menu, Item };

Kind KindOf(const MenuItem& item, bool isMenuOfBar) {
    if (item.IsSeparator()) return Kind::Separator;
    return isMenuOfBar || item.Count() > 0 ? Kind::Menu : Kind::Item;
}

Kind KindOf(const QAction& action) {
    if (action.isSeparator()) return Kind::Separator;
    return action.menu() ? Kind::Menu : Kind::Item;
}

bool SameKinds(const QWidget& menu, const MenuItem& items) {
    const QList<QAction*> actions = menu.actions();
    if (actions.size() != static_cast<qsizetype>(items.Count())) return false;
    const bool bar = qobject_cast<const QMenuBar*>(&menu) != nullptr;
    for (qsizetype index = 0; index < actions.size(); ++index)
        if (KindOf(*actions[index]) != KindOf(items.Item(static_cast<size_t>(index)), bar)) return false;
    return true;
}

QList<QKeySequence> KeysOf(const MenuItem& item) {
    QList<QKeySequence> keys;
    if (!item.Shortcut.empty()) keys += ShortcutKeys(item.Shortcut);
    // Some keyboards have brackets on a level that cannot be typed together with Ctrl.
    if (item.Name() == "LocalizationNextItem") keys += QKeySequence(Qt::CTRL | Qt::Key_PageDown);
    if (item.Name() == "LocalizationPreviousSring") keys += QKeySequence(Qt::CTRL | Qt::Key_PageUp);
    return keys;
}

QAction::MenuRole RoleOf(const MenuItem& item) {
    if (item.Role == MenuRole::Quit) return QAction::QuitRole;
    return item.Role == MenuRole::About ? QAction::AboutRole : QAction::NoRole;
}

void Describe(QAction& action, const MenuItem& item) {
    action.setVisible(item.Visible);
    if (action.isSeparator()) return;                        // one with a text would be a heading
    action.setText(ToQt(item.Text()).replace(u'\t', u' '));  // a tab would start the column of keys
    if (action.menu()) return;
    action.setShortcuts(KeysOf(item));
    action.setCheckable(item.Checkable || item.Checked);
    action.setChecked(item.Checked);
    action.setMenuRole(RoleOf(item));
}

QMenu& NewMenu(QWidget& parent) {
    auto* menu = new QMenu(&parent);
    LetScroll(*menu);
    return *menu;
}

}  // namespace

QKeySequence ShortcutKeys(StringView shortcut) {
    QString keys;
    for (const QString& part : ToQt(shortcut).split(u'+')) {
        const QString key = part.trimmed();
        if (!keys.isEmpty()) keys += u'+';
        keys += key.compare(u"cmd", Qt::CaseInsensitive) == 0 ? QStringLiteral("Ctrl") : key;
    }
    return QKeySequence::fromString(keys, QKeySequence::PortableText);
}

void MenuTree::Update(QWidget& menu) {
    if (const MenuItem* root = mRoot()) Update(menu, *root, {});
}

void MenuTree::Update(QWidget& menu, const MenuItem& items, const Path& path) {
    if (!SameKinds(menu, items)) Rebuild(menu, items, path);
    const QList<QAction*> actions = menu.actions();
    for (int index = 0; index < actions.size(); ++index) {
        const MenuItem& item = items.Item(static_cast<size_t>(index));
        Describe(*actions[index], item);
        if (QMenu* below = actions[index]->menu()) Update(*below, item, path + Path{index});
    }
}

/// What goes may be what is being chosen from.
void MenuTree::Rebuild(QWidget& menu, const MenuItem& items, const Path& path) {
    for (QAction* action : menu.actions()) {
        menu.removeAction(action);
        QMenu* const below = action->menu();
        (below ? static_cast<QObject*>(below) : action)->deleteLater();
    }
    const bool bar = qobject_cast<QMenuBar*>(&menu) != nullptr;
    for (size_t index = 0; index < items.Count(); ++index) {
        const Kind kind = KindOf(items.Item(index), bar);
        QAction* action = kind == Kind::Menu ? NewMenu(menu).menuAction() : new QAction(&menu);
        action->setSeparator(kind == Kind::Separator);
        action->setData(QVariant::fromValue(path + Path{static_cast<int>(index)}));
        menu.addAction(action);
        if (kind != Kind::Item) continue;
        QObject::connect(action, &QAction::triggered, [this, action] {
            if (MenuItem* item = Find(*action)) mChoose(*item);
        });
    }
}

/// The item that the action shows; none if the items have changed since, and another stands in its place.
MenuItem* MenuTree::Find(const QAction& action) const {
    MenuItem* item = mRoot();
    for (const int index : action.data().value<Path>()) {
        if (!item || static_cast<size_t>(index) >= item->Count()) return nullptr;
        item = &item->Item(static_cast<size_t>(index));
    }
    return item && ToQt(item->Text()).replace(u'\t', u' ') == action.text() ? item : nullptr;
}

void MenuTree::ShowEnabled(QWidget& menu, bool asTheyAre) {
    for (QAction* action : menu.actions()) {
        const MenuItem* item = asTheyAre ? Find(*action) : nullptr;
        action->setEnabled(!item || item->Enabled);
        if (action->menu()) ShowEnabled(*action->menu(), asTheyAre);
    }
}

}  // namespace sorbel

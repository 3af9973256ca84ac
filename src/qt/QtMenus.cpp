#include "qt/QtMenus.h"

#include <QKeyEvent>
#include <QMenu>

#include "qt/MenuStyle.h"
#include "ui/toolkit/Application.h"

namespace sorbel {

QtMenus::QtMenus(QMenuBar& bar, Application& app, std::function<void()> chosen)
    : mBar(bar),
      mApp(app),
      mTree([&app] { return app.MenuBar.get(); },
            [&app, chosen = std::move(chosen)](MenuItem& item) {
                app.Choose(item);
                chosen();
            }) {
    Update();
}

void QtMenus::Update() {
    const QList<QAction*> before = mBar.actions();
    mTree.Update(mBar);
    const QList<QAction*> now = mBar.actions();
    if (now == before) return;
    for (QAction* action : now)
        Watch(*action->menu());
}

void QtMenus::Watch(QMenu& menu) {
    QObject::connect(&menu, &QMenu::aboutToShow, [this, &menu] {
        mApp.Perform([this] { mApp.EnableMenuItems(); });
        Update();
        mTree.ShowEnabled(menu, true);
    });
    QObject::connect(&menu, &QMenu::aboutToHide, [this, &menu] { mTree.ShowEnabled(menu, false); });
}

bool QtMenus::Owns(const QKeyEvent& keys) const {
    const QKeySequence pressed(keys.keyCombination());
    const auto owns = [&pressed](const auto& self, const QWidget& menu) -> bool {
        for (const QAction* action : menu.actions())
            if (action->menu() ? self(self, *action->menu()) : action->shortcuts().contains(pressed))
                return true;
        return false;
    };
    return owns(owns, mBar);
}

void QtMenus::Open() {
    if (!mBar.actions().isEmpty()) mBar.setActiveAction(mBar.actions().first());
}

namespace {

void AddAbove(QMenu& menu, const MenuChoices& choices, std::function<void()>& chosen) {
    if (choices.empty()) return;
    QAction* const below = menu.insertSeparator(menu.actions().value(0));
    for (const auto& [text, act] : choices) {
        auto* action = new QAction(QString(text).replace(QStringLiteral("&"), QStringLiteral("&&")), &menu);
        action->setEnabled(static_cast<bool>(act));
        QObject::connect(action, &QAction::triggered, [&chosen, command = act] { chosen = command; });
        menu.insertAction(below, action);
    }
}

}  // namespace

MenuItem* RunPopUp(MenuItem& menu, const QPoint& at, QWidget* parent, const MenuChoices& above) {
    MenuItem* chosen = nullptr;
    MenuTree tree([&menu] { return &menu; }, [&chosen](MenuItem& item) { chosen = &item; });
    QMenu popUp(parent);
    LetScroll(popUp);
    tree.Update(popUp);
    tree.ShowEnabled(popUp, true);
    std::function<void()> choice;
    AddAbove(popUp, above, choice);
    popUp.exec(at);
    if (choice) choice();
    return chosen;
}

}  // namespace sorbel

#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <functional>

#include "qt/QtBackend.h"
#include "qt/QtWindow.h"
#include "qt/Text.h"
#include "ui/toolkit/Application.h"
#include "ui/toolkit/Label.h"
#include "ui/toolkit/Listbox.h"
#include "ui/toolkit/PopupMenu.h"
#include "ui/toolkit/TextEditor.h"
#include "ui/toolkit/Window.h"

namespace sorbel {

class SmallWindow : public Window {
  public:
    explicit SmallWindow(Application& app) : Window(app, "Small", {400, 300}) { Resizeable = true; }
    [[nodiscard]] String ClassName() const override { return "SmallWindow"; }
    bool Event_CancelClose(bool) override { return Refuses; }
    bool Event_KeyDown(StringView key) override {
        Keys += key;
        return false;
    }

    Listbox List{*this, "List", {10, 10, 180, 200}, {true, true, false, true}};
    TextArea Area{*this, "Area", {200, 10, 190, 100}, {true, true, true, false}, 1};
    TextField Field{*this, "Field", {200, 120, 190, 22}, {}, 2};
    PopupMenu Popup{*this, "Popup", {200, 150, 190, 22}, {}, 3};
    Label Caption{*this, "Caption", {200, 180, 190, 20}, {}, 4};

    bool Refuses = false;
    String Keys;
};

/// Deals with the next dialog or pop-up menu, once it is up.
inline void Answer(std::function<void(QWidget& dialog)> answer) {
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, [timer, answer = std::move(answer)] {
        QWidget* popup = QApplication::activePopupWidget();
        QWidget* dialog = popup ? popup : QApplication::activeModalWidget();
        if (!dialog) return;
        timer->stop();
        timer->deleteLater();
        answer(*dialog);
    });
    timer->start(0);
}

/// A desktop without a screen, and a window of every kind of control on it.
class Screen : public testing::Test {
  protected:
    Screen() { Backend.Serve(App); }

    /// Shows the window; what is to be fixed at design time has to be set before.
    void Open() {
        Small->Show();
        View = Backend.ViewOf(Small.get());
        View->activateWindow();
        Settle();
    }
    /// One turn of the event loop.
    static void Settle() { QCoreApplication::processEvents(); }
    template <typename Widget>
    Widget& On(const Control& control) {
        return dynamic_cast<Widget&>(View->ViewOf(control)->Widget());
    }

    QtBackend Backend;
    Application App{Backend};
    std::shared_ptr<SmallWindow> Small = std::make_shared<SmallWindow>(App);
    QtWindow* View = nullptr;
};

}  // namespace sorbel

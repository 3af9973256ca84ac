#pragma once

#include <QMainWindow>
#include <functional>
#include <memory>
#include <vector>

#include "qt/ControlView.h"
#include "qt/DesignUnits.h"
#include "qt/QtMenus.h"
#include "qt/QtTheme.h"
#include "ui/toolkit/Window.h"

class QHelpEvent;

namespace sorbel {

/// Shows one window. Whatever changes in it or its controls is shown in one flush, once the program has gone
/// back to the event loop, and before anything else reaches the program or a widget; see `Desktop`.
class QtWindow : public QMainWindow, public View {
    Q_OBJECT

  public:
    QtWindow(std::shared_ptr<Window> window, QtTheme& theme);
    ~QtWindow() override;

    /// Shows it on the screen for the first time.
    void Open(const QWidget* front);
    /// The window is gone: this shows nothing more, takes its dialogs and menus from the screen and goes when
    /// nothing can come back to it.
    void Retire();

    [[nodiscard]] Window& Model() const { return *mModel; }
    [[nodiscard]] QWidget& Content() const { return *mContent; }
    [[nodiscard]] QtTheme& Theme() const { return mTheme; }
    [[nodiscard]] const DesignUnits& Units() const { return mUnits; }
    [[nodiscard]] ControlView* ViewOf(const Control& control) const;

    void Changed(Aspect aspect) override;
    void ScheduleFlush();
    void Flush();
    /// Runs something when the flush under way is over.
    void AfterFlush(std::function<void()> operation) { mAfterFlush.push_back(std::move(operation)); }

    /// Runs what draws or describes. A failure in it is told when that is over: a message in between would
    /// draw.
    void Guard(const std::function<void()>& operation);

    void MenusChanged();
    void AppearanceChanged();
    /// The Edit menu as the menu of a text field, below choices of the field's own.
    void PopUpEditMenu(const QPoint& at, const MenuChoices& above = {});
    void ContentResized();

    bool eventFilter(QObject* watched, QEvent* event) override;

  Q_SIGNALS:
    void Retired();

  protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;

  private:
    void MakeControls();
    void SetUpFrame();
    void SetLimits();
    void TakeFont();
    void Fit();
    void ShowWindow(Aspects changed);
    void ShowFocus();
    [[nodiscard]] QWidget* StandIn() const;
    [[nodiscard]] bool MovesFocus(const QFocusEvent& event) const;
    void OpenContextMenu();
    bool OfferTip(const ControlView& view, QHelpEvent& event);
    void CloseGuests();
    void TakeFront();
    void TakePlace();
    [[nodiscard]] ControlView* ViewOf(const QObject* widget) const;

    std::shared_ptr<Window> mModel;  // held until nothing runs in it any more
    QtTheme& mTheme;
    DesignUnits mUnits;
    QWidget* mContent;
    std::vector<std::unique_ptr<ControlView>> mViews;
    std::unique_ptr<QtMenus> mMenus;
    Aspects mChanged = Aspects::All();
    std::vector<std::function<void()>> mAfterFlush;
    bool mScheduled = false;
    bool mFlushing = false;
    bool mMenusStale = false;
    bool mRetired = false;
};

}  // namespace sorbel

#pragma once

#include <QWidget>

#include "ui/toolkit/Control.h"
#include "ui/toolkit/MenuItem.h"

namespace sorbel {

class QtWindow;

/// What has changed since the last flush.
class Aspects {
  public:
    static Aspects All() { return Aspects(~0u); }
    explicit Aspects(uint32_t bits = 0) : mBits(bits) {}
    void Add(Aspect aspect) { mBits |= static_cast<uint32_t>(aspect); }
    [[nodiscard]] bool Has(Aspect aspect) const { return (mBits & static_cast<uint32_t>(aspect)) != 0; }
    [[nodiscard]] bool Any() const { return mBits != 0; }

  private:
    uint32_t mBits;
};

/// A text that stands beside the pointer for as long as it stays at a place of a widget.
struct PlacedTip {
    QString Text;  ///< as it is; empty for none
    QRect Place;   ///< empty: all of the widget
};

/// Shows one control by a widget of its own, which belongs to the window. What the control tells is only
/// noted; the window's next flush brings the widget in line. Input goes to the control's `User...`
/// operations.
class ControlView : public View {
  public:
    ControlView(Control& control, QtWindow& window, QWidget& widget);
    ~ControlView() override { mControl.Attach(nullptr); }
    ControlView(const ControlView&) = delete;
    ControlView& operator=(const ControlView&) = delete;

    void Changed(Aspect aspect) final;
    void Flush();

    [[nodiscard]] Control& Model() const { return mControl; }
    [[nodiscard]] QWidget& Widget() const { return mWidget; }
    /// All controls of the window have their views now.
    virtual void MeetOthers() {}
    /// Whether the menu's keys go to the menu also while this control would take them for itself.
    [[nodiscard]] virtual bool YieldsMenuKeys() const { return false; }
    /// Cut, copy and the like, by a command of the program.
    virtual void Edit(EditCommand /*command*/) {}
    /// What is told at a place of the widget where the pointer rests.
    [[nodiscard]] virtual PlacedTip TipAt(const QPoint& at) const;

  protected:
    /// Brings the widget in line but for what all controls have in common. The widget's signals are blocked.
    virtual void Show(Aspects changed) = 0;
    [[nodiscard]] QtWindow& Owner() const { return mWindow; }

  private:
    Control& mControl;
    QtWindow& mWindow;
    QWidget& mWidget;
    Aspects mChanged = Aspects::All();
};

/// A view that fits the control's kind.
[[nodiscard]] std::unique_ptr<ControlView> MakeControlView(Control& control, QtWindow& window);

/// Shows that a control has the focus whose own look does not tell.
void DrawFocusFrame(QPainter& painter, const QWidget& widget);

/// What the text of a widget stands on while it is enabled, or disabled.
[[nodiscard]] QColor GroundOf(const QWidget& widget, QPalette::ColorGroup group = QPalette::Active);

/// Gives a widget one colour for its text, and the desktop's while it is disabled. Both are shown as near to
/// that as can be read.
void SetTextColor(QWidget& widget, QPalette::ColorRole role, const QColor& color);

}  // namespace sorbel

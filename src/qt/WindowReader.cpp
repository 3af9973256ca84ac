#include "qt/WindowReader.h"

#include <QAccessibleWidget>

#include "qt/QtWindow.h"
#include "qt/Text.h"

namespace sorbel {

namespace {

class WindowReader : public QAccessibleWidget {
  public:
    explicit WindowReader(QtWindow& view) : QAccessibleWidget(&view, QAccessible::Window), mView(view) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        const auto& describe = mView.Model().Description;
        if (kind != QAccessible::Description || !describe) return QAccessibleWidget::text(kind);
        QString told;
        mView.Guard([&] { told = ToQt(describe()); });
        return told;
    }

  private:
    QtWindow& mView;
};

QAccessibleInterface* MakeReader(const QString& /*className*/, QObject* object) {
    auto* const view = dynamic_cast<QtWindow*>(object);
    return view ? new WindowReader(*view) : nullptr;
}

}  // namespace

void ReadWindowsByModel() {
    static const bool installed = (QAccessible::installFactory(&MakeReader), true);
    (void)installed;
}

}  // namespace sorbel

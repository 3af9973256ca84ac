#include "qt/ListReader.h"

#include <QAccessibleWidget>
#include <QHash>

#include "qt/ListView.h"

namespace sorbel {

namespace {

/// Whatever is in one row of a list at present.
class RowReader : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    RowReader(ListView& view, int row) : mView(view), mRow(row) {}

    [[nodiscard]] bool isValid() const override { return mRow < mView.RowCount(); }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QWindow* window() const override { return parent()->window(); }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&mView);
    }
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Name || !isValid()) return {};
        return mView.model()->index(mRow, 0).data(Qt::AccessibleTextRole).toString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    [[nodiscard]] QRect rect() const override {
        const QRect row = mView.RowRect(mRow);
        return {mView.viewport()->mapToGlobal(row.topLeft()), row.size()};
    }
    [[nodiscard]] QAccessible::State state() const override;

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    [[nodiscard]] QStringList actionNames() const override {
        QStringList names{pressAction()};
        if (isValid() && mView.Model().IsFolder(mRow)) names += toggleAction();
        return names;
    }
    void doAction(const QString& name) override {
        if (!actionNames().contains(name) || !isValid()) return;
        if (name == toggleAction())
            mView.OpenRow(mRow, !mView.Model().Expanded(mRow));
        else
            mView.Model().UserSelect(mRow);
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString&) const override { return {}; }

  private:
    ListView& mView;
    int mRow;
};

QAccessible::State RowReader::state() const {
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const Listbox& list = mView.Model();
    state.selectable = state.focusable = true;
    state.selected = list.Selected(mRow);
    state.focused = list.Selected(mRow) && mView.hasFocus();
    state.offscreen = !mView.viewport()->rect().intersects(mView.RowRect(mRow));
    state.expandable = list.IsFolder(mRow);
    state.expanded = list.IsFolder(mRow) && list.Expanded(mRow);
    state.collapsed = list.IsFolder(mRow) && !list.Expanded(mRow);
    return state;
}

class ListReader : public QAccessibleWidget {
  public:
    explicit ListReader(ListView& view) : QAccessibleWidget(&view, QAccessible::List), mView(view) {}
    ~ListReader() override {
        for (const QAccessible::Id id : std::as_const(mRows))
            QAccessible::deleteAccessibleInterface(id);
    }

    [[nodiscard]] int childCount() const override { return mView.RowCount(); }
    [[nodiscard]] QAccessibleInterface* child(int row) const override {
        if (row < 0 || row >= mView.RowCount()) return nullptr;
        auto& id = mRows[row];
        if (id == 0) id = QAccessible::registerAccessibleInterface(new RowReader(mView, row));
        return QAccessible::accessibleInterface(id);
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        return mRows.key(QAccessible::uniqueId(const_cast<QAccessibleInterface*>(child)), -1);
    }
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        return child(mView.indexAt(mView.viewport()->mapFromGlobal(QPoint(x, y))).row());
    }
    [[nodiscard]] QAccessibleInterface* focusChild() const override {
        return mView.hasFocus() ? child(static_cast<int>(mView.Model().ListIndex())) : nullptr;
    }

  private:
    ListView& mView;
    mutable QHash<int, QAccessible::Id> mRows;  // those asked for so far
};

QAccessibleInterface* MakeReader(const QString& /*className*/, QObject* object) {
    auto* view = dynamic_cast<ListView*>(object);
    return view ? new ListReader(*view) : nullptr;
}

}  // namespace

void ReadListsByRow() {
    static const bool installed = (QAccessible::installFactory(&MakeReader), true);
    (void)installed;
}

}  // namespace sorbel

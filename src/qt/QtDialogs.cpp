#include "qt/QtDialogs.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <vector>

#include "platform/FileType.h"
#include "qt/MessageLook.h"
#include "qt/Text.h"

namespace sorbel {

namespace {

/// A window that has just been opened has no place yet to centre a dialog on. Does not wait long for one that
/// does not come.
void WaitForPlace(const QWidget* parent) {
    const QPointer<const QWidget> window(parent ? parent->window() : nullptr);
    const QDeadlineTimer limit(std::chrono::seconds(1));
    while (window && window->isVisible() && !window->isMinimized() && !window->windowHandle()->isExposed() &&
           !limit.hasExpired()) {
        QEventLoop moment;
        QTimer::singleShot(std::chrono::milliseconds(5), &moment, &QEventLoop::quit);
        moment.exec(QEventLoop::ExcludeUserInputEvents);
    }
}

/// Runs a dialog that may lose its parent, and so itself, while it runs. Null: it is gone. What it has opened
/// goes with it at once, for long work may follow in which nothing is taken from the screen.
template <typename Dialog>
std::unique_ptr<Dialog> Run(Dialog* dialog, bool sheet) {
    const QPointer<Dialog> guard(dialog);
    WaitForPlace(dialog->parentWidget());
    if (!guard) return nullptr;
    dialog->setAttribute(Qt::WA_DeleteOnClose, false);
    dialog->setWindowModality(sheet && dialog->parent() ? Qt::WindowModal : Qt::ApplicationModal);
    dialog->exec();
    return std::unique_ptr<Dialog>(guard.data());
}

using Types = std::vector<const FileType*>;  // a file dialog has another meaning for the name inside

Types TypesOf(StringView filter) {
    Types types;
    for (const String& name : Split(filter, ";"))
        for (const FileType& type : FileType::Registered())
            if (Equal(type.Name, Trim(name))) types.push_back(&type);
    return types;
}

QString Patterns(const FileType& type) {
    QStringList patterns;
    for (const QString& extension : ToQt(type.Extensions).split(u';', Qt::SkipEmptyParts))
        patterns += u'*' + extension;
    return patterns.join(u' ');
}

/// Remembers the key that a message gets, and tells whether it is held down. Not every repetition is known as
/// one, but they follow each other closely, also from one message to the next.
bool RememberKey(const QKeyEvent& event) {
    constexpr quint64 gap = 250;  // milliseconds
    static int lastKey = 0;
    static quint64 lastTime = 0;
    const bool follows = event.key() == lastKey && lastTime > 0 && event.timestamp() - lastTime < gap;
    lastKey = event.key();
    lastTime = event.timestamp();
    return follows || event.isAutoRepeat();
}

/// A message that can be dismissed also where no button stands for that.
class MessageBox : public QMessageBox {
  public:
    using QMessageBox::QMessageBox;

    [[nodiscard]] bool LeftByEscape() const { return mByEscape; }

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        (void)RememberKey(*event);  // for a text that follows
        mByEscape = event->matches(QKeySequence::Cancel);
        if (mByEscape && !escapeButton()) return reject();
        QMessageBox::keyPressEvent(event);
    }
    void closeEvent(QCloseEvent* event) override {
        if (escapeButton()) return QMessageBox::closeEvent(event);
        QDialog::closeEvent(event);  // NOLINT(bugprone-parent-virtual-call)
    }

  private:
    bool mByEscape = false;
};

/// A text that stays when a key is held down that was to leave what was there before it.
class TextBox : public QMessageBox {
  public:
    using QMessageBox::QMessageBox;

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        const bool held = RememberKey(*event);
        if (!held) QMessageBox::keyPressEvent(event);
    }
};

/// A file dialog in which a folder that has the extension of a type asked for, such as an application, can be
/// chosen like a file.
class FileDialog : public QFileDialog {
  public:
    FileDialog(QWidget* parent, const QString& folder, StringView filter, bool allFiles)
        : QFileDialog(parent, {}, folder), mTypes(TypesOf(filter)) {
        setNameFilters(NameFilters(filter, allFiles));
        for (const auto* type : mTypes)
            if (type->Matches(".app")) setOption(DontUseNativeDialog);
    }

    std::shared_ptr<FolderItem> File() const {
        return result() == Accepted ? FileFromQt(selectedFiles().value(0)) : nullptr;
    }

  protected:
    void accept() override {
        if (IsBundle(selectedFiles().value(0)))
            QDialog::accept();
        else
            QFileDialog::accept();
    }

  private:
    [[nodiscard]] bool IsBundle(const QString& path) const {
        const QFileInfo info(path);
        if (fileMode() != ExistingFile || !info.isDir()) return false;
        const String name = FromQt(info.fileName());
        return std::ranges::any_of(mTypes, [&name](const auto* type) { return type->Matches(name); });
    }

    Types mTypes;
};

}  // namespace

QStringList NameFilters(StringView filter, bool allFiles) {
    QStringList names, patterns, filters;
    for (const FileType* type : TypesOf(filter)) {
        names += ToQt(type->Name);
        patterns += Patterns(*type);
        filters += QStringLiteral("%1 (%2)").arg(names.back(), patterns.back());
    }
    if (filters.size() > 1)
        filters.prepend(QStringLiteral("%1 (%2)").arg(names.join(QStringLiteral(", ")), patterns.join(u' ')));
    if (allFiles) filters += QStringLiteral("All Files (*)");
    return filters;
}

void RunMessage(StringView text, QWidget* parent) {
    auto* box = new TextBox(parent);
    box->setTextFormat(Qt::PlainText);
    box->setIcon(QMessageBox::Critical);
    box->setText(ToQt(text));
    box->setStandardButtons(QMessageBox::Ok);
    SetTitle(*box, QCoreApplication::applicationName());
    (void)Run(box, false);
}

MessageAnswer RunMessage(const MessageDialog& dialog, const QString& title, QWidget* parent, bool sheet) {
    auto* box = new MessageBox(parent);
    box->setTextFormat(Qt::PlainText);
    const bool caution = dialog.Type == MessageDialog::Kind::Caution;
    box->setIcon(caution ? QMessageBox::Warning : QMessageBox::Question);
    box->setText(ToQt(dialog.Message));
    box->setInformativeText(ToQt(dialog.Explanation));
    const std::array<std::pair<const MessageDialogButton*, QMessageBox::ButtonRole>, 3> roles = {{
        {&dialog.ActionButton, QMessageBox::AcceptRole},
        {&dialog.AlternateActionButton, QMessageBox::DestructiveRole},
        {&dialog.CancelButton, QMessageBox::RejectRole},
    }};
    std::array<const QAbstractButton*, 3> buttons{};
    for (size_t index = 0; index < roles.size(); ++index) {
        const auto& [button, role] = roles[index];
        if (!button->Visible) continue;
        QPushButton* shown = box->addButton(ToQt(button->Caption), role);
        buttons[index] = shown;
        if (button->Default) box->setDefaultButton(shown);
        if (button->Cancel) box->setEscapeButton(shown);
    }
    SetTitle(*box, title);
    const std::unique_ptr<MessageBox> done = Run(box, sheet);
    if (!done) return {};
    MessageAnswer answer{nullptr, done->LeftByEscape()};
    for (size_t index = 0; index < roles.size(); ++index)
        if (buttons[index] && buttons[index] == done->clickedButton()) answer.Button = roles[index].first;
    return answer;
}

std::shared_ptr<FolderItem> RunOpen(const OpenDialog& dialog, const QString& folder, QWidget* parent,
                                    bool sheet) {
    auto* files = new FileDialog(parent, folder, dialog.Filter, !dialog.OnlyTypes);
    files->setFileMode(QFileDialog::ExistingFile);
    if (!dialog.PromptText.empty()) files->setWindowTitle(ToQt(dialog.PromptText));
    const std::unique_ptr<FileDialog> done = Run(files, sheet);
    return done ? done->File() : nullptr;
}

std::shared_ptr<FolderItem> RunSave(StringView filter, StringView defaultName, const QString& folder,
                                    QWidget* parent) {
    auto* files = new FileDialog(parent, folder, filter, true);
    files->setWindowTitle(QStringLiteral("Export"));
    files->setAcceptMode(QFileDialog::AcceptSave);
    files->setFileMode(QFileDialog::AnyFile);
    if (const auto types = TypesOf(filter); !types.empty())
        files->setDefaultSuffix(ToQt(types.front()->Extensions).section(u';', 0, 0));
    files->selectFile(ToQt(defaultName));
    const std::unique_ptr<FileDialog> done = Run(files, false);
    return done ? done->File() : nullptr;
}

}  // namespace sorbel

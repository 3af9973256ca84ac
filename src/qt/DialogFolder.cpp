#include "qt/DialogFolder.h"

#include <QDir>
#include <QFile>

#include "platform/FolderItem.h"
#include "ui/toolkit/Application.h"
#include "ui/toolkit/Window.h"

namespace sorbel {

namespace {

QString FolderOf(const FolderItem& file) {
    const auto folder = file.Parent();
    return folder ? QFile::decodeName(QByteArray::fromStdString(folder->NativePath())) : QString();
}

/// The front window may be one without a document.
QString FolderOfFrontDocument(const Application& app) {
    for (int64_t index = 0; index < app.WindowCount(); ++index)
        if (const auto& file = app.WindowAt(index).RepresentedFile()) return FolderOf(*file);
    return {};
}

}  // namespace

QString DialogFolder::First(const Application* app) const {
    const QString front = app ? FolderOfFrontDocument(*app) : QString();
    for (const QString& folder : {front, mLast})
        if (!folder.isEmpty() && QDir(folder).exists()) return folder;
    return QDir::currentPath();
}

void DialogFolder::Used(const FolderItem& file) {
    mLast = FolderOf(file);
}

}  // namespace sorbel

#include "qt/StartMessages.h"

#include <QByteArray>
#include <QString>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

namespace sorbel {

namespace {

struct Message {
    QtMsgType Type;
    QByteArray Category;
    QString Text;
};

std::vector<Message> held;

/// The first thing that went wrong with the screen; what follows is advice and consequences.
QString Reason() {
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return QStringLiteral("neither DISPLAY nor WAYLAND_DISPLAY is set");
    const auto first = std::find_if(held.begin(), held.end(), [](const Message& message) {
        return message.Category.startsWith("qt.qpa");
    });
    return first == held.end() ? QStringLiteral("the display cannot be used") : first->Text.simplified();
}

void Hold(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "sorbel: No window can be shown: %s\n", qUtf8Printable(Reason()));
        std::_Exit(EXIT_FAILURE);
    }
    held.push_back({type, context.category, text});
}

}  // namespace

StartMessages::StartMessages() : mUsual(qInstallMessageHandler(Hold)) {}

StartMessages::~StartMessages() {
    qInstallMessageHandler(mUsual);
    for (const Message& message : std::exchange(held, {}))
        mUsual(message.Type, QMessageLogContext(nullptr, 0, nullptr, message.Category.constData()),
               message.Text);
}

}  // namespace sorbel

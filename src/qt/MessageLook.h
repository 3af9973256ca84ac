#pragma once

#include <QString>

class QMessageBox;

namespace sorbel {

/// Gives a message a title that its title bar has room for; a very long one is cut in the middle, so that the
/// ending of a file's name stays. To be called once the message's texts and icon have been set.
void SetTitle(QMessageBox& box, const QString& title);

}  // namespace sorbel

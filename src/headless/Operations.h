#pragma once

#include <span>
#include <utility>

#include "headless/JsonText.h"
#include "headless/Request.h"
#include "headless/Session.h"

namespace sorbel::headless {

/// Carries a request out and adds the fields of its own to the reply. Fails with RequestError.
using Operation = void (*)(Session& session, const Request& request, Json& reply);
using OperationTable = std::span<const std::pair<StringView, Operation>>;

/// On the program as a whole: start and end, documents, menus, time, answers.
[[nodiscard]] OperationTable ApplicationOperations();
/// On windows of any kind.
[[nodiscard]] OperationTable WindowOperations();
/// On the frontmost document window.
[[nodiscard]] OperationTable DocumentOperations();

/// Fails with RequestError if the window has no such control.
[[nodiscard]] Control& FindControl(const Window& window, const String& name);

}  // namespace sorbel::headless

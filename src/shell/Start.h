#pragma once

#include <memory>

#include "ui/toolkit/Application.h"

namespace sorbel {

/// Brings the program up on a desktop: file types, application object, menu bar. `Application::Start` then
/// begins its work. `SpecialFolder` must be set before.
[[nodiscard]] std::unique_ptr<Application> MakeApplication(Backend& backend);

}  // namespace sorbel

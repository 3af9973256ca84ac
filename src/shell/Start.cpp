#include "shell/Start.h"

#include "journal/EndSignals.h"
#include "shell/App.h"
#include "shell/FileTypes1.h"
#include "ui/PlatformColors.h"

namespace sorbel {

std::unique_ptr<Application> MakeApplication(Backend& backend) {
    FlushBeforeEndSignals();
    _InitFileTypes();
    Platform::Colors::UseDesktop(&backend);
    return std::make_unique<App>(backend);
}

}  // namespace sorbel

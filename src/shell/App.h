#pragma once

#include <memory>

#include "ui/toolkit/Application.h"

namespace sorbel {

class AboutWindow;
class LaunchWindow;

/// The application object. It holds no document: it finds windows through the window list only.
class App : public Application {
  public:
    explicit App(Backend& backend);

    /// The build's version, as the about window shows it.
    [[nodiscard]] static String ShortVersion();

    /// Asks for a locale file, as a sheet of `parent` if there is one, and opens it. True: a file was chosen,
    /// which does not say that it could be read.
    bool OpenADocument(Window* parent);

    // The implicit instance of each window, made and shown as needed.
    LaunchWindow& ShowLaunchWindow();
    AboutWindow& TheAboutWindow();

    void Event_Open() override;
    void Event_NewDocument() override;
    void Event_OpenDocument(const std::shared_ptr<FolderItem>& item) override;
    bool Event_HandleAppleEvent(StringView eventClass, StringView eventID) override;
    void Event_AppearanceChanged() override;

  private:
    void _ApplicationAddMenuHandlers();
    bool _FileOpen_Action();
    bool _AboutSorbel_Action();
    void CloseLaunchWindow();
    bool OfferUnsavedDocuments();

    std::weak_ptr<LaunchWindow> mLaunchWindow;
    std::weak_ptr<AboutWindow> mAboutWindow;
};

}  // namespace sorbel

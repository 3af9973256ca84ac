#include "ui/toolkit/Application.h"

#include <algorithm>

#include "platform/Exceptions.h"

namespace sorbel {

Application::~Application() {
    for (const std::shared_ptr<Window>& window : mWindows)
        mBackend.WindowClosed(*window);
}

// --- Windows ---

Window& Application::WindowAt(int64_t index) const {
    if (index < 0 || index >= WindowCount()) throw OutOfBoundsException("No such window.");
    return *mWindows[static_cast<size_t>(index)];
}

void Application::BringToFront(Window& window) {
    const auto found = std::ranges::find(mWindows, &window, &std::shared_ptr<Window>::get);
    if (found == mWindows.end()) return;
    std::rotate(mWindows.begin(), found, found + 1);
    window.Changed(Aspect::Order);
    mBackend.MenusChanged();
}

void Application::ShowModal(Window& window) {
    const std::shared_ptr<Window> held = window.shared_from_this();
    window.Show();
    if (window.IsOpen()) mBackend.RunModal(window);
}

void Application::Opened(const std::shared_ptr<Window>& window) {
    mWindows.insert(mWindows.begin(), window);
    mBackend.MenusChanged();
}

void Application::Closed(Window& window) {
    const auto found = std::ranges::find(mWindows, &window, &std::shared_ptr<Window>::get);
    if (found == mWindows.end()) return;
    mGone.push_back(std::move(*found));
    mWindows.erase(found);
    mBackend.MenusChanged();
}

void Application::Release() {
    // Out of the member first: what a window does at its end may come back here.
    const std::vector<std::shared_ptr<Window>> gone = std::move(mGone);
    mGone.clear();
}

// --- Start, documents, end ---

void Application::Start(const std::vector<std::shared_ptr<FolderItem>>& files) {
    Perform([this] { Event_Open(); });
    if (files.empty()) Perform([this] { Event_NewDocument(); });
    for (const std::shared_ptr<FolderItem>& file : files)
        OpenDocument(file);
}

void Application::OpenDocument(const std::shared_ptr<FolderItem>& item) {
    Perform([&] { Event_OpenDocument(item); });
}

bool Application::Reopen() {
    bool handled = false;
    Perform([&] { handled = Event_HandleAppleEvent("aevt", "rapp"); });
    return handled;
}

void Application::AppearanceChanged() {
    Perform([this] { Event_AppearanceChanged(); });
}

bool Application::Quit() {
    mEnded = false;
    Perform([this] {
        const std::vector<std::shared_ptr<Window>> windows = mWindows;
        mEnded = std::ranges::all_of(windows, [](const auto& window) { return window->Close(true); });
    });
    return mEnded;
}

// --- Failures ---

void Application::Perform(const std::function<void()>& operation) {
    mBackend.ShowWaiting();
    if (mDepth == 0) Release();
    ++mDepth;
    ++mOperation;
    try {
        operation();
    } catch (const RuntimeException& failure) {
        Report(failure.ClassName(), failure.Message());
    } catch (const std::exception& failure) {
        Report("RuntimeException", failure.what());
    }
    --mDepth;
    if (mDepth == 0) Release();
}

void Application::Report(const String& className, const String& message) {
    mUnhandled = className;
    const String text = "The operation failed: " + className + (message.empty() ? "." : ". " + message);
    try {
        mBackend.MsgBox(text);
    } catch (const std::exception&) {
        // There is nobody left to tell; `TakeUnhandled` still knows of the first failure.
    }
}

String Application::TakeUnhandled() {
    return std::exchange(mUnhandled, {});
}

}  // namespace sorbel

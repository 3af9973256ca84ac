#pragma once

#include <memory>
#include <set>

#include "support/FakeBackend.h"
#include "ui/toolkit/Application.h"

namespace sorbel {

/// A window whose events are given by the test.
class TestWindow : public Window {
  public:
    explicit TestWindow(Application& app, String title = "Test")
        : Window(app, std::move(title), {640, 480}) {}
    [[nodiscard]] String ClassName() const override { return "TestWindow"; }

    std::vector<String> Log;
    bool Refuses = false;
    std::function<void()> OnKey, OnRefresh, OnAsking;

    void Event_Open() override { Log.emplace_back("Open"); }
    void Event_Close() override { Log.emplace_back("Close"); }
    bool Event_CancelClose(bool appQuitting) override {
        Log.emplace_back(appQuitting ? "Quitting?" : "Closing?");
        if (OnAsking) OnAsking();
        return Refuses;
    }
    void Event_Resized() override { Log.emplace_back("Resized"); }
    void Event_Resizing() override { Log.emplace_back("Resizing"); }
    bool Event_KeyDown(StringView) override {
        if (OnKey) OnKey();
        return false;
    }
    bool Event_MouseDown(int x, int y) override {
        Log.push_back("Mouse " + std::to_string(x) + "," + std::to_string(y));
        return false;
    }
    void Event_EnableMenuItems() override {
        if (OnRefresh) OnRefresh();
    }
};

/// A program with one window.
struct TestProgram {
    FakeBackend Backend;
    Application App{Backend};
    std::shared_ptr<TestWindow> Window = std::make_shared<TestWindow>(App);
};

/// Counts the notices that a control or window gives.
class TestView : public View {
  public:
    std::multiset<Aspect> Notices;
    void Changed(Aspect aspect) override { Notices.insert(aspect); }
    /// Number of notices of that aspect since the last call.
    size_t Take(Aspect aspect) { return Notices.erase(aspect); }
};

}  // namespace sorbel

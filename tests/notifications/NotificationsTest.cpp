#include "notifications/Notifications.h"

#include <gtest/gtest.h>

#include <functional>

namespace sorbel {
namespace {

struct Ear : Listener {
    std::vector<String> Heard;
    std::function<void()> Then;

    void ValueChanged(StringView identifier) override {
        Heard.emplace_back(identifier);
        if (Then) Then();
    }
};

TEST(NotificationsTest, ReachThoseWhoListenToTheObject) {
    const int object = 0, other = 0, silent = 0;
    Ear ear, second, stranger;
    Notifications::ValueChanged(&object, "dropped");
    Notifications::RemoveObserver(&object, ear);
    EXPECT_EQ(Notifications::Observers().Count(), 0);

    Notifications::AddObserver(&object, ear);
    Notifications::AddObserver(&object, ear);
    Notifications::AddObserver(&object, second);
    Notifications::AddObserver(&other, stranger);
    Notifications::ValueChanged(&object, "one");
    Notifications::ValueChanged(&other, "two");
    Notifications::ValueChanged(&silent, "three");
    EXPECT_EQ(ear.Heard, std::vector<String>{"one"});
    EXPECT_EQ(second.Heard, std::vector<String>{"one"});
    EXPECT_EQ(stranger.Heard, std::vector<String>{"two"});

    Notifications::RemoveObserver(&object, stranger);
    Notifications::RemoveObserver(&object, ear);
    EXPECT_TRUE(Notifications::Observers().HasKey(&object));
    Notifications::RemoveObserver(&object, second);
    EXPECT_FALSE(Notifications::Observers().HasKey(&object));
    Notifications::RemoveObserver(&other, stranger);
    EXPECT_EQ(Notifications::Observers().Count(), 0);
}

TEST(NotificationsTest, ListenersMayComeAndGoDuringTheDelivery) {
    const int object = 0;
    Ear first, second, late;
    first.Then = [&] {
        Notifications::RemoveObserver(&object, first);
        Notifications::RemoveObserver(&object, second);
        Notifications::AddObserver(&object, late);
    };
    Notifications::AddObserver(&object, first);
    Notifications::AddObserver(&object, second);
    Notifications::ValueChanged(&object, "a");
    Notifications::ValueChanged(&object, "b");
    EXPECT_EQ(first.Heard, std::vector<String>{"a"});
    EXPECT_EQ(second.Heard, std::vector<String>{"a"});
    EXPECT_EQ(late.Heard, std::vector<String>{"b"});
    Notifications::RemoveObserver(&object, late);
}

}  // namespace
}  // namespace sorbel

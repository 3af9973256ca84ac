#include "editing/undo/UndoManager.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

namespace sorbel {
namespace {

/// Writes what happens to it into a log; absorbs actions that bear its own name.
class Toy : public Action {
  public:
    Toy(char name, String& log) : mName(name), mLog(log) {}
    ~Toy() override { mLog += {'~', mName}; }
    [[nodiscard]] char Name() const { return mName; }

  protected:
    bool CombineWith(const Action& other) override {
        mLog += {'?', mName};
        return static_cast<const Toy&>(other).mName == mName;
    }
    void Execute() override { mLog += {'+', mName}; }
    void Unexecute() override {
        if (mName == '!') throw std::runtime_error("refused");
        mLog += {'-', mName};
    }

  private:
    char mName;
    String& mLog;
};

class UndoManagerTest : public testing::Test {
  protected:
    void Add(char name, bool perform = true) { mManager.Add(std::make_unique<Toy>(name, mLog), perform); }
    String TakeLog() { return std::exchange(mLog, {}); }
    static String Names(const std::vector<std::unique_ptr<Action>>& stack) {
        String names;
        for (const auto& action : stack)
            names += static_cast<const Toy&>(*action).Name();
        return names;
    }
    [[nodiscard]] String Stacks() const {
        return Names(mManager.UndoStack()) + "|" + Names(mManager.RedoStack());
    }
    [[nodiscard]] bool Dirty() const { return mManager.HasChangedSinceSave(); }

    String mLog;
    int mRefreshes = 0;
    UndoManager mManager{[this] {
        ++mRefreshes;
    }};
};

TEST_F(UndoManagerTest, SavePointIsADepth) {
    EXPECT_FALSE(Dirty());
    Add('a');
    EXPECT_TRUE(Dirty());
    mManager.Undo();
    EXPECT_FALSE(Dirty());
    mManager.Redo();
    EXPECT_TRUE(Dirty());

    mManager.MarkSave();
    EXPECT_FALSE(Dirty());
    Add('a');
    EXPECT_FALSE(Dirty()) << "absorbed by the saved change";
    mManager.Undo();
    EXPECT_TRUE(Dirty());
    EXPECT_TRUE(mManager.HasRedo()) << "a save keeps the stacks";
    Add('b');
    EXPECT_FALSE(Dirty()) << "another change at the saved depth";

    mManager.Undo();
    mManager.MarkSave();
    EXPECT_EQ(mManager.LastSavePoint(), -1);
    for (const char name : {'x', 'y', 'z'})
        Add(name);
    mManager.MarkSave();
    String dirty;
    for (int step = 0; step < 4; ++step) {
        step < 2 ? mManager.Undo() : mManager.Redo();
        dirty += Dirty() ? 'd' : 'c';
    }
    EXPECT_EQ(dirty, "dddc");
}

TEST_F(UndoManagerTest, OnlyAPushClearsRedo) {
    Add('a');
    EXPECT_EQ(TakeLog(), "+a") << "nothing to combine with";
    Add('b');
    EXPECT_EQ(TakeLog(), "?a+b");
    mManager.Undo();
    EXPECT_EQ(TakeLog(), "-b");

    Add('a');
    EXPECT_EQ(TakeLog(), "?a+a~a") << "the absorbed one runs once and is released";
    EXPECT_EQ(Stacks(), "a|b");
    Add('c');
    EXPECT_EQ(Stacks(), "ac|");
    EXPECT_EQ(TakeLog(), "?a~b+c");

    Add('d', false);
    Add('d', false);
    EXPECT_EQ(TakeLog(), "?c?d~d") << "recorded and not run";
    EXPECT_EQ(Stacks(), "acd|");
}

TEST_F(UndoManagerTest, EmptyStacksAndFailures) {
    mManager.Undo();
    mManager.Redo();
    EXPECT_EQ(mRefreshes, 0);

    Add('!');
    EXPECT_THROW(mManager.Undo(), std::runtime_error);
    EXPECT_EQ(Stacks(), "|!") << "moved before the action runs";
    EXPECT_EQ(mRefreshes, 0);
    mManager.Redo();
    EXPECT_EQ(mRefreshes, 1);
    Add('a');
    mManager.Undo();
    EXPECT_EQ(mRefreshes, 2) << "undo and redo refresh the menus, adding does not";

    UndoManager withoutMenus;
    withoutMenus.Add(std::make_unique<Toy>('a', mLog), true);
    withoutMenus.Undo();
    EXPECT_TRUE(withoutMenus.HasRedo());
}

/// The same rules with two texts for stacks.
struct Model {
    String Undo, Redo;
    size_t Saved = 0;

    void Step(int operation, char name) {
        if (operation == 0 && !Undo.ends_with(name)) {
            Undo += name;
            Redo.clear();
        } else if (operation == 1 && !Undo.empty()) {
            Redo += Undo.back();
            Undo.pop_back();
        } else if (operation == 2 && !Redo.empty()) {
            Undo += Redo.back();
            Redo.pop_back();
        } else if (operation == 3) {
            Saved = Undo.size();
        }
    }
};

TEST_F(UndoManagerTest, RandomWalkAgreesWithTheModel) {
    std::mt19937 random(7);
    Model model;
    for (int step = 0; step < 20000; ++step) {
        const int operation = static_cast<int>(random() % 4);
        const char name = static_cast<char>('a' + random() % 3);
        if (operation == 0) Add(name);
        if (operation == 1) mManager.Undo();
        if (operation == 2) mManager.Redo();
        if (operation == 3) mManager.MarkSave();
        model.Step(operation, name);
        ASSERT_EQ(Stacks(), model.Undo + "|" + model.Redo) << "step " << step;
        ASSERT_EQ(Dirty(), model.Undo.size() != model.Saved) << "step " << step;
    }
}

}  // namespace
}  // namespace sorbel

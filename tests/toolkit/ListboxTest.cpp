#include "ui/toolkit/Listbox.h"

#include <gtest/gtest.h>

#include <random>

#include "TestProgram.h"
#include "platform/Exceptions.h"

namespace sorbel {
namespace {

/// What the list should hold, kept the simplest way: one element for each visible row.
struct Model {
    struct Row {
        int64_t Id;
        bool Folder, Child, Open;
    };
    std::vector<Row> Rows;
    int64_t Index = -1;
    int Changes = 0;

    void Expand(size_t row, const std::vector<int64_t>& children) {
        Rows[row].Open = true;
        for (size_t child = 0; child < children.size(); ++child)
            Rows.insert(Rows.begin() + row + 1 + child, {children[child], false, true, false});
        if (Index > static_cast<int64_t>(row)) Index += children.size();
    }
    void Collapse(int64_t row) {
        Rows[row].Open = false;
        while (row + 1 < std::ssize(Rows) && Rows[row + 1].Child) {
            Rows.erase(Rows.begin() + row + 1);
            if (Index == row + 1) Select(row);
            if (Index > row) --Index;
        }
    }
    void Select(int64_t row) {
        Index = row < std::ssize(Rows) ? row : -1;
        ++Changes;
    }
    void Clear() {
        Rows.clear();
        if (Index >= 0) Select(-1);
    }
};

/// A list whose rows carry a number, beside the model of it.
struct ListboxTest : testing::Test {
    TestProgram Program;
    Listbox List{*Program.Window, "List", {}};
    Model Expected;
    std::vector<int64_t> Children;  // that the last folder got
    std::mt19937 Random{20240131};
    int64_t NextId = 1;
    int Changes = 0;

    void SetUp() override {
        List.Change = [this] {
            ++Changes;
        };
        List.ExpandRow = [this](int64_t) {
            for (int64_t count = Below(4); count > 0; --count)
                Children.push_back(Add(false));
        };
    }
    int64_t Below(int64_t bound) { return static_cast<int64_t>(Random() % static_cast<uint64_t>(bound)); }
    int64_t Add(bool folder) {
        folder ? List.AddFolder("", NextId) : List.AddRow("", NextId);
        return NextId++;
    }
    void AddTop(bool folder) { Expected.Rows.push_back({Add(folder), folder, false, false}); }
    void Rebuild() {
        List.DeleteAllRows();
        Expected.Clear();
        for (int64_t count = Below(8); count > 0; --count)
            AddTop(true);
    }
    void Click(int64_t row, bool rebuild) {
        List.CellClick = [&](int64_t, int, int, int) {
            if (rebuild) Rebuild();
            return false;
        };
        List.UserClick(row, 0, 0);
        const bool exists = row >= 0 && row < std::ssize(Expected.Rows);
        if (exists || Expected.Index >= 0) Expected.Select(exists ? row : -1);
    }
    void OpenOrClose(int64_t row, bool open) {
        Children.clear();
        List.SetExpanded(row, open);
        const Model::Row& before = Expected.Rows[row];
        if (!before.Folder || before.Open == open) return;
        if (open)
            Expected.Expand(row, Children);
        else
            Expected.Collapse(row);
    }
    void Step() {
        const int64_t row = Below(List.ListCount() + 2) - 1;
        const int64_t kind = Below(100);
        if (kind < 2) {
            Click(row, kind == 0);
        } else if (kind < 5) {
            List.SetListIndex(row);
            Expected.Select(row);
        } else if (kind < 30) {
            AddTop(kind < 20);
        } else if (row >= 0 && row < List.ListCount()) {
            OpenOrClose(row, kind < 65);
        }
    }
    void Compare() const {
        ASSERT_EQ(List.ListCount(), std::ssize(Expected.Rows));
        ASSERT_EQ(List.ListIndex(), Expected.Index);
        ASSERT_EQ(Changes, Expected.Changes);
        std::vector<int64_t> open;
        for (int64_t row = 0; row < List.ListCount(); ++row) {
            const Model::Row& expected = Expected.Rows[row];
            ASSERT_EQ(List.NumberTag(row), expected.Id);
            ASSERT_EQ(List.IsFolder(row), expected.Folder);
            ASSERT_EQ(List.Depth(row), expected.Child ? 1 : 0);
            ASSERT_EQ(List.Expanded(row), expected.Open);
            if (expected.Open) open.push_back(row);
        }
        ASSERT_EQ(List.ExpandedRows(), open);
    }
};

TEST_F(ListboxTest, WalksLikeAPlainListOfRows) {
    for (int step = 0; step < 10000; ++step) {
        Step();
        ASSERT_NO_FATAL_FAILURE(Compare()) << "step " << step;
    }
}

TEST_F(ListboxTest, OpeningSurvivesWhatItsHandlerDoes) {
    for (int id = 1; id <= 3; ++id)
        List.AddFolder(std::to_string(id));
    // Another folder, above, opens inside the event of the second.
    List.ExpandRow = [&](int64_t row) {
        const bool second = List.Cell(row) == "2";
        List.AddRow("a");
        if (!second) return;
        List.SetExpanded(0, true);
        List.AddRow("b");
    };
    List.SetExpanded(1, true);
    String cells;
    for (int64_t row = 0; row < List.ListCount(); ++row)
        cells += List.Cell(row);
    EXPECT_EQ(cells, "1a2ab3");

    // The folder goes while it opens; what is added then stands at the top level.
    List.ExpandRow = [&](int64_t row) {
        List.SetExpanded(row, false);
        List.AddRow("closed");
    };
    List.SetExpanded(5, true);
    EXPECT_EQ(List.Cell(6), "closed");
    List.ExpandRow = [&](int64_t) {
        List.DeleteAllRows();
        List.AddRow("emptied");
    };
    List.SetExpanded(5, true);
    EXPECT_EQ(List.ListCount(), 1);
    EXPECT_EQ(List.Cell(0), "emptied");

    List.AddFolder("");
    List.ExpandRow = [](int64_t) {
        throw OutOfBoundsException();
    };
    EXPECT_THROW(List.SetExpanded(1, true), OutOfBoundsException);
    List.AddRow("after");
    EXPECT_EQ(List.Depth(List.LastIndex()), 0);
}

TEST_F(ListboxTest, RowsHoldTextTagsAndPictures) {
    const auto icon = std::make_shared<const Picture>(1, 1, true);
    List.AddRow("first");
    List.AddRow("", 0, SharedText("identifier"), icon);
    List.SetCell(1, "second");
    EXPECT_EQ(List.Cell(0) + List.Cell(1) + List.Cell(2) + List.Cell(-1), "firstsecond");
    EXPECT_EQ(List.TextTag(1).View(), "identifier");
    EXPECT_EQ(List.RowPicture(0), nullptr);
    EXPECT_EQ(List.RowPicture(1), icon);
    EXPECT_THROW((void)List.TextTag(-1), OutOfBoundsException);
    EXPECT_THROW(List.SetCell(2, ""), OutOfBoundsException);

    List.SetScrollPosition(9);
    EXPECT_EQ(List.ScrollPosition(), 1);
    List.DeleteAllRows();
    EXPECT_EQ(List.ScrollPosition(), 0);
}

TEST_F(ListboxTest, ClickAsksTheOwnerFirst) {
    List.AddRow("");
    std::vector<int64_t> clicked;
    List.CellClick = [&](int64_t row, int, int, int) {
        clicked.push_back(row);
        return true;
    };
    List.UserClick(0, 0, 0);
    List.UserClick(7, 0, 0);
    List.SetEnabled(false);
    List.UserClick(0, 0, 0);
    EXPECT_EQ(clicked, (std::vector<int64_t>{0, -1}));
    EXPECT_EQ(List.ListIndex(), -1);
}

TEST_F(ListboxTest, PaintStoresTextWithoutAskingForANewPaint) {
    struct NoGraphics : Graphics {
        [[nodiscard]] int Width() const override { return 0; }
        [[nodiscard]] int Height() const override { return 0; }
        [[nodiscard]] double StringWidth(StringView) const override { return 0; }
        void DrawPicture(const Picture&, int, int) override {}
        void DrawLine(int, int, int, int) override {}
        void DrawRect(int, int, int, int) override {}
        void FillRect(int, int, int, int) override {}
    } g;
    TestView view;
    List.AddRow("");
    List.Attach(&view);
    EXPECT_FALSE(List.PaintCell(g, 0, 0, 0));
    List.CellTextPaint = [&](Graphics&, int64_t row, int, int, int) {
        List.SetCell(row, "drawn");
        return true;
    };
    EXPECT_TRUE(List.PaintCell(g, 0, 0, 0));
    EXPECT_EQ(List.Cell(0), "drawn");
    EXPECT_TRUE(view.Notices.empty());

    List.CellTextPaint = [](Graphics&, int64_t, int, int, int) -> bool {
        throw KeyNotFoundException();
    };
    EXPECT_THROW(List.PaintCell(g, 0, 0, 0), KeyNotFoundException);
    List.SetCell(0, "assigned");
    EXPECT_EQ(view.Take(Aspect::Cells), 1u);
}

}  // namespace
}  // namespace sorbel

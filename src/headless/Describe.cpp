#include "headless/Describe.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "ui/toolkit/Canvas.h"
#include "ui/toolkit/Label.h"
#include "ui/toolkit/PopupMenu.h"
#include "ui/toolkit/PushButton.h"
#include "ui/toolkit/TextEditor.h"

namespace sorbel::headless {

namespace {

/// Each run of one colour with its part of the text.
Json DescribeRuns(const TextArea& area) {
    Json runs = Json::array();
    StringView rest = area.Text();
    for (const TextArea::Run& run : area.Runs()) {
        runs.push_back({{"text", rest.substr(0, run.Length)}, {"color", ColorText(run.Color)}});
        rest.remove_prefix(std::min(run.Length, rest.size()));
    }
    return runs;
}

/// Adds what only controls of one kind have.
class KindDescriber : public ControlVisitor {
  public:
    explicit KindDescriber(Json& reply) : mReply(reply) {}

    void Visit(Canvas&) override {}
    void Visit(Listbox&) override {}
    void Visit(Label& control) override {
        mReply["text"] = control.Text();
        mReply["color"] = ColorText(control.TextColor());
        mReply["italic"] = control.Italic();
    }
    void Visit(PopupMenu& control) override {
        mReply["text"] = control.ListIndex() < 0 ? String() : control.RowText(control.ListIndex());
    }
    void Visit(PushButton& control) override { mReply["text"] = control.Caption; }
    void Visit(TextField& control) override { mReply["text"] = control.Text(); }
    void Visit(TextArea& control) override {
        mReply["text"] = control.Text();
        mReply["color"] = ColorText(control.TextColor());
        mReply["runs"] = DescribeRuns(control);
    }

  private:
    Json& mReply;
};

}  // namespace

String ColorText(Color color) {
    std::array<char, 10> text{};
    const unsigned rgb = color.Value & 0xFFFFFF;
    if (color.Alpha() == 0)
        std::snprintf(text.data(), text.size(), "#%06X", rgb);
    else
        std::snprintf(text.data(), text.size(), "#%06X%02X", rgb, color.Alpha());
    return text.data();
}

Json DescribeControl(Control& control) {
    Json reply = Json::object();
    KindDescriber kind(reply);
    control.Accept(kind);
    reply["enabled"] = control.Enabled();
    reply["visible"] = control.Visible();
    reply["left"] = control.Left();
    reply["top"] = control.Top();
    reply["width"] = control.Width();
    reply["height"] = control.Height();
    reply["focus"] = control.HasFocus();
    return reply;
}

Json DescribeItems(const MenuItem& menu) {
    Json items = Json::array();
    for (size_t index = 0; index < menu.Count(); ++index) {
        const MenuItem& item = menu.Item(index);
        if (!item.Visible) continue;
        items.push_back({{"name", item.Name()},
                         {"text", item.Text()},
                         {"shortcut", item.Shortcut},
                         {"enabled", item.Enabled},
                         {"checked", item.Checked},
                         {"items", DescribeItems(item)}});
    }
    return items;
}

Json DescribeRow(const Listbox& list, int64_t row) {
    const std::shared_ptr<const Picture> picture = list.RowPicture(row);
    Json reply = Json::object();
    reply["text"] = list.Cell(row);
    reply["platform"] = list.NumberTag(row);
    reply["identifier"] = list.TextTag(row).View();
    reply["folder"] = list.IsFolder(row);
    reply["expanded"] = list.Expanded(row);
    reply["depth"] = list.Depth(row);
    reply["picture"] = picture ? Json(picture->IconName) : Json();
    return reply;
}

Json DescribeEntries(const LocalizedStringSet& set) {
    Json entries = Json::array();
    for (const auto& [identifier, platforms] : set.Entries) {
        Json values = Json::array();
        for (int64_t index = 0; index < platforms.Count(); ++index) {
            const auto& [platform, value] = platforms.ItemAt(index);
            values.push_back(Json::array({platform, value.Original.View(), value.Localized.View()}));
        }
        entries.push_back(Json::array({identifier.View(), std::move(values)}));
    }
    return entries;
}

Json DescribeDate(const LocalizedStringSet& set) {
    return set.DateGenerated ? Json(set.DateGenerated->SQLDateTime()) : Json();
}

}  // namespace sorbel::headless

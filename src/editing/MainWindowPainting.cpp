#include <cmath>

#include "editing/MainWindow.h"
#include "editing/PlatformIcons.h"
#include "editing/rules/RowText.h"
#include "ui/PlatformColors.h"
#include "ui/toolkit/Application.h"

namespace sorbel {

namespace {

constexpr StringView Ellipsis = "...";

/// Each platform has its own column, so that the icons line up from row to row.
constexpr struct {
    int64_t Platform;
    int FromRight;
} IconColumns[] = {{PlatformMacOS, 56}, {PlatformWindows, 40}, {PlatformLinux, 24}};
constexpr int IconWidth = 16;

int64_t WholeWidth(const Graphics& g, StringView text) {
    return static_cast<int64_t>(g.StringWidth(text));
}

}  // namespace

bool MainWindow::ListBox1_CellTextPaint(Graphics& g, int64_t row) {
    const SharedText identifier = ListBox1.TextTag(row);
    const int64_t platform = ListBox1.NumberTag(row);
    const PlatformTable* entry = StringSet->Entries.Find(identifier);
    const RowState state = StateOfRow(entry, identifier, platform);
    if (state.Kind == RowKind::Unknown) return true;
    ListBox1.SetCell(row, state.Text);
    if (state.Kind == RowKind::NoPlatformValue) {
        g.SetForeColor(DisabledTextColor());  // grey in a selected row too
        g.Bold = false;
        return false;
    }
    if (platform == PlatformAny) DrawPlatformIcons(g, *entry);
    if (state.Kind == RowKind::Translated) g.SetForeColor(SystemTextColor());
    if (state.Kind == RowKind::Untranslated) {
        g.SetForeColor(DisabledTextColor());
        g.Bold = true;
    }
    if (state.Kind == RowKind::Nameless) g.Italic = true;
    if (ListBox1.Selected(row)) g.SetForeColor(Platform::Colors::DefaultHighlightTextColor());
    return false;
}

void MainWindow::DrawPlatformIcons(Graphics& g, const PlatformTable& entry) const {
    for (const auto& column : IconColumns) {
        const EntryValue* value = entry.Find(column.Platform);
        if (!value) continue;
        const Color tint =
            value->IsTranslated() ? SystemTextColor() : Platform::Colors::PrimaryLabelColorDisabled();
        g.DrawPicture(*PlatformIcon(column.Platform, tint), g.Width() - column.FromRight, 0);
    }
}

String MainWindow::ListBox1_DescribeRow(int64_t row) const {
    const int64_t platform = ListBox1.NumberTag(row);
    const StringView identifier = ListBox1.TextTag(row);
    const RowState state = StateOfRow(StringSet->Entries.Find(identifier), identifier, platform);
    String text = state.Text;
    if (platform != PlatformAny) text += ", " + String(PlatformText(platform));
    if (state.Kind == RowKind::Untranslated || state.Kind == RowKind::Nameless) text += ", not translated";
    if (state.Kind == RowKind::Translated) text += ", translated";
    return text;
}

String MainWindow::ListBox1_PictureTip(int64_t row) const {
    return String(PlatformText(ListBox1.NumberTag(row)));
}

/// What the icon there stands for.
String MainWindow::ListBox1_CellTip(int64_t row, int x, int width) const {
    const PlatformTable* entry = StringSet->Entries.Find(ListBox1.TextTag(row));
    if (!entry || ListBox1.NumberTag(row) != PlatformAny) return {};
    for (const auto& column : IconColumns) {
        const int fromLeft = x - (width - column.FromRight);
        if (fromLeft < 0 || fromLeft >= IconWidth) continue;
        const EntryValue* value = entry->Find(column.Platform);
        if (!value) return {};
        return String(PlatformText(column.Platform)) +
               (value->Localized.Empty() ? ": not translated" : ": translated");
    }
    return {};
}

String MainWindow::TruncateString(Graphics& g, StringView text, int64_t maxWidth) {
    bool truncated = false;
    return TruncateString(g, text, maxWidth, truncated);
}

String MainWindow::TruncateString(Graphics& g, StringView text, int64_t maxWidth, bool& truncated) {
    truncated = false;
    if (WholeWidth(g, text) <= maxWidth) return String(text);
    const int64_t room = maxWidth - WholeWidth(g, Ellipsis);
    if (room <= 0) return {};
    const int64_t unit = WholeWidth(g, "x");
    int64_t count = unit > 0 ? room / unit : 0;
    if (WholeWidth(g, sorbel::Left(text, count)) < room) {
        // Growing may fill the room exactly; shrinking stays below it.
        while (count < LenB(text) && WholeWidth(g, sorbel::Left(text, count + 1)) <= room)
            ++count;
    } else {
        do
            --count;
        while (count > 0 && WholeWidth(g, sorbel::Left(text, count)) >= room);
    }
    truncated = true;
    return sorbel::Left(text, count) + String(Ellipsis);
}

}  // namespace sorbel

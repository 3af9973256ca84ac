#include <algorithm>

#include "editing/MainWindow.h"
#include "headless/Describe.h"
#include "headless/Operations.h"
#include "headless/RecordingGraphics.h"
#include "scripting/Scripting.h"

namespace sorbel::headless {

namespace {

MainWindow& Document(const Session& session) {
    for (int64_t index = 0; index < session.App->WindowCount(); ++index)
        if (auto* document = dynamic_cast<MainWindow*>(&session.App->WindowAt(index))) return *document;
    throw RequestError("no document window is open");
}

// --- The list ---

struct RowRange {
    int64_t From, End;
};

/// The rows from "from" on, "count" of them, as far as there are so many.
RowRange RequestedRows(const Request& request, const Listbox& list) {
    const int64_t from = std::min(request.Number("from", 0, INT64_MAX, 0), list.ListCount());
    const int64_t count = std::min(request.Number("count", 0, INT64_MAX, INT64_MAX), list.ListCount() - from);
    return {from, from + count};
}

void AddRows(const Request& request, const Listbox& list, Json& reply) {
    Json rows = Json::array();
    const auto [from, end] = RequestedRows(request, list);
    for (int64_t row = from; row < end; ++row)
        rows.push_back(DescribeRow(list, row));
    reply["rows"] = std::move(rows);
    reply["index"] = list.ListIndex();
    reply["scroll"] = list.ScrollPosition();
    reply["total"] = list.ListCount();
}

void Rows(Session& session, const Request& request, Json& reply) {
    AddRows(request, Document(session).ListBox1, reply);
}

Json PaintRow(Listbox& list, int64_t row, int width) {
    RecordingGraphics g(width);
    Json cell = Json::object();
    cell["drawn"] = !list.PaintCell(g, row, 0, 0);
    cell["text"] = list.Cell(row);
    cell["color"] = g.ForeColorSet ? Json(ColorText(g.ForeColor)) : Json();
    cell["bold"] = g.Bold;
    cell["italic"] = g.Italic;
    cell["icons"] = g.Icons();
    return cell;
}

void Paint(Session& session, const Request& request, Json& reply) {
    constexpr int DesignWidth = 340;
    Listbox& list = Document(session).ListBox1;
    const int width = request.Has("width") ? request.Points("width") : DesignWidth;
    Json cells = Json::array();
    const RowRange range = RequestedRows(request, list);
    session.App->Perform([&] {
        for (int64_t row = range.From; row < range.End; ++row)
            cells.push_back(PaintRow(list, row, width));
    });
    reply["cells"] = std::move(cells);
    AddRows(request, list, reply);
}

int64_t RowField(const Request& request, const Listbox& list) {
    return request.Number("row", -1, list.ListCount() - 1);
}

void Click(Session& session, const Request& request, Json&) {
    Listbox& list = Document(session).ListBox1;
    list.UserClick(RowField(request, list), 0, 0);
}

void Select(Session& session, const Request& request, Json&) {
    Listbox& list = Document(session).ListBox1;
    list.UserSelect(RowField(request, list));
}

void Expand(Session& session, const Request& request, Json&) {
    Listbox& list = Document(session).ListBox1;
    list.UserExpand(RowField(request, list), true);
}

void Collapse(Session& session, const Request& request, Json&) {
    Listbox& list = Document(session).ListBox1;
    list.UserExpand(RowField(request, list), false);
}

void Scroll(Session& session, const Request& request, Json&) {
    Listbox& list = Document(session).ListBox1;
    list.UserScroll(RowField(request, list));
}

// --- The other controls ---

void Type(Session& session, const Request& request, Json& reply) {
    TextArea& field = Document(session).LocalizedValueField;
    const String text = request.Text("text");
    reply["enabled"] = field.Enabled();
    field.UserSetText(text);
}

void Search(Session& session, const Request& request, Json&) {
    Document(session).SearchField.UserSetText(request.Text("text"));
}

void Scope(Session& session, const Request& request, Json& reply) {
    OptionsButton& button = Document(session).SearchOptionsMenu;
    const std::optional<String> item = request.TextOrNull("item");
    session.Desktop.SetPopUpChoice(item);
    if (button.UserMouseDown(button.Width() / 2, button.Height() / 2))
        button.UserMouseUp(button.Width() / 2, button.Height() / 2);
    session.Desktop.SetPopUpChoice(std::nullopt);
    const auto popUp = session.Desktop.TakePopUp();
    if (!popUp) throw RequestError("no menu popped up");
    reply["items"] = popUp->Items;
    reply["x"] = popUp->X;
    reply["y"] = popUp->Y;
    for (const Json& shown : popUp->Items)
        if (item == shown["text"].get<String>()) return;
    if (item) throw RequestError("the menu has no item \"" + *item + "\"");
}

void Versions(Session& session, const Request&, Json& reply) {
    const PopupMenu& filter = Document(session).HistoryFilter;
    Json items = Json::array();
    for (int64_t row = 0; row < filter.ListCount(); ++row)
        items.push_back(filter.RowText(row));
    reply["items"] = std::move(items);
    reply["index"] = filter.ListIndex();
    reply["enabled"] = filter.Enabled();
}

void Version(Session& session, const Request& request, Json&) {
    PopupMenu& filter = Document(session).HistoryFilter;
    filter.UserChoose(request.Number("index", 0, filter.ListCount() - 1));
}

void Drag(Session& session, const Request& request, Json&) {
    constexpr int Grip = 2;  // well inside a splitter of any size
    const int dx = request.Points("dx");
    const int dy = request.Points("dy");
    auto* splitter = dynamic_cast<SimpleSplitter*>(&FindControl(Document(session), request.Text("control")));
    if (!splitter) throw RequestError("the control is no splitter");
    if (!splitter->UserMouseDown(Grip, Grip)) return;
    splitter->UserMouseDrag(Grip + dx, Grip + dy);
    splitter->UserMouseUp(Grip + dx, Grip + dy);
}

void Resize(Session& session, const Request& request, Json&) {
    Document(session).UserResize({request.Points("width"), request.Points("height")});
}

void Accelerator(Session& session, const Request& request, Json&) {
    auto* label = dynamic_cast<Label*>(&FindControl(Document(session), request.Text("control")));
    if (!label) throw RequestError("the control is no label");
    label->UserAccelerator();
}

// --- The document ---

Json DescribeHistory(const LocalizedStringSet& set) {
    Json history = Json::array();
    for (const auto& version : set.History)
        history.push_back({{"date", DescribeDate(*version)}, {"entries", DescribeEntries(*version)}});
    return history;
}

void AddUndoState(const UndoManager& undo, Json& reply) {
    Json descriptions = Json::array();
    for (const auto& action : undo.UndoStack())
        descriptions.push_back(action->Description());
    reply["undo"] = undo.UndoStack().size();
    reply["redo"] = undo.RedoStack().size();
    reply["savePoint"] = undo.LastSavePoint();
    reply["descriptions"] = std::move(descriptions);
}

void DescribeDocument(Session& session, const Request&, Json& reply) {
    const MainWindow& window = Document(session);
    const LocalizedStringSet& set = *window.StringSet;
    reply["language"] = set.Language;
    reply["date"] = DescribeDate(set);
    reply["fileVersion"] = set.FileVersion;
    reply["toolVersion"] = set.NorvaneVersion;
    reply["application"] = set.EditedApplication ? Json(set.EditedApplication->NativePath()) : Json();
    reply["entries"] = DescribeEntries(set);
    reply["history"] = DescribeHistory(set);
    reply["dirty"] = window.IsDirty;
    reply["internalChange"] = window.IsInternalChange;
    AddUndoState(*window.undoManager, reply);
}

void Run(Session& session, const Request& request, Json&) {
    const String source = request.Text("source");
    std::optional<int64_t> stopAfter;
    if (request.Has("stopAfter")) stopAfter = request.Number("stopAfter", 0, INT64_MAX);
    session.App->Perform([&] { Scripting::RunScript(*session.App, source, stopAfter); });
}

}  // namespace

OperationTable DocumentOperations() {
    static constexpr std::pair<StringView, Operation> Table[] = {
        {"rows", Rows},
        {"paint", Paint},
        {"click", Click},
        {"select", Select},
        {"expand", Expand},
        {"collapse", Collapse},
        {"scroll", Scroll},
        {"type", Type},
        {"search", Search},
        {"scope", Scope},
        {"versions", Versions},
        {"version", Version},
        {"drag", Drag},
        {"resize", Resize},
        {"accelerator", Accelerator},
        {"document", DescribeDocument},
        {"run", Run},
    };
    return Table;
}

}  // namespace sorbel::headless

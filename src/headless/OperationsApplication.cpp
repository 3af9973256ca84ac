#include "headless/Describe.h"
#include "headless/Operations.h"
#include "shell/Start.h"

namespace sorbel::headless {

namespace {

void Start(Session& session, const Request& request, Json&) {
    if (session.App) throw RequestError("the program has been started already");
    std::vector<std::shared_ptr<FolderItem>> files;
    for (const String& path : request.Texts("files"))
        files.push_back(std::make_shared<FolderItem>(path));
    session.App = MakeApplication(session.Desktop);
    session.App->Start(files);
}

void Open(Session& session, const Request& request, Json&) {
    session.App->OpenDocument(std::make_shared<FolderItem>(request.Text("path")));
}

void Reopen(Session& session, const Request&, Json& reply) {
    reply["handled"] = session.App->Reopen();
}

void Appearance(Session& session, const Request&, Json&) {
    session.App->AppearanceChanged();
}

void Quit(Session& session, const Request&, Json& reply) {
    reply["ended"] = session.App->Quit();
}

void Menus(Session& session, const Request&, Json& reply) {
    session.App->Perform([&] { session.App->EnableMenuItems(); });
    reply["menus"] = DescribeItems(*session.App->MenuBar);
}

/// The items of the Scripts menu have captions only, and are those of the folder as it stands.
MenuItem* FindScript(Session& session, StringView caption) {
    session.App->Perform([&] { session.App->EnableMenuItems(); });
    MenuItem* menu = session.App->MenuBar->FindByName("ScriptsMenu");
    for (size_t index = 0; menu && index < menu->Count(); ++index)
        if (menu->Item(index).Text() == caption) return &menu->Item(index);
    return nullptr;
}

void Menu(Session& session, const Request& request, Json& reply) {
    const bool script = request.Has("script");
    const String name = request.Text(script ? "script" : "name");
    // Nameless items are separate things that share no name.
    MenuItem* item = script         ? FindScript(session, name)
                     : name.empty() ? nullptr
                                    : session.App->MenuBar->FindByName(name);
    if (!item) throw RequestError("there is no menu item \"" + name + "\"");
    const Application::Chosen chosen = session.App->Choose(*item);
    reply["enabled"] = chosen.Enabled;
    if (chosen.Enabled) reply["handled"] = chosen.Handled;
}

void Tick(Session& session, const Request& request, Json& reply) {
    constexpr int64_t LongestWait = int64_t{1} << 40;
    session.Time.Advance(request.Number("n", 0, LongestWait));
    reply["ticks"] = session.Time.Ticks();
}

void Answer(Session& session, const Request& request, Json& reply) {
    if (request.Has("button") && !session.Desktop.QueueButton(request.Text("button")))
        throw RequestError("there is no button of that name");
    if (!request.Has("button")) {
        const std::optional<String> path = request.TextOrNull("file");
        session.Desktop.QueueFile(path ? std::make_shared<FolderItem>(*path) : nullptr);
    }
    reply["queued"] = session.Desktop.Queued();
}

}  // namespace

OperationTable ApplicationOperations() {
    static constexpr std::pair<StringView, Operation> Table[] = {
        {"start", Start}, {"open", Open}, {"reopen", Reopen}, {"appearance", Appearance}, {"quit", Quit},
        {"menus", Menus}, {"menu", Menu}, {"tick", Tick},     {"answer", Answer},
    };
    return Table;
}

}  // namespace sorbel::headless

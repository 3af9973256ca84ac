#include "scripting/Scripting.h"

#include <span>

#include "platform/FileContents.h"
#include "platform/SpecialFolder.h"
#include "platform/TextStreams.h"
#include "scripting/EscapeWatch.h"
#include "scripting/Samples.h"
#include "scripting/ScriptContext.h"
#include "scripting/ScriptEngine.h"
#include "ui/toolkit/Application.h"

namespace sorbel::Scripting {

namespace {

/// A folder in another, made if it is missing; null if it cannot be named.
std::shared_ptr<FolderItem> ChildFolder(const FolderItem& folder, StringView name) {
    if (std::shared_ptr<FolderItem> child = folder.ExistingChild(name)) return child;
    std::shared_ptr<FolderItem> child = folder.Child(name, true);
    if (child) child->CreateAsFolder();
    return child;
}

constexpr StringView WayToScripts[] = {"Kestrum", "Sorbel", "Scripts"};  // from the user's documents
constexpr StringView SamplesName = "Samples";
constexpr StringView SampleName = "Sample.sorbel_script";
constexpr StringView LoopSampleName = "Loop Sample.sorbel_script";

/// Makes a folder and what is missing on the way to it. What cannot be made is missing afterwards.
void MakeWhole(const FolderItem& folder) {
    if (folder.Exists()) return;
    if (const std::shared_ptr<FolderItem> parent = folder.Parent()) MakeWhole(*parent);
    folder.CreateAsFolder();
}

/// Folders below `base`, made where they are missing; null if one cannot be named.
std::shared_ptr<FolderItem> GetSubFolder(const FolderItem& base, std::span<const StringView> parts) {
    const std::shared_ptr<FolderItem> parent = base.Parent();
    std::shared_ptr<FolderItem> folder = parent ? parent->Child(base.Name(), true) : nullptr;
    for (const StringView part : parts) {
        if (!folder) return nullptr;
        folder = ChildFolder(*folder, part);
    }
    return folder;
}

/// A sample that the user has deleted comes back; one that was edited is left alone.
void WriteSample(const FolderItem& folder, StringView name, StringView text) {
    if (folder.ExistingChild(name)) return;
    const std::shared_ptr<FolderItem> f = folder.Child(name, true);
    if (f) WriteContents(*f, String(text) + String(EndOfLine));
}

void WriteSamples(const FolderItem& scripts) {
    try {
        const std::shared_ptr<FolderItem> samples = ChildFolder(scripts, SamplesName);
        if (!samples) return;
        WriteSample(*samples, SampleName, Sample);
        WriteSample(*samples, LoopSampleName, LoopSample);
    } catch (const IOException&) {
        return;  // the scripts work without their samples
    }
}

struct Listing {
    String Folder;  // its path
    std::vector<String> Names;
};

/// The scripts folder if it has its samples, as nearly always. That costs a listing and two questions, where
/// making what is missing asks one for every step of the way. Links on the way stay in the path.
std::optional<Listing> ListComplete() {
    const std::shared_ptr<FolderItem> documents = SpecialFolder::Documents();
    if (!documents) return std::nullopt;
    String path = documents->NativePath();
    for (const StringView part : WayToScripts)
        path.append("/").append(part);
    const FolderItem scripts(path);
    const String samples = scripts.NativePath() + "/" + String(SamplesName) + "/";
    for (const StringView name : {SampleName, LoopSampleName})
        if (!FolderItem(samples + String(name)).Exists()) return std::nullopt;
    return Listing{scripts.NativePath(), scripts.ItemNames()};
}

std::optional<Listing> MakeAndList() {
    const std::shared_ptr<FolderItem> folder = ScriptsFolder();
    if (!folder || !folder->Exists()) return std::nullopt;
    return Listing{folder->NativePath(), folder->ItemNames()};
}

/// Keys for the first eighteen scripts. The second row of digits begins with 0.
String ShortcutOf(size_t counter) {
    if (counter <= 9) return std::to_string(counter);
    if (counter <= 18) return "SHIFT+" + std::to_string(counter - 10);
    return {};
}

/// What follows the last dot, or the whole name, is the extension of scripts.
bool IsScript(StringView name) {
    return Equal(name.substr(name.rfind('.') + 1), "sorbel_script");
}

bool IsItemOf(const MenuItem& item, StringView path) {
    const auto* script = dynamic_cast<const ScriptMenuItem*>(&item);
    return script && script->Tag() && script->Tag()->NativePath() == path;
}

void RemoveFrom(MenuItem& menu, size_t index) {
    while (menu.Count() > index)
        menu.Remove(menu.Count() - 1);
}

/// Leaves just the items of the folder's scripts. Place and file make an item what it is, so those that the
/// menu begins with already stay, and mostly that is all of them.
void ShowScripts(MenuItem& menu, Application& app, const Listing& scripts) {
    size_t shown = 0;
    for (const String& name : scripts.Names) {
        if (!IsScript(name)) continue;
        const String path = scripts.Folder + "/" + name;
        if (shown == menu.Count() || !IsItemOf(menu.Item(shown), path)) {
            RemoveFrom(menu, shown);
            menu.Append(std::make_unique<ScriptMenuItem>(app, NthField(name, ".", 1), ShortcutOf(shown + 1),
                                                         std::make_shared<FolderItem>(path), true));
        }
        ++shown;
    }
    RemoveFrom(menu, shown);
}

/// Keeps the engine of the latest run.
std::shared_ptr<ScriptEngine> mScriptingEngine;

}  // namespace

std::shared_ptr<FolderItem> ScriptsFolder() {
    const std::shared_ptr<FolderItem> documents = SpecialFolder::Documents();
    if (!documents) return nullptr;
    MakeWhole(*documents);
    std::shared_ptr<FolderItem> scripts = GetSubFolder(*documents, WayToScripts);
    if (scripts) WriteSamples(*scripts);
    return scripts;
}

void RunScript(Application& app, StringView source, std::optional<int64_t> stopAfter) {
    const auto engine = std::make_shared<ScriptEngine>(app);
    mScriptingEngine = engine;
    ScriptContext context(app);
    EscapeWatch user(app.Desktop());
    script::JumpLimit limit(stopAfter.value_or(0));
    engine->Context = &context;
    engine->Watch = stopAfter ? static_cast<script::Watch*>(&limit) : &user;
    engine->Source = source;
    engine->Run();
    engine->Context = nullptr;
    engine->Watch = nullptr;
}

bool RebuildMenu(MenuItem& scriptsMenu, Application& app) {
    std::optional<Listing> scripts = ListComplete();
    if (!scripts) scripts = MakeAndList();
    if (scripts) ShowScripts(scriptsMenu, app, *scripts);
    if (scriptsMenu.Count() > 0) scriptsMenu.Append(std::make_unique<MenuItem>("", "-"));
    scriptsMenu.Append(std::make_unique<ScriptMenuItem>(app, "Show Scripts Folder", "", nullptr, true));
    return scripts.has_value();
}

ScriptMenuItem::ScriptMenuItem(Application& app, String caption, StringView shortcut,
                               std::shared_ptr<FolderItem> tag, bool enabled)
    : MenuItem({}, std::move(caption)), mApp(app), mTag(std::move(tag)) {
    if (!Trim(shortcut).empty()) Shortcut = "CMD + " + String(shortcut);
    Enabled = enabled;
}

bool ScriptMenuItem::Event_Action() {
    if (!mTag) return ShowScriptsFolder();
    try {
        TextInputStream s = TextInputStream::Open(*mTag);
        RunScript(mApp, s.ReadAll());
        return true;
    } catch (const IOException&) {
        mApp.Desktop().MsgBox("Could not open the script file named \"" + mTag->Name() + "\".");
        return false;
    }
}

bool ScriptMenuItem::ShowScriptsFolder() {
    const std::shared_ptr<FolderItem> folder = ScriptsFolder();
    if (!folder) throw NilObjectException("There is no folder for scripts.");
    mApp.Desktop().Launch(*folder);
    return true;
}

}  // namespace sorbel::Scripting

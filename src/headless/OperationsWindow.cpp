#include "editing/MainWindow.h"
#include "headless/Describe.h"
#include "headless/Operations.h"
#include "ui/toolkit/Canvas.h"
#include "ui/toolkit/Label.h"
#include "ui/toolkit/PushButton.h"

namespace sorbel::headless {

namespace {

Window& FrontWindow(const Session& session) {
    Window* window = session.App->FrontWindow();
    if (!window) throw RequestError("no window is open");
    return *window;
}

Json DescribeWindow(const Window& window) {
    const auto* document = dynamic_cast<const MainWindow*>(&window);
    Json reply = Json::object();
    reply["class"] = window.ClassName();
    reply["title"] = window.Title();
    reply["path"] = document && document->mDiskFile ? Json(document->mDiskFile->NativePath()) : Json();
    reply["changed"] = document ? Json(document->ContentsChanged()) : Json();
    reply["left"] = window.Left();
    reply["top"] = window.Top();
    return reply;
}

void Windows(Session& session, const Request&, Json& reply) {
    Json windows = Json::array();
    for (int64_t index = 0; index < session.App->WindowCount(); ++index)
        windows.push_back(DescribeWindow(session.App->WindowAt(index)));
    reply["windows"] = std::move(windows);
}

void Activate(Session& session, const Request& request, Json&) {
    const int64_t index = request.Number("index", 0, session.App->WindowCount() - 1);
    session.App->BringToFront(session.App->WindowAt(index));
}

void Close(Session& session, const Request&, Json& reply) {
    reply["closed"] = FrontWindow(session).UserClose();
}

void Key(Session& session, const Request& request, Json&) {
    FrontWindow(session).UserKeyDown(request.Text("text"));
}

void Panes(Session& session, const Request&, Json& reply) {
    Json controls = Json::object();
    for (Control* control : FrontWindow(session).Controls())
        controls[control->Name()] = DescribeControl(*control);
    reply["controls"] = std::move(controls);
}

/// A press of a button, or a click into the middle of a control that takes one.
class Presser : public ControlVisitor {
  public:
    void Visit(PushButton& control) override { control.UserPress(); }
    void Visit(Canvas& control) override {
        const int x = control.Width() / 2;
        const int y = control.Height() / 2;
        if (control.UserMouseDown(x, y)) control.UserMouseUp(x, y);
    }
    void Visit(Label& control) override {
        control.Owner().UserMouseDown(control.Left() + control.Width() / 2,
                                      control.Top() + control.Height() / 2);
    }
    void Visit(Listbox&) override { Refuse(); }
    void Visit(PopupMenu&) override { Refuse(); }
    void Visit(TextArea&) override { Refuse(); }
    void Visit(TextField&) override { Refuse(); }

  private:
    [[noreturn]] static void Refuse() { throw RequestError("the control is no button, label or canvas"); }
};

void Press(Session& session, const Request& request, Json&) {
    // The press may close the window; it has to outlive what it does.
    const std::shared_ptr<Window> window = FrontWindow(session).shared_from_this();
    Presser presser;
    FindControl(*window, request.Text("control")).Accept(presser);
}

}  // namespace

Control& FindControl(const Window& window, const String& name) {
    Control* control = window.FindControl(name);
    if (!control) throw RequestError("the window has no control \"" + name + "\"");
    return *control;
}

OperationTable WindowOperations() {
    static constexpr std::pair<StringView, Operation> Table[] = {
        {"windows", Windows}, {"activate", Activate}, {"close", Close},
        {"press", Press},     {"key", Key},           {"panes", Panes},
    };
    return Table;
}

}  // namespace sorbel::headless

#include "headless/Session.h"

#include "headless/Operations.h"
#include "headless/Request.h"

namespace sorbel::headless {

namespace {

/// Null if there is no such operation.
Operation Find(StringView name) {
    for (const OperationTable& table : {ApplicationOperations(), WindowOperations(), DocumentOperations()})
        for (const auto& [known, operation] : table)
            if (known == name) return operation;
    return nullptr;
}

}  // namespace

void Session::Perform(StringView line, Json& reply) {
    const Request request(line);
    const String name = request.Text("op");
    const Operation operation = Find(name);
    if (!operation) throw RequestError("there is no operation \"" + name + "\"");
    if (!App && name != "start" && name != "answer") throw RequestError("the first operation is \"start\"");
    operation(*this, request, reply);
}

String Session::Answer(StringView line) {
    Desktop.StartRecord();
    Json reply = {{"ok", true}};
    try {
        Perform(line, reply);
    } catch (const std::exception& failure) {
        reply = {{"ok", false}, {"error", failure.what()}};
    }
    Desktop.AddRecordTo(reply);
    const String unhandled = App ? App->TakeUnhandled() : String();
    if (!unhandled.empty()) reply["unhandled"] = unhandled;
    return ToJson(reply);
}

}  // namespace sorbel::headless

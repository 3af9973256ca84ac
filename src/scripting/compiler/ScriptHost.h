#pragma once

#include <span>
#include <variant>
#include <vector>

#include "platform/Color.h"
#include "platform/Text.h"

namespace sorbel::script {

enum class HostType { Nothing, Integer, Double, Boolean, Text, Color };

/// A value on its way between a script and its host. The alternatives are in the order of `HostType`.
using HostValue = std::variant<std::monostate, int64_t, double, bool, String, Color>;

struct HostParameter {
    String Name;
    HostType Type;
};

/// One thing that a script can name: something to call, the reading of a property or the assignment to it.
struct HostMember {
    enum class Form { Method, Get, Set } How;
    String Name;
    std::vector<HostParameter> Parameters;  // of Set: the one new value
    HostType Result = HostType::Nothing;
};

/// Thrown by a host's member to end the script: none of its code runs any more.
struct StopScript {};

/// The object whose methods and properties a script uses by their bare names. Names differ in more than
/// letter case, except for methods with different parameters.
class ScriptHost {
  public:
    virtual ~ScriptHost() = default;
    [[nodiscard]] virtual std::vector<HostMember> Members() const = 0;
    /// Calls the member at `index` of `Members()` with values of its parameters' types; gives a value of the
    /// type of its result. A RuntimeException becomes an exception of the script; see `StopScript`.
    virtual HostValue Call(size_t index, std::span<const HostValue> arguments) = 0;
};

}  // namespace sorbel::script

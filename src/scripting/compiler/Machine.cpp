#include "scripting/compiler/Machine.h"

#include <algorithm>
#include <new>

#include "platform/Exceptions.h"

namespace sorbel::script {

namespace {
// The fields of the class RuntimeException, in the order of its declaration.
constexpr uint32_t MessageField = 0;
constexpr uint32_t LineField = 2;

constexpr size_t LongestMessage = 10000;  // bytes that anybody is shown of what a script says

String Shown(StringView message) {
    if (message.size() <= LongestMessage) return String(message);
    size_t end = LongestMessage;
    while (end > 0 && (static_cast<unsigned char>(message[end]) & 0xC0) == 0x80)
        --end;
    return String(message.substr(0, end));
}
}  // namespace

Machine::Machine(const Program& program, const Types& types, ScriptHost* host, Console& console,
                 Footprint& room)
    : mProgram(program),
      mTypes(types),
      mHost(host),
      mConsole(console),
      mMemory(room),
      mStack(static_cast<Slot*>(std::calloc(StackSlots, sizeof(Slot)))),
      mFrames(static_cast<Frame*>(std::malloc((MostFrames + 1) * sizeof(Frame)))),
      mTop(mFrames.get()),
      mTexts(program.Texts.size()) {
    if (!mStack || !mFrames) throw std::bad_alloc();
    if (host) mHostMembers = host->Members();
    mMemory.SetDestroyer(this);
}

Machine::~Machine() {
    EndAll();
    for (Text* text : mTexts)
        mMemory.Release(text);
    for (Text* text : mCharacters)
        mMemory.Release(text);
    mMemory.FreeAll();
}

/// The time in which the script is watched.
class Machine::Watched {
  public:
    Watched(Machine& machine, Watch* watch) : mMachine(machine) {
        mMachine.mWatch = watch;
        if (watch) watch->Begin(mMachine.mAttention);
    }
    ~Watched() {
        if (mMachine.mWatch) mMachine.mWatch->End();
    }
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;

  private:
    Machine& mMachine;
};

std::optional<ScriptFailure> Machine::Run(Watch* watch) {
    const Watched watched(*this, watch);
    try {
        Enter(mProgram.Functions[0], mStack.get(), 0);
        Execute(mFrames.get());
    } catch (const Thrown& thrown) {
        Object* exception = thrown.Exception;
        ScriptFailure failure;
        failure.ClassName = exception->Class->T->Name;
        failure.Message = Shown(ViewOf(exception->Fields()[MessageField].T));
        failure.Line = exception->Fields()[LineField].I;
        mMemory.Release(exception);
        return failure;
    } catch (const Failure& failure) {
        return ScriptFailure{failure.ClassName, failure.Message, 1};
    } catch (const Stopped&) {
        if (!mFatal) mFatal = ScriptFailure{{}, "The script was stopped.", CurrentLine()};
        EndAll();
        return mFatal;
    }
    return {};
}

void Machine::AskWatch() const {
    if (mWatch->Stops()) throw Stopped{};
}

// Drops what a script leaves that did not come to its end.
void Machine::EndAll() {
    mMemory.SetDestroyer(nullptr);
    for (; mTop != mFrames.get(); --mTop) {
        ReleaseFrame(*mTop);
        for (const uint16_t reg : mTop->F->GivenBack)
            mMemory.Release(mTop->Base[reg].H);
    }
    mMemory.Release(std::exchange(mCaught, nullptr));
}

void Machine::Execute(const Frame* below) {
    struct Guard {
        explicit Guard(int& runs) : Runs(++runs) {}
        ~Guard() { --Runs; }
        int& Runs;
    } guard(mRuns);
    for (;;) {
        Object* exception = nullptr;
        try {
            Loop(below);
            return;
        } catch (const Failure& failure) {
            exception = MakeException(failure);
        } catch (const std::bad_alloc&) {
            EndForMemory();
        } catch (const Thrown& thrown) {
            exception = thrown.Exception;
        }
        if (!Unwind(exception, below)) throw Thrown{exception};
    }
}

void Machine::RefuseCall(const Function& function, Slot* base) {
    // What was passed on goes with the call that does not happen.
    for (const auto* list : {&function.References, &function.GivenBack})
        for (const uint16_t reg : *list)
            if (reg < function.Parameters) mMemory.Release(base[reg].H);
    throw Failure{"StackOverflowException", "Methods call each other too deeply."};
}

// Hands an exception to the nearest handler above `below`; methods on the way end.
bool Machine::Unwind(Object* exception, const Frame* below) {
    for (; mTop != below; --mTop) {
        const Function& function = *mTop->F;
        const auto at = static_cast<uint32_t>(mTop->Next - function.Code.data() - 1);
        const auto behind =
            std::upper_bound(function.Handlers.begin(), function.Handlers.end(), at,
                             [](uint32_t place, const Handler& handler) { return place < handler.Start; });
        if (behind != function.Handlers.begin() && at < behind[-1].End) {
            mTop->Next = function.Code.data() + behind[-1].Target;
            mCaught = exception;
            return true;
        }
        ReleaseFrame(*mTop);
        for (const uint16_t reg : function.GivenBack)
            mMemory.Release(std::exchange(mTop->Base[reg].H, nullptr));
    }
    return false;
}

int64_t Machine::CurrentLine() const {
    if (mTop == mFrames.get()) return 0;
    const Frame* frame = mTop;
    while (frame->F->InLibrary && frame - 1 != mFrames.get())
        --frame;
    const auto next = static_cast<size_t>(frame->Next - frame->F->Code.data());
    return next == 0 ? frame->F->Lines[0] : frame->F->Lines[next - 1];
}

Slot* Machine::FreeStack() const {
    if (mTop == mFrames.get()) return mStack.get();
    return mTop->Base + mTop->F->Registers + mTop->F->Window;
}

// The line stays that of the first time that the object is raised.
void Machine::RaiseObject(Object* exception) {
    Slot& line = exception->Fields()[LineField];
    if (line.I == 0) line.I = CurrentLine();
    throw Thrown{exception};
}

// No code of a script runs after that: it would need memory too.
void Machine::EndForMemory() {
    mFatal = ScriptFailure{OutOfMemory, OutOfMemoryMessage, CurrentLine()};
    throw Stopped{};
}

Object* Machine::MakeException(const Failure& failure) {
    if (failure.ClassName == OutOfMemory) EndForMemory();
    const auto found = mProgram.ExceptionClasses.find(Fold(failure.ClassName));
    const auto& base = mProgram.Classes[mProgram.ExceptionClasses.at("runtimeexception")];
    const ClassInfo* cls =
        found == mProgram.ExceptionClasses.end() ? &base : &mProgram.Classes[found->second];
    if (!cls->T->ComesFrom(base.T)) cls = &base;
    try {
        Object* exception = mMemory.NewObject(*cls);
        Give(exception->Fields()[MessageField], failure.Message);
        exception->Fields()[LineField].I = CurrentLine();
        return exception;
    } catch (const Failure&) {
        EndForMemory();
    }
}

// Runs when the last reference to an object has gone: the destructor of its class, then that of the
// superclass.
void Machine::Destroy(Object& object) {
    if (mRuns > MostRuns) return;
    for (const ClassInfo* cls = object.Class; cls && cls->Destructor >= 0; cls = cls->Base) {
        const bool inherited = cls->Base && cls->Base->Destructor == cls->Destructor;
        if (!inherited) Destroy(object, mProgram.Functions[static_cast<size_t>(cls->Destructor)]);
    }
}

// An exception that leaves a destructor ends it alone: whoever let the object go did nothing wrong.
void Machine::Destroy(Object& object, const Function& function) {
    Slot* base = FreeStack();
    ++object.References;
    base->O = &object;
    const Frame* below = mTop;
    const Slot result = mResult;
    Object* caught = std::exchange(mCaught, nullptr);
    try {
        Enter(function, base, 0);
        if (mAttention.IsAsked()) AskWatch();
        Execute(below);
    } catch (const Thrown& thrown) {
        mMemory.Release(thrown.Exception);
    } catch (const Failure&) {
        // No room for the call.
    }
    mCaught = caught;
    mResult = result;
}

Slot Machine::Invoke(const Delegate& delegate, std::initializer_list<Slot> values, bool references) {
    if (mRuns > MostRuns) throw Failure{"StackOverflowException", "Methods call each other too deeply."};
    if (delegate.HasTarget && !delegate.Target) FailNil();
    Slot* base = FreeStack();
    Slot* place = base;
    if (delegate.HasTarget) {
        Memory::Retain(delegate.Target);
        (place++)->O = delegate.Target;
    }
    for (const Slot value : values) {
        if (references) Memory::Retain(value.H);
        *place++ = value;
    }
    const Frame* below = mTop;
    Enter(mProgram.Functions[delegate.Function], base, 0);
    if (mAttention.IsAsked()) AskWatch();
    Execute(below);
    return mResult;
}

void Machine::Give(Slot& to, StringView text) {
    to.T = text.empty() ? nullptr : mMemory.NewText(text);
}

void Machine::GiveCharacter(Slot& to, char ascii) {
    Text*& text = mCharacters[static_cast<unsigned char>(ascii) & 0x7F];
    if (!text) {
        text = mMemory.NewText(StringView(&ascii, 1));
        CountCharacters(text);
    }
    Memory::Retain(text);
    to.T = text;
}

Text* Machine::ProgramText(uint32_t index) {
    Text*& text = mTexts[index];
    if (!text) {
        text = mMemory.NewText(mProgram.Texts[index].View());
        CountCharacters(text);
    }
    return text;
}

Array* Machine::NewTexts(int64_t count) {
    const Type* type = const_cast<Types&>(mTypes).ArrayOf(mTypes.Of(Kind::String), 1);
    Array* array = mMemory.NewArray(type, ElementKind::Reference, 1, nullptr);
    ResizeArray(mMemory, *array, count);
    return array;
}

uint64_t Machine::Random() {
    mSeed ^= mSeed << 13;
    mSeed ^= mSeed >> 7;
    mSeed ^= mSeed << 17;
    return mSeed;
}

const Function& Machine::FunctionOf(const Object* object, int selector) const {
    return mProgram.Functions[object->Class->BySelector.at(selector)];
}

// --- The host ---

void Machine::CallHost(uint32_t index, Slot* arguments) {
    const HostMember& member = mHostMembers[index];
    std::vector<HostValue> values;
    for (size_t at = 0; at < member.Parameters.size(); ++at) {
        switch (member.Parameters[at].Type) {
            case HostType::Integer:
                values.emplace_back(arguments[at].I);
                break;
            case HostType::Double:
                values.emplace_back(arguments[at].D);
                break;
            case HostType::Boolean:
                values.emplace_back(arguments[at].I != 0);
                break;
            case HostType::Text:
                // The host may copy it several times, and give it back.
                mLargestGiven = std::max(mLargestGiven, ViewOf(arguments[at].T).size());
                mMemory.Expect(4 * ViewOf(arguments[at].T).size());
                values.emplace_back(String(ViewOf(arguments[at].T)));
                break;
            case HostType::Color:
                values.emplace_back(Color{static_cast<uint32_t>(arguments[at].U)});
                break;
            case HostType::Nothing:
                values.emplace_back();
                break;
        }
    }
    if (member.Result == HostType::Text) mMemory.Expect(2 * mLargestGiven);
    HostValue result;
    try {
        result = mHost->Call(index, values);
    } catch (const RuntimeException& exception) {
        throw Failure{exception.ClassName(), exception.Message()};
    } catch (const StopScript&) {
        throw Stopped{};
    }
    Slot& to = arguments[0];
    to.I = 0;
    if (result.index() != static_cast<size_t>(member.Result)) return;
    switch (member.Result) {
        case HostType::Integer:
            to.I = std::get<int64_t>(result);
            break;
        case HostType::Double:
            to.D = std::get<double>(result);
            break;
        case HostType::Boolean:
            to.I = std::get<bool>(result);
            break;
        case HostType::Text:
            Give(to, std::get<String>(result));
            break;
        case HostType::Color:
            to.U = std::get<Color>(result).Value;
            break;
        case HostType::Nothing:
            break;
    }
}

}  // namespace sorbel::script

#include <algorithm>

#include "scripting/compiler/Checker.h"

namespace sorbel::script {

std::vector<NativeParameter> ParametersOf(const NativeFunction& function) {
    std::vector<NativeParameter> list;
    bool optional = false;
    std::vector<String> words = Split(function.Parameters, " ");
    for (size_t at = 0; at < words.size() && !words[at].empty(); ++at) {
        if (words[at] == "|") {
            optional = true;
            continue;
        }
        list.push_back({words[at], words[at + 1][0], optional});
        ++at;
    }
    return list;
}

namespace {

Kind LetterKind(char letter) {
    switch (letter) {
        case 'I':
            return Kind::Int64;
        case 'U':
            return Kind::UInt64;
        case 'D':
            return Kind::Double;
        case 'B':
            return Kind::Boolean;
        case 'S':
        case 'W':
            return Kind::String;
        case 'C':
            return Kind::Color;
        case 'V':
            return Kind::Variant;
        default:
            return Kind::Void;
    }
}

}  // namespace

// The delegate that compares two elements of an array for the library.
const Type* Checker::ComparisonOf(const Type* array) {
    const Type*& type = mComparisons[array];
    if (type) return type;
    MethodDecl& decl = mTree.Methods.emplace_back();
    decl.Params.resize(2);
    for (Parameter& parameter : decl.Params)
        parameter.T = array->Element;
    Method& signature = mOut.Methods.emplace_back();
    signature.Decl = &decl;
    signature.Result = mInteger;
    Type* made = mTypes.Declare(Kind::Delegate, "");
    made->Signature = &signature;
    return type = made;
}

bool Checker::Compares(const Expr& argument, const Type* array) const {
    if (argument.Kind == ExprKind::AddressOf && !argument.T) return true;  // told later
    const Type* type = argument.T;
    if (!type || !type->Is(Kind::Delegate) || !array || !array->Is(Kind::Array)) return false;
    const std::vector<Parameter>& params = type->Signature->Decl->Params;
    const auto fits = [&](const Parameter& parameter) {
        return parameter.T == array->Element && !parameter.ByRef;
    };
    return params.size() == 2 && fits(params[0]) && fits(params[1]) && type->Signature->Result == mInteger;
}

int Checker::LetterCost(char letter, const Expr& argument, const Type* array) const {
    const Type* type = argument.T;
    if (letter == 'F') return Compares(argument, array) ? 0 : -1;
    if (letter == 'E') return array && array->Is(Kind::Array) ? Cost(argument, array->Element) : -1;
    if (!type) return -1;
    switch (letter) {
        case 'A':
            return type->Is(Kind::Array) ? 0 : -1;
        case 'T':
            return type->Is(Kind::Array) && type->Rank == 1 && type->Element->Is(Kind::String) ? 0 : -1;
        default:
            return Cost(argument, mTypes.Of(LetterKind(letter)));
    }
}

int Checker::NativeCost(const NativeFunction& function, const std::vector<Expr*>& arguments) const {
    const std::vector<NativeParameter> params = ParametersOf(function);
    if (arguments.size() > params.size()) return -1;
    int total = 0;
    for (size_t at = 0; at < params.size(); ++at) {
        if (at >= arguments.size()) {
            if (!params[at].Optional) return -1;
            continue;
        }
        const int cost = LetterCost(params[at].Letter, *arguments[at], arguments[0]->T);
        if (cost < 0) return -1;
        total += cost;
    }
    return total;
}

// Behind a dot stands only what the function is about: a text, an array, a number, a truth, a colour or a
// Variant.
bool Checker::IsAbout(char letter, const Type& type) const {
    switch (letter) {
        case 'A':
            return type.Is(Kind::Array);
        case 'T':
            return type.Is(Kind::Array) && type.Rank == 1 && type.Element->Is(Kind::String);
        case 'I':
        case 'U':
            return type.IsInteger();
        case 'D':
            return type.IsNumber();
        default:
            return type.Is(LetterKind(letter));
    }
}

// Tries the library; false if it has nothing of this name.
bool Checker::CallNative(Expr*& expr, StringView name, Expr* base) {
    std::vector<const NativeFunction*> functions = FindNative(name);
    if (base)
        std::erase_if(functions, [&](const NativeFunction* function) {
            return !function->AsMember || !IsAbout(ParametersOf(*function)[0].Letter, *base->T);
        });
    if (functions.empty()) return false;
    CheckArguments(expr->Args);
    if (base) expr->Args.insert(expr->Args.begin(), base);
    const NativeFunction* best = nullptr;
    int least = 0;
    for (const NativeFunction* function : functions) {
        const int cost = NativeCost(*function, expr->Args);
        if (cost < 0 || (best && cost >= least)) continue;
        best = function;
        least = cost;
    }
    if (!best) FailNative(*expr, functions);
    const bool others = StringView(best->Name) == "SortWith";
    const bool sorts = others || StringView(best->Name) == "Sort";
    if (sorts && std::any_of(expr->Args.begin(), expr->Args.end(), [](const Expr* argument) {
            return argument->T && argument->T->Is(Kind::Array) && argument->T->Rank > 1;
        }))
        Fail(Error::NotSortable, expr->Line);
    const bool plain = others || (sorts && expr->Args.size() == 1);
    if (plain && expr->Args[0]->T->Element->K > Kind::String) Fail(Error::NotSortable, expr->Line);
    expr->Kind = ExprKind::Native;
    FinishNative(*expr, *best);
    return true;
}

void Checker::FinishNative(Expr& expr, const NativeFunction& function) {
    const std::vector<NativeParameter> params = ParametersOf(function);
    const Type* array = expr.Args.empty() ? nullptr : expr.Args[0]->T;
    for (size_t at = 0; at < params.size(); ++at) {
        const char letter = params[at].Letter;
        const Type* type = letter == 'E' ? array->Element : mTypes.Of(LetterKind(letter));
        if (at >= expr.Args.size() && letter == 'W')
            expr.Args.push_back(MakeText(" ", expr.Line));
        else if (at >= expr.Args.size())
            expr.Args.push_back(MakeExpr(ExprKind::Missing, expr.Line, letter == 'I' ? nullptr : type));
        else if (letter == 'F' && !expr.Args[at]->T)
            Convert(expr.Args[at], ComparisonOf(array));
        else if (letter != 'A' && letter != 'T' && letter != 'F')
            Convert(expr.Args[at], type);
    }
    expr.Left = expr.Right = nullptr;
    expr.Function = &function;
    expr.Sym = nullptr;
    switch (*function.Result) {
        case '\0':
            expr.T = mVoid;
            break;
        case 'E':
            expr.T = array->Element;
            break;
        case 'A':
            expr.T = array;
            break;
        case 'T':
            expr.T = mTypes.ArrayOf(mString, 1);
            break;
        default:
            expr.T = mTypes.Of(LetterKind(*function.Result));
    }
}

void Checker::FailNative(const Expr& expr, const std::vector<const NativeFunction*>& functions) {
    const auto letterName = [&](char letter) {
        if (letter == 'A') return String("an array");
        if (letter == 'T') return String("String()");
        if (letter == 'F') return String("Delegate");
        if (letter == 'E')
            return expr.Args[0]->T->Is(Kind::Array) ? expr.Args[0]->T->Element->Name : "an element";
        return mTypes.Of(LetterKind(letter))->Name;
    };
    for (const Expr* argument : expr.Args)
        if (!argument->T) Fail(Error::TypeMismatch, expr.Line);
    const size_t given = expr.Args.size();
    size_t least = SIZE_MAX, most = 0;
    bool counts = false;
    for (const NativeFunction* function : functions) {
        size_t needed = 0;
        const std::vector<NativeParameter> params = ParametersOf(*function);
        for (const NativeParameter& param : params)
            needed += !param.Optional;
        counts |= given >= needed && given <= params.size();
        least = std::min(least, needed);
        most = std::max(most, params.size());
    }
    const std::vector<NativeParameter> params = ParametersOf(*functions[0]);
    if (!counts) {
        const String got = std::to_string(given);
        if (given > most)
            Fail(least == most ? Error::TooManyArguments : Error::TooManyArgumentsOptional, expr.Line,
                 {got, std::to_string(most)});
        if (least == most && given + 1 == least && functions.size() == 1 && least > 1)
            Fail(Error::MissingArgument, expr.Line,
                 {got, std::to_string(least), letterName(params[given].Letter), params[given].Name});
        Fail(least == most ? Error::TooFewArguments : Error::TooFewArgumentsOptional, expr.Line,
             {got, std::to_string(least)});
    }
    if (functions.size() > 1) Fail(Error::IncompatibleForOverloads, expr.Line);
    std::vector<const Type*> types;
    String wanted;
    size_t wrong = 0, place = 0;
    for (size_t at = 0; at < given; ++at) {
        types.push_back(expr.Args[at]->T);
        wanted += (at ? ", " : "") + letterName(params[at].Letter);
        if (LetterCost(params[at].Letter, *expr.Args[at], expr.Args[0]->T) >= 0) continue;
        ++wrong;
        place = at;
    }
    if (wrong != 1) Fail(Error::ArgumentTypes, expr.Line, {wanted, Describe(types)});
    Fail(Error::ArgumentType, expr.Line,
         {params[place].Name, letterName(params[place].Letter), types[place]->Name});
}

}  // namespace sorbel::script

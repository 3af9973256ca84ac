#include "scripting/compiler/Parser.h"

namespace sorbel::script {

// modifiers = { "Public" | "Protected" | "Private" | "Global" | "Shared" }
Parser::Modifiers Parser::ReadModifiers() {
    Modifiers modifiers;
    modifiers.Line = Line();
    for (;;) {
        static constexpr std::pair<Tok, Visibility> words[] = {{Tok::KPublic, Visibility::Public},
                                                               {Tok::KProtected, Visibility::Protected},
                                                               {Tok::KPrivate, Visibility::Private},
                                                               {Tok::KGlobal, Visibility::Global}};
        bool found = false;
        for (const auto& [token, visible] : words) {
            if (!At(token)) continue;
            if (modifiers.VisibleGiven) Fail(Error::Syntax, Line());
            Take();
            modifiers.Visible = visible;
            modifiers.VisibleGiven = found = true;
        }
        if (At(Tok::KShared) && !modifiers.Shared) {
            Take();
            modifiers.Shared = found = true;
        }
        if (!found) return modifiers;
    }
}

// declaration = [ attributes ] modifiers
//               ( method | type | delegate | event | using | "Const" consts | property )
// False if a statement stands here.
bool Parser::ReadDeclaration(TypeDecl& owner) {
    const bool top = &owner == &mTree.Top;
    const bool described = AtAttributes();
    while (AtAttributes())
        ReadAttributes();
    const Modifiers modifiers = ReadModifiers();
    const bool given = modifiers.VisibleGiven || modifiers.Shared || described;
    const auto type = [&](Kind kind) {
        if (modifiers.Shared) Fail(Error::Syntax, modifiers.Line);
        owner.Types.push_back(ReadType(kind, owner, modifiers.Visible));
        return true;
    };
    switch (Now().Kind) {
        case Tok::KSub:
        case Tok::KFunction: {
            MethodDecl* method = ReadMethod(false);
            method->Visible = modifiers.Visible;
            method->Shared = modifiers.Shared;
            owner.Methods.push_back(method);
            return true;
        }
        case Tok::KClass:
            return type(Kind::Class);
        case Tok::KInterface:
            return type(Kind::Interface);
        case Tok::KModule:
            return type(Kind::Module);
        case Tok::KStructure:
            return type(Kind::Structure);
        case Tok::KEnum:
            return type(Kind::Enum);
        case Tok::KDelegate:
            ReadDelegate(owner, modifiers.Visible);
            return true;
        case Tok::KEvent:
            ReadEvent(owner, modifiers);
            return true;
        case Tok::KUsing:
            if (given) Fail(Error::Syntax, modifiers.Line);
            if (top) return false;
            Take();
            owner.Usings.push_back(ReadTypeName());
            return true;
        case Tok::KConst:
            ReadConsts(owner.Consts, modifiers.Visible);
            return true;
        default:
            break;
    }
    if (top) {
        if (given) Fail(Error::Syntax, modifiers.Line);
        return false;
    }
    const bool keyword = Accept(Tok::KProperty);
    if (!keyword) {
        if (!Accept(Tok::KDim)) Accept(Tok::KVar);
    }
    ReadProperty(owner, modifiers, keyword);
    return true;
}

// type = ( "Class" | "Interface" | "Module" | "Structure" | "Enum" ) name ... members "End" the same word
TypeDecl* Parser::ReadType(Kind kind, const TypeDecl& owner, Visibility visible) {
    Nested nested(*this);
    TypeDecl& type = mTree.Types.emplace_back();
    type.K = kind;
    type.Line = Line();
    type.Visible = visible;
    const Tok word = Take().Kind;
    type.Name = DeclaredName();
    if (visible == Visibility::Global && owner.K == Kind::Class) Fail(Error::GlobalInClass, type.Line);
    if (kind == Kind::Enum && At(Tok::KAs)) type.Base = ReadAsType();
    if (kind == Kind::Class || kind == Kind::Interface) ReadHeritage(type);
    EndStatement();
    if (kind == Kind::Enum)
        ReadEnumMembers(type);
    else if (kind == Kind::Structure)
        ReadStructureMembers(type);
    else if (kind == Kind::Interface)
        ReadInterfaceMembers(type);
    else
        ReadMembers(type, word);
    Take();
    Expect(word);
    return &type;
}

// heritage = [ "Inherits" type ] [ ( "Implements" | "Aggregates" ) type { "," type } ], each perhaps on its
// line
void Parser::ReadHeritage(TypeDecl& type) {
    for (;;) {
        size_t at = 0;
        while (Ahead(at).Kind == Tok::NewLine)
            ++at;
        const Tok word = Ahead(at).Kind;
        if (word != Tok::KInherits && word != Tok::KImplements && word != Tok::KAggregates) return;
        if ((word == Tok::KAggregates) != (type.K == Kind::Interface)) Fail(Error::Syntax, Ahead(at).Line);
        while (Accept(Tok::NewLine)) {
        }
        const uint32_t line = Line();
        Take();
        if (word == Tok::KInherits) {
            if (type.Base.Given()) Fail(Error::MultipleInheritance, line);
            type.Base = ReadTypeName();
            if (At(Tok::Comma)) Fail(Error::MultipleInheritance, line);
            continue;
        }
        do
            type.Interfaces.push_back(ReadTypeName());
        while (Accept(Tok::Comma));
    }
}

void Parser::ReadMembers(TypeDecl& type, Tok end) {
    for (SkipLines(); !AtEnd(end); SkipLines()) {
        if (At(Tok::End) || At(Tok::KEnd)) Fail(Error::Syntax, At(Tok::End) ? type.Line : Line());
        ReadDeclaration(type);
        EndStatement();
    }
}

void Parser::ReadInterfaceMembers(TypeDecl& type) {
    for (SkipLines(); !AtEnd(Tok::KInterface); SkipLines()) {
        if (!At(Tok::KSub) && !At(Tok::KFunction)) Fail(Error::Syntax, At(Tok::End) ? type.Line : Line());
        type.Methods.push_back(ReadMethod(true));
        EndStatement();
    }
}

// What is wrong with the size behind a field's type.
void Parser::FailSize(const TypeName& type) {
    const uint32_t line = Line();
    Take();
    const ConstantValue value = DirectiveValue(*ReadExpr());
    if (Fold(mNames.Spelling(type.Path.back())) != "string") Fail(Error::SizeOfNoString, line);
    const int64_t* size = std::get_if<int64_t>(&value);
    Fail(size && *size < 1 ? Error::EmptyStringField : Error::FixedStringField, line);
}

// field = name [ "(" bound ")" ] "As" type [ "*" size ]
void Parser::ReadStructureMembers(TypeDecl& type) {
    for (SkipLines(); !AtEnd(Tok::KStructure); SkipLines()) {
        if (At(Tok::End) || At(Tok::KEnd)) Fail(Error::Syntax, At(Tok::End) ? type.Line : Line());
        if (!Accept(Tok::KDim)) Accept(Tok::KVar);
        PropertyDecl property;
        property.Plain = ReadVariable();
        if (!property.Plain.Named.Given() || property.Plain.Init) Fail(Error::Syntax, Line());
        if (At(Tok::Star)) FailSize(property.Plain.Named);
        type.Properties.push_back(std::move(property));
        EndStatement();
    }
}

// member = name [ "=" expression ]
void Parser::ReadEnumMembers(TypeDecl& type) {
    for (SkipLines(); !AtEnd(Tok::KEnum); SkipLines()) {
        if (At(Tok::End) || At(Tok::KEnd)) Fail(Error::Syntax, At(Tok::End) ? type.Line : Line());
        EnumMember member;
        member.Line = Line();
        member.Name = DeclaredName();
        if (Accept(Tok::Equal)) member.Value = ReadExpr();
        type.Members.push_back(member);
        EndStatement();
    }
}

// delegate = "Delegate" signature
void Parser::ReadDelegate(TypeDecl& owner, Visibility visible) {
    TypeDecl& type = mTree.Types.emplace_back();
    type.K = Kind::Delegate;
    type.Line = Line();
    type.Visible = visible;
    Take();
    if (!At(Tok::KSub) && !At(Tok::KFunction)) Fail(Error::Syntax, Line());
    type.Signature = ReadMethod(true);
    type.Name = type.Signature->Name;
    owner.Types.push_back(&type);
}

// method = signature [ "Implements" path ] block "End" ( "Sub" | "Function" )
// signature = ( "Sub" | "Function" ) name [ "(" parameters ")" ] [ "As" type ]
MethodDecl* Parser::ReadMethod(bool signatureOnly) {
    MethodDecl& method = mTree.Methods.emplace_back();
    method.Line = Line();
    method.SignatureOnly = signatureOnly;
    const Tok word = Take().Kind;
    method.IsFunction = word == Tok::KFunction;
    method.Name = DeclaredName();
    if (At(Tok::LeftParen)) ReadParameters(method.Params);
    if (method.IsFunction) method.Result = ReadAsType();
    if (!method.IsFunction && At(Tok::KAs)) Fail(Error::Syntax, Line());
    if (signatureOnly) return &method;
    if (Accept(Tok::KImplements)) method.Implements = ReadTypeName();
    EndStatement();
    ReadBlock(
        method.Body, [&] { return AtEnd(word); }, Error::Syntax, method.Line);
    Take();
    Take();
    return &method;
}

// parameters = "(" [ parameter { "," parameter } ] ")"
void Parser::ReadParameters(std::vector<Parameter>& params) {
    Take();
    if (Accept(Tok::RightParen)) return;
    do
        params.push_back(ReadParameter());
    while (Accept(Tok::Comma));
    CloseParenthesis();
}

// parameter = { "ByRef" | "ByVal" | "Optional" | "ParamArray" | "Assigns" | "Extends" } name [ "()" ] "As"
// type
//             [ "=" expression ]
Parameter Parser::ReadParameter() {
    Parameter param;
    param.Line = Line();
    bool byVal = false;
    const std::pair<Tok, bool*> words[] = {
        {Tok::KByRef, &param.ByRef},         {Tok::KByVal, &byVal},
        {Tok::KOptional, &param.IsOptional}, {Tok::KParamArray, &param.IsParamArray},
        {Tok::KAssigns, &param.IsAssigns},   {Tok::KExtends, &param.IsExtends}};
    for (bool found = true; found;) {
        found = false;
        for (const auto& [token, flag] : words) {
            if (!At(token)) continue;
            if (*flag) Fail(Error::RepeatedOption, Line());
            Take();
            *flag = found = true;
        }
    }
    const int special = param.IsParamArray + param.IsAssigns + param.IsExtends;
    if (special > 1 || (byVal && param.ByRef) || (param.ByRef && (param.IsParamArray || param.IsAssigns)) ||
        (param.IsOptional && special > 0) || (param.IsOptional && param.ByRef))
        Fail(Error::IncompatibleOptions, param.Line);
    param.Name = DeclaredName();
    const int rank = At(Tok::LeftParen) ? ReadArrayRank() : 0;
    param.Named = ReadAsType();
    if (rank > 0 && param.Named.Rank > 0) Fail(Error::Syntax, param.Line);
    param.Named.Rank += rank;
    if (param.IsParamArray && param.Named.Rank > 1) Fail(Error::ParamArrayRank, param.Line);
    if (Accept(Tok::Equal)) {
        if (param.ByRef) Fail(Error::ByRefDefault, param.Line);
        if (param.IsParamArray) Fail(Error::ParamArrayDefault, param.Line);
        if (param.IsAssigns) Fail(Error::AssignsDefault, param.Line);
        if (param.IsExtends) Fail(Error::ExtendsDefault, param.Line);
        param.Default = ReadExpr();
        param.IsOptional = true;
    }
    return param;
}

// property = [ "Property" ] variable [ accessors "End" "Property" ]
void Parser::ReadProperty(TypeDecl& owner, const Modifiers& modifiers, bool keyword) {
    PropertyDecl property;
    property.Plain = ReadVariable();
    property.Plain.Visible = modifiers.Visible;
    property.Plain.Shared = modifiers.Shared;
    if (!property.Plain.Named.Given()) Fail(Error::Syntax, Line());
    size_t at = 0;
    while (Ahead(at).Kind == Tok::NewLine)
        ++at;
    const bool accessor = Ahead(at).Kind == Tok::Identifier && Ahead(at + 1).Kind == Tok::NewLine &&
                          (Ahead(at).Name == mGet || Ahead(at).Name == mSet);
    if (keyword && at > 0 && accessor) ReadAccessors(owner, property, modifiers);
    owner.Properties.push_back(std::move(property));
}

// accessors = { ( "Get" block "End" "Get" ) | ( "Set" block "End" "Set" ) }
void Parser::ReadAccessors(TypeDecl&, PropertyDecl& property, const Modifiers& modifiers) {
    property.Computed = true;
    for (SkipLines(); !AtEnd(Tok::KProperty); SkipLines()) {
        const uint32_t line = Line();
        const bool get = AtWord(mGet);
        MethodDecl*& slot = get ? property.Get : property.Set;
        if (!get && !AtWord(mSet)) Fail(Error::OnlyGetAndSet, At(Tok::End) ? property.Plain.Line : line);
        if (slot) Fail(Error::DuplicateMethod, line);
        slot = &mTree.Methods.emplace_back();
        slot->Line = line;
        slot->Name = property.Plain.Name;
        slot->Visible = modifiers.Visible;
        slot->Shared = modifiers.Shared;
        slot->IsFunction = get;
        if (get) slot->Result = property.Plain.Named;
        const NameId word = Take().Name;
        EndStatement();
        ReadBlock(
            slot->Body, [&] { return At(Tok::KEnd); }, Error::Syntax, line);
        Take();
        if (!AtWord(word)) Fail(Error::WrongAccessorEnd, Line());
        Take();
        EndStatement();
    }
    Take();
    Take();
}

}  // namespace sorbel::script

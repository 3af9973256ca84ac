#include "scripting/compiler/Checker.h"

namespace sorbel::script {

Checker::Checker(Tree& tree, Names& names, Types& types, const ScriptHost* host, Checked& out)
    : mTree(tree), mNames(names), mTypes(types), mOut(out) {
    mConstructor = names.Intern("Constructor");
    mDestructor = names.Intern("Destructor");
    mConvert = names.Intern("Operator_Convert");
    mValue = names.Intern("value");
    mArrayName = names.Intern("Array");
    mInvokeName = names.Intern("Invoke");
    mInteger = types.Of(Kind::Int64);
    mDouble = types.Of(Kind::Double);
    mBoolean = types.Of(Kind::Boolean);
    mString = types.Of(Kind::String);
    mVariant = types.Of(Kind::Variant);
    mVoid = types.Of(Kind::Void);
    mNil = types.Of(Kind::Nil);
    mPtr = types.Of(Kind::Ptr);
    mTop = types.Declare(Kind::Module, "");
    if (host) DeclareHost(*host);
}

// Bodies are checked one by one and the first error in the text is the one to report, wherever it lies.
void Checker::Check() {
    mTree.Top.T = mTop;
    mOut.Classes.push_back(mTypes.Root());
    DeclareTypes(mTree.Top, mTop);
    mDictionary = FindMember(mTop, mNames.Intern("Dictionary"))->T;
    CollectImports();
    for (Type* type : mDeclared)
        ResolveHeritage(*type);
    for (Type* type : mDeclared)
        (void)HeightOf(*type);
    for (Type* type : mDeclared)
        type->ReachInterfaces();
    DeclareMembers(mTree.Top, mTop);
    for (Type* type : mDeclared)
        Arrange(*type);
    for (Type* type : mDeclared)
        if (type->Is(Kind::Class)) CheckInterfaces(*type);
    std::optional<CompileError> first;
    const auto keep = [&](auto check) {
        try {
            check();
        } catch (CompileError& error) {
            if (!first || error.Line < first->Line) first = std::move(error);
        }
    };
    for (Constant& constant : mOut.Constants)
        keep([&] { Evaluate(constant); });
    keep([this] { CheckTopNames(); });
    keep([this] { CheckImports(); });
    keep([this] { CheckFirstValues(); });
    keep([this] { CheckMain(); });
    keep([this] { DeclareRest(); });
    for (Method* method : mToCheck)
        keep([&] { CheckBody(*method); });
    if (first) throw *first;
}

// The values that properties start with.
void Checker::CheckFirstValues() {
    for (Variable& variable : mOut.Variables) {
        if (!variable.IsProperty || !variable.Decl) continue;
        mNow = {};
        mNow.Owner = variable.Sym->Owner;
        for (Expr*& bound : variable.Decl->Bounds)
            CheckInteger(bound, Error::BoundsNotInteger);
        if (mNow.Owner->Is(Kind::Structure)) CheckStructureBound(variable);
        if (variable.Decl->Init) CheckConverted(variable.Decl->Init, variable.T, Error::AssignIncompatible);
    }
}

// An array lies inside its structure, so its size is known beforehand.
void Checker::CheckStructureBound(const Variable& field) const {
    for (const Expr* bound : field.Decl->Bounds) {
        if (bound->Kind != ExprKind::Literal) Fail(Error::ConstantExpected, field.Line);
        if (std::get<int64_t>(bound->Value) < 0) Fail(Error::BoundsNotInteger, field.Line);
    }
}

void Checker::DeclareHost(const ScriptHost& host) {
    static constexpr Kind kinds[] = {Kind::Void,    Kind::Int64,  Kind::Double,
                                     Kind::Boolean, Kind::String, Kind::Color};
    const auto typeOf = [&](HostType type) {
        return mTypes.Of(kinds[static_cast<size_t>(type)]);
    };
    const std::vector<HostMember> members = host.Members();
    for (size_t index = 0; index < members.size(); ++index) {
        const HostMember& member = members[index];
        MethodDecl& decl = mOut.HostDecls.emplace_back();
        decl.Name = mNames.Intern(member.Name);
        for (const HostParameter& parameter : member.Parameters) {
            decl.Params.emplace_back().Name = mNames.Intern(parameter.Name);
            decl.Params.back().T = typeOf(parameter.Type);
        }
        Method& method = mOut.Methods.emplace_back();
        method.Decl = &decl;
        method.Result = typeOf(member.Result);
        method.Host = static_cast<int>(index);
        Symbol*& symbol = mHost[decl.Name];
        if (!symbol) {
            symbol = &mOut.Symbols.emplace_back();
            symbol->Name = decl.Name;
        }
        method.Sym = symbol;
        if (member.How == HostMember::Form::Method) {
            symbol->Is = Symbol::What::Methods;
            symbol->Overloads.push_back(&method);
            continue;
        }
        if (!symbol->Prop) symbol->Prop = &mOut.Properties.emplace_back();
        symbol->Is = Symbol::What::Property;
        symbol->Prop->Name = decl.Name;
        symbol->Prop->Sym = symbol;
        const bool get = member.How == HostMember::Form::Get;
        symbol->Prop->T = get ? method.Result : decl.Params.at(0).T;
        (get ? symbol->Prop->Get : symbol->Prop->Set) = &method;
    }
}

Symbol* Checker::Declare(Members& members, NameId name, Symbol::What what, uint32_t line) {
    if (const auto found = members.find(name); found != members.end()) {
        const Symbol::What other = found->second->Is;
        const auto pair = [&](Symbol::What a, Symbol::What b) {
            return (what == a && other == b) || (what == b && other == a);
        };
        using What = Symbol::What;
        if (what == What::Methods && other == What::Methods) return found->second;
        if (pair(What::Property, What::Methods) || pair(What::Variable, What::Methods))
            Fail(Error::PropertySameAsMethod, line);
        if (pair(What::Property, What::Event) || pair(What::Variable, What::Event))
            Fail(Error::PropertySameAsEvent, line);
        if (what == What::Constant && other == What::Constant) Fail(Error::DuplicateConstant, line);
        if ((what == What::Property || what == What::Variable) &&
            (other == What::Property || other == What::Variable))
            Fail(Error::DuplicateProperty, line);
        Fail(Error::Redefined, line);
    }
    mTree.Room.Need(sizeof(Symbol) + sizeof(Variable) + sizeof(Method), line);
    Symbol& symbol = mOut.Symbols.emplace_back();
    symbol.Is = what;
    symbol.Name = name;
    members.emplace(name, &symbol);
    return &symbol;
}

void Checker::DeclareTypes(TypeDecl& owner, Type* around) {
    for (TypeDecl* decl : owner.Types) {
        const bool inner = around != mTop;
        if (inner && around->Is(Kind::Module)) {
            if (decl->Visible == Visibility::Protected) Fail(Error::ProtectedInModule, decl->Line);
        }
        if (decl->Visible == Visibility::Global && inner && around->Owner != mTop && around->Owner)
            Fail(Error::GlobalInInnerModule, decl->Line);
        Type* type = mTypes.Declare(decl->K, Spell(decl->Name));
        decl->T = type;
        type->Decl = decl;
        type->Owner = around;
        type->Visible = decl->Visible;
        Symbol* symbol = Declare(around->Own, decl->Name, Symbol::What::Type, decl->Line);
        symbol->T = type;
        Show(*symbol, around, decl->Visible);
        mDeclared.push_back(type);
        DeclareTypes(*decl, type);
    }
}

void Checker::ResolveHeritage(Type& type) {
    mNow.Owner = type.Owner;
    TypeDecl& decl = *type.Decl;
    if (type.Is(Kind::Class)) ResolveClassHeritage(type);
    for (const TypeName& named : decl.Interfaces) {
        const Type* part = FindType(named, Error::NoSuchType, Error::NotAnInterface);
        if (!part->Is(Kind::Interface)) Fail(Error::NotAnInterface, named.Line);
        // Only what is aggregated already can be part of a circle.
        if (part == &type || (mAggregated.contains(&type) && part->Aggregates(&type)))
            Fail(Error::CyclicInterface, named.Line);
        type.Interfaces.push_back(const_cast<Type*>(part));
        if (type.Is(Kind::Interface)) mAggregated.insert(part);
    }
    if (!type.Is(Kind::Enum)) return;
    type.Element = mInteger;
    if (!decl.Base.Given()) return;
    const Type* base = FindType(decl.Base);
    if (base->Is(Kind::Enum)) Fail(Error::EnumOfEnum, decl.Base.Line);
    if (!base->IsInteger()) Fail(Error::EnumNotInteger, decl.Base.Line);
    type.Element = base;
}

// Members of interfaces are looked for from one to the next, which the stack must allow.
uint16_t Checker::HeightOf(Type& type) {
    if (type.Height > 0) return type.Height;
    const Depth::Step step(mDepth, type.Decl->Line);
    uint16_t below = 0;
    for (Type* part : type.Interfaces)
        below = std::max(below, HeightOf(*part));
    if (below == MostHeight) Fail(Error::Nesting, type.Decl->Line);
    return type.Height = static_cast<uint16_t>(below + 1);
}

void Checker::ResolveClassHeritage(Type& type) {
    type.Base = mTypes.Root();
    const TypeName& named = type.Decl->Base;
    if (!named.Given()) return;
    const Type* base = FindType(named, Error::NoSuchClass, Error::InheritNonClass);
    if (!base->Is(Kind::Class)) Fail(Error::InheritNonClass, named.Line);
    if (base == &type || (mAggregated.contains(&type) && base->ComesFrom(&type)))
        Fail(Error::OwnSuperclass, named.Line);
    type.Base = const_cast<Type*>(base);
    mAggregated.insert(base);
}

void Checker::DeclareMembers(TypeDecl& decl, Type* owner) {
    mNow.Owner = owner;
    if (decl.K == Kind::Enum) return DeclareEnum(decl);
    if (decl.K == Kind::Delegate) return DeclareDelegate(decl);
    if (decl.K == Kind::Structure) return DeclareStructure(decl);
    for (TypeDecl* inner : decl.Types)
        DeclareMembers(*inner, inner->T);
    mNow.Owner = owner;
    for (ConstDecl& constant : decl.Consts)
        DeclareConstant(constant, owner);
    for (MethodDecl* event : decl.Events)
        DeclareEvent(*event, owner);
    for (PropertyDecl& property : decl.Properties)
        DeclareProperty(property, owner);
    for (MethodDecl* method : decl.Methods)
        DeclareMethod(*method, owner, false);
}

void Checker::DeclareConstant(ConstDecl& decl, Type* owner) {
    if (owner != mTop && owner->Is(Kind::Module) && decl.Visible == Visibility::Protected)
        Fail(Error::ProtectedInModule, decl.Line);
    if (owner->Is(Kind::Class) && decl.Visible == Visibility::Global) Fail(Error::GlobalInClass, decl.Line);
    Symbol* symbol = Declare(owner->Own, decl.Name, Symbol::What::Constant, decl.Line);
    Constant& constant = mOut.Constants.emplace_back();
    constant.Decl = &decl;
    constant.Owner = owner;
    decl.Const = &constant;
    symbol->Const = &constant;
    Show(*symbol, owner, decl.Visible);
}

void Checker::DeclareEnum(TypeDecl& decl) {
    Constant* before = nullptr;
    for (const EnumMember& member : decl.Members) {
        Symbol* symbol = Declare(decl.T->Own, member.Name, Symbol::What::Constant, member.Line);
        Constant& constant = mOut.Constants.emplace_back();
        constant.Member = &member;
        constant.Owner = decl.T;
        constant.T = decl.T;
        constant.Before = before;
        before = symbol->Const = &constant;
        symbol->Owner = decl.T;
    }
}

Variable& Checker::AddProperty(VariableDecl& decl, const Type* type, Symbol& symbol) {
    Variable& variable = mOut.Variables.emplace_back();
    variable.Name = decl.Name;
    variable.T = type;
    variable.Line = decl.Line;
    variable.Decl = &decl;
    variable.Sym = &symbol;
    variable.IsProperty = true;
    symbol.Var = &variable;
    return variable;
}

void Checker::DeclareStructure(TypeDecl& decl) {
    Type* type = decl.T;
    for (PropertyDecl& property : decl.Properties) {
        VariableDecl& field = property.Plain;
        if (field.Named.Rank > 1) Fail(Error::StructureMultiArray, field.Line);
        const Type* fieldType = FindWholeType(field.Named);
        const Type* element = fieldType->Is(Kind::Array) ? fieldType->Element : fieldType;
        if (element->Is(Kind::String)) Fail(Error::StringFieldSize, field.Line);
        if (element->IsReference() && !element->Is(Kind::Structure))
            Fail(Error::StructureFieldType, field.Line);
        if (fieldType->Is(Kind::Array) && !field.HasBounds) Fail(Error::StructureFieldType, field.Line);
        Symbol* symbol = Declare(type->Own, field.Name, Symbol::What::Variable, field.Line);
        symbol->Owner = type;
        Variable& variable = AddProperty(field, fieldType, *symbol);
        variable.Where = Variable::Storage::Field;
        type->Fields.push_back(&variable);
    }
}

void Checker::DeclareDelegate(TypeDecl& decl) {
    Method& method = mOut.Methods.emplace_back();
    method.Decl = decl.Signature;
    ResolveSignature(method);
    CheckDelegateSignature(method);
    decl.T->Signature = &method;
}

void Checker::CheckDelegateSignature(const Method& method) const {
    for (const Parameter& parameter : method.Decl->Params) {
        if (parameter.IsOptional) Fail(Error::DelegateOptional, parameter.Line);
        if (parameter.IsExtends || parameter.IsAssigns || parameter.IsParamArray)
            Fail(Error::DelegateOptions, parameter.Line);
    }
    if (method.Result->Is(Kind::Structure)) Fail(Error::DelegateReturnsStructure, method.Decl->Line);
}

void Checker::DeclareProperty(PropertyDecl& property, Type* owner) {
    VariableDecl& plain = property.Plain;
    const bool inModule = owner->Is(Kind::Module);
    if (inModule && plain.Visible == Visibility::Protected) Fail(Error::ProtectedInModule, plain.Line);
    if (!inModule && plain.Visible == Visibility::Global) Fail(Error::GlobalInClass, plain.Line);
    if (inModule && plain.Visible == Visibility::Global && owner->Owner && owner->Owner != mTop)
        Fail(Error::GlobalInInnerModule, plain.Line);
    const Type* type = FindWholeType(plain.Named);
    const auto what = property.Computed ? Symbol::What::Property : Symbol::What::Variable;
    Symbol* symbol = Declare(owner->Own, plain.Name, what, plain.Line);
    Show(*symbol, owner, plain.Visible);
    if (property.Computed) {
        Property& computed = mOut.Properties.emplace_back();
        computed.Name = plain.Name;
        computed.T = type;
        computed.Sym = symbol;
        symbol->Prop = &computed;
        if (property.Get) (computed.Get = DeclareMethod(*property.Get, owner, true))->Sym = symbol;
        if (property.Set) {
            Parameter value;
            value.Name = mValue;
            value.Named = plain.Named;
            value.Line = plain.Line;
            property.Set->Params = {value};
            (computed.Set = DeclareMethod(*property.Set, owner, true))->Sym = symbol;
        }
        return;
    }
    Variable& variable = AddProperty(plain, type, *symbol);
    plain.Var = &variable;
    if (plain.Init && type->Is(Kind::Array)) Fail(Error::ArrayDefault, plain.Line);
    if (plain.Init && type->IsReference() && !type->Is(Kind::String) && !type->Is(Kind::Variant))
        Fail(Error::ObjectDefault, plain.Line);
    if (inModule || plain.Shared) {
        variable.Where = Variable::Storage::Top;
        mOut.TopVariables.push_back(&variable);
        mOut.Initialised.push_back(&variable);
    } else {
        variable.Where = Variable::Storage::Field;
        owner->Fields.push_back(&variable);
    }
}

Method* Checker::DeclareMethod(MethodDecl& decl, Type* owner, bool accessor) {
    Method& method = mOut.Methods.emplace_back();
    method.Decl = &decl;
    method.Owner = owner;
    method.IsAccessor = accessor;
    if (owner != mTop && owner->Is(Kind::Module) && decl.Visible == Visibility::Protected)
        Fail(Error::ProtectedInModule, decl.Line);
    if (owner->Is(Kind::Class) && decl.Visible == Visibility::Global) Fail(Error::GlobalInClass, decl.Line);
    if (owner->Is(Kind::Module) && decl.Visible == Visibility::Global && owner->Owner && owner->Owner != mTop)
        Fail(Error::GlobalInInnerModule, decl.Line);
    ResolveSignature(method);
    CheckParameters(method);
    if (!decl.SignatureOnly) {
        mOut.Bodies.push_back(&method);
        method.Function = static_cast<uint32_t>(mOut.Bodies.size());
        mToCheck.push_back(&method);
        if (owner->Is(Kind::Class)) mBodiesOf[owner].push_back(&method);
    }
    if (accessor) return &method;
    const bool inClass = owner->Is(Kind::Class);
    if (inClass && decl.Name == mDestructor && !decl.Params.empty())
        Fail(Error::DestructorParameters, decl.Line);
    AddOverload(method, owner);
    owner->Methods.push_back(&method);
    if (inClass && decl.Name == mConstructor) owner->Constructors.push_back(&method);
    if (inClass && decl.Name == mDestructor) owner->Destructor = &method;
    return &method;
}

void Checker::AddOverload(Method& method, Type* owner) {
    Symbol* symbol = Declare(owner->Own, method.Decl->Name, Symbol::What::Methods, method.Decl->Line);
    Show(*symbol, owner, method.Decl->Visible);
    method.Sym = symbol;
    std::vector<const Type*> types;
    for (const Parameter& parameter : method.Decl->Params) {
        types.push_back(parameter.T);
        symbol->TakesLists |= parameter.IsParamArray;
    }
    const size_t signature = SignatureIn(*symbol, types);
    for (auto [other, end] = mSignatures.equal_range(signature); other != end; ++other)
        if (other->second->Sym == symbol && SameParameters(*other->second, method))
            Fail(Error::DuplicateMethod, method.Decl->Line);
    mSignatures.emplace(signature, &method);
    symbol->Overloads.push_back(&method);
}

void Checker::ResolveSignature(Method& method) {
    for (Parameter& parameter : method.Decl->Params) {
        parameter.T = FindWholeType(parameter.Named);
        if (parameter.IsParamArray && !parameter.T->Is(Kind::Array))
            parameter.T = mTypes.ArrayOf(parameter.T, 1);
    }
    method.Result = method.Decl->IsFunction ? FindWholeType(method.Decl->Result) : mVoid;
}

void Checker::CheckParameters(const Method& method) {
    const std::vector<Parameter>& params = method.Decl->Params;
    int assigns = 0, paramArrays = 0;
    for (const Parameter& param : params) {
        assigns += param.IsAssigns;
        paramArrays += param.IsParamArray;
        if (assigns > 1) Fail(Error::TwoAssigns, param.Line);
        if (paramArrays > 1) Fail(Error::TwoParamArrays, param.Line);
    }
    for (size_t index = 0; index < params.size(); ++index) {
        const Parameter& param = params[index];
        if (param.IsExtends && index > 0) Fail(Error::ExtendsNotFirst, param.Line);
        if (param.IsExtends && method.Owner->Is(Kind::Class)) Fail(Error::ExtendsInClass, param.Line);
        if (param.IsAssigns && index + 1 < params.size()) Fail(Error::AssignsNotLast, param.Line);
        if (index > 0 && params[index - 1].IsParamArray && !param.IsAssigns)
            Fail(Error::AfterParamArray, param.Line);
        for (size_t other = 0; other < index; ++other)
            if (params[other].Name == param.Name) Fail(Error::Redefined, param.Line);
    }
}

namespace {

size_t Mixed(size_t signature, const Type* type) {
    return signature * 1000003 + std::hash<const Type*>()(type);
}

}  // namespace

// The same for methods of the same name and parameters.
size_t Checker::SignatureOf(const Method& method) {
    size_t signature = method.Decl->Name;
    for (const Parameter& parameter : method.Decl->Params)
        signature = Mixed(signature, parameter.T);
    return signature;
}

size_t Checker::SignatureIn(const Symbol& symbol, const std::vector<const Type*>& types) {
    size_t signature = std::hash<const Symbol*>()(&symbol);
    for (const Type* type : types)
        signature = Mixed(signature, type);
    return signature;
}

bool Checker::SameParameters(const Method& a, const Method& b) const {
    if (a.Decl->Params.size() != b.Decl->Params.size()) return false;
    for (size_t index = 0; index < a.Decl->Params.size(); ++index) {
        const Parameter &one = a.Decl->Params[index], &other = b.Decl->Params[index];
        if (one.T != other.T || one.IsAssigns != other.IsAssigns || one.ByRef != other.ByRef) return false;
    }
    // Conversions differ by what they convert to.
    return a.Decl->Name != mConvert || a.Result == b.Result;
}

}  // namespace sorbel::script

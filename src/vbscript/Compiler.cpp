#include "vbscript/Compiler.h"

#include <algorithm>
#include <unordered_set>

#include "vbscript/Error.h"
#include "vbscript/Operators.h"
#include "vbscript/RoutineCompiler.h"

namespace tessaloom::vbscript {

using syntax::ClassDeclaration;
using syntax::ConstantDeclaration;
using syntax::ProgramTree;
using syntax::RoutineDeclaration;
using syntax::RoutineKind;
using syntax::VariableDeclaration;

namespace {

/// Names that may be defined only once in a scope.
class Scope {
public:
    void Add(NameId name, Position at) {
        if (!names_.insert(name).second) throw SyntaxError(1041, at.line, at.column);
    }
    bool Has(NameId name) const { return names_.contains(name); }

private:
    std::unordered_set<NameId> names_;
};

void CheckRoutine(const RoutineDeclaration& routine) {
    Scope scope;
    for (const syntax::Parameter& parameter : routine.parameters) scope.Add(parameter.name, parameter.at);
    for (const VariableDeclaration& variable : routine.variables) scope.Add(variable.name, variable.at);
    for (const ConstantDeclaration& constant : routine.constants) scope.Add(constant.name, constant.at);
}

/// The head of a routine, ready to be compiled.
void Prepare(Routine& routine, const RoutineDeclaration& declaration, bool explicitNames) {
    routine.name = declaration.name;
    routine.kind = declaration.kind;
    routine.isPrivate = declaration.isPrivate;
    routine.explicitNames = explicitNames;
    routine.parameters = static_cast<std::uint16_t>(declaration.parameters.size());
}

/// A routine that could not be compiled; whoever calls it gets an error. Takes no memory: it may be that
/// there is none.
void MakeUnusable(Routine& routine) noexcept {
    routine.code.clear();
    routine.parameters = Routine::NotCompiled;
}

}  // namespace

const Mark& Routine::MarkAt(std::size_t place) const {
    std::size_t low = 0, high = marks.size();
    while (high - low > 1) {
        const std::size_t middle = (low + high) / 2;
        (marks[middle].start <= place ? low : high) = middle;
    }
    return marks[low];
}

Value ConstantValue(Context& context, const ProgramTree& tree, const ConstantDeclaration& constant) {
    const Value& value = tree.constants[constant.index];
    return constant.negated ? Negate(context, value) : value;
}

void Compiler::Check(const ProgramTree& tree) {
    Scope scope;
    for (const VariableDeclaration& variable : tree.main.variables) scope.Add(variable.name, variable.at);
    for (const ConstantDeclaration& constant : tree.main.constants) scope.Add(constant.name, constant.at);
    for (const ClassDeclaration* declaration : tree.classes) scope.Add(declaration->name, declaration->at);
    std::unordered_set<NameId> routines;
    for (const RoutineDeclaration* routine : tree.routines) {
        CheckRoutine(*routine);
        if (routines.insert(routine->name).second) scope.Add(routine->name, routine->at);
    }
    for (const ClassDeclaration* declaration : tree.classes)
        for (const RoutineDeclaration* routine : declaration->routines) CheckRoutine(*routine);
}

std::unique_ptr<Routine> Compiler::Compile(const ProgramTree& tree, Place place) {
    Check(tree);
    auto main = std::make_unique<Routine>();
    std::size_t done = 0;
    try {
        DefineNames(tree, place.around != nullptr);
        Prepare(*main, tree.main, tree.explicitNames || (place.around && place.around->explicitNames));
        main->owner = place.around ? place.around->owner : nullptr;
        // The names of the outermost statements come first: what they assign are globals to all procedures.
        RoutineCompiler outermost(context_, program_, tree, *main, place, globals_);
        outermost.Declare(tree.main);
        for (; done < pending_.size(); ++done) {
            const auto& [declaration, routine] = pending_[done];
            RoutineCompiler inner(context_, program_, tree, *routine, {}, globals_);
            inner.Declare(*declaration);
            inner.Compile(*declaration);
            if (program_.symbols.Count() > MostGlobals) throw SyntaxError(1001, 1, 1);
        }
        outermost.Compile(tree.main);
        if (program_.symbols.Count() > MostGlobals) throw SyntaxError(1001, 1, 1);
    } catch (...) {
        for (; done < pending_.size(); ++done) MakeUnusable(*pending_[done].second);
        throw;
    }
    return main;
}

std::unique_ptr<Routine> Compiler::CompileExpression(const ProgramTree& tree, Place place) {
    auto routine = std::make_unique<Routine>();
    routine->explicitNames = place.around && place.around->explicitNames;
    routine->owner = place.around ? place.around->owner : nullptr;
    place.onGlobals = false;
    RoutineCompiler(context_, program_, tree, *routine, place, globals_)
        .CompileExpression(*tree.main.body[0]->value);
    return routine;
}

int Compiler::Define(NameId name, SymbolKind kind) {
    const int number = program_.symbols.Of(name);
    if (static_cast<std::uint32_t>(number) >= MostGlobals) throw SyntaxError(1001, 1, 1);
    program_.symbols[static_cast<std::size_t>(number)].kind = kind;
    return number;
}

/// `nested`: the variables and constants belong to a routine that executes this text.
void Compiler::DefineNames(const ProgramTree& tree, bool nested) {
    if (!nested) {
        for (const VariableDeclaration& variable : tree.main.variables) {
            const int number = program_.symbols.Of(variable.name);
            const bool isNew =
                program_.symbols[static_cast<std::size_t>(number)].kind != SymbolKind::Variable;
            Define(variable.name, SymbolKind::Variable);
            if (isNew) globals_[number] = Value();
        }
        for (const ConstantDeclaration& constant : tree.main.constants) {
            const Value value = ConstantValue(context_, tree, constant);
            globals_[Define(constant.name, SymbolKind::Constant)] = value;
        }
    }
    for (const ClassDeclaration* declaration : tree.classes) DefineClass(*declaration);
    for (const RoutineDeclaration* declaration : tree.routines)
        DefineRoutine(*declaration, tree.explicitNames);
}

void Compiler::DefineRoutine(const RoutineDeclaration& declaration, bool explicitNames) {
    Symbol& symbol =
        program_.symbols[static_cast<std::size_t>(Define(declaration.name, SymbolKind::Routine))];
    const auto old =
        std::ranges::find_if(program_.routines, [&](const Routine& one) { return &one == symbol.routine; });
    if (old != program_.routines.end())
        program_.replaced.splice(program_.replaced.end(), program_.routines, old);
    Routine& routine = program_.routines.emplace_back();
    Prepare(routine, declaration, explicitNames);
    pending_.emplace_back(&declaration, &routine);
    symbol.routine = &routine;
}

void Compiler::DefineClass(const ClassDeclaration& declaration) {
    const Ref<ClassInfo> type = Make<ClassInfo>();
    type->name = program_.names.Spelling(declaration.name);
    const auto memberOf = [&](NameId name) -> ClassInfo::Member& {
        const auto [place, isNew] = type->numbers.try_emplace(name, static_cast<int>(type->members.size()));
        if (isNew) type->members.emplace_back().name = name;
        return type->members[static_cast<std::size_t>(place->second)];
    };
    for (const VariableDeclaration& field : declaration.fields) {
        ClassInfo::Member& member = memberOf(field.name);
        member.field = static_cast<int>(type->fields.size());
        member.isPrivate = field.isPrivate;
        type->fields.push_back({
            field.isArray, {field.bounds.begin(), field.bounds.end()}
        });
    }
    int defaultMember = 0;
    const NameId initialize = program_.names.Intern(u"Class_Initialize");
    const NameId terminate = program_.names.Intern(u"Class_Terminate");
    decltype(pending_) parts;
    for (const RoutineDeclaration* part : declaration.routines) {
        Routine& routine = type->routines.emplace_back();
        Prepare(routine, *part, false);
        routine.owner = type.Get();
        parts.emplace_back(part, &routine);
        ClassInfo::Member& member = memberOf(part->name);
        if (part->kind == RoutineKind::PropertyLet)
            member.let = &routine;
        else if (part->kind == RoutineKind::PropertySet)
            member.set = &routine;
        else
            member.get = &routine, member.isPrivate = part->isPrivate;
        if (part->isDefault) defaultMember = type->numbers[part->name];
        if (part->name == initialize) type->initialize = &routine;
        if (part->name == terminate) type->terminate = &routine;
    }
    if (defaultMember > 0) type->members[0] = type->members[static_cast<std::size_t>(defaultMember)];
    Symbol& symbol = program_.symbols[static_cast<std::size_t>(Define(declaration.name, SymbolKind::Class))];
    const auto old = std::ranges::find_if(
        program_.classes, [&](const Ref<ClassInfo>& one) { return one.Get() == symbol.type; });
    if (old != program_.classes.end())
        program_.replacedClasses.splice(program_.replacedClasses.end(), program_.classes, old);
    program_.classes.push_back(type);
    pending_.insert(pending_.end(), parts.begin(), parts.end());
    symbol.type = type.Get();
}

}  // namespace tessaloom::vbscript

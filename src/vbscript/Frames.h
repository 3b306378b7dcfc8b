#pragma once

#include "vbscript/Machine.h"

namespace tessaloom::vbscript {

/// Begins a routine whose arguments lie at `base`; its result will be put to `result`.
inline void Machine::Enter(const Routine& routine, Value* base, std::size_t count, Value* result, bool drops,
                           Instance* me) {
    if (count != routine.parameters) [[unlikely]]
        Fail(routine.parameters == Routine::NotCompiled ? ErrorCode::Internal
                                                        : ErrorCode::WrongArgumentCount);
    // One jump for all three, which hardly ever is the case.
    if (int{depth_ >= frameCount_} | int{base + routine.frameSize >= stackReached_} |
        int{TimeLimit::MayBeOver()}) [[unlikely]]
        ReachFurther(base + routine.frameSize);
    if (routine.anyByValue) PassByValue(routine, base);
    if (routine.onGlobals || !routine.imports.empty()) [[unlikely]] {
        PrepareOutermost(routine, base);
    } else {
        for (Value *local = base + count, *const end = base + routine.locals; local != end; ++local)
            local->MakeEmpty();
    }
    Frame& frame = frames_[depth_++];
    frame.routine = &routine;
    frame.place = routine.code.data();
    frame.base = base;
    frame.result = result;
    frame.me = me;
    frame.dropsResult = drops;
    frame.resumesNext = false;
}

/// Ends the topmost routine and hands its result over. Its locals go before the caller goes on, so that
/// their Class_Terminate runs now.
inline void Machine::Leave() {
    Frame& frame = Top();
    const Routine& routine = *frame.routine;
    Value result;
    if (routine.resultSlot >= 0 && !frame.dropsResult) result = std::move(frame.base[routine.resultSlot]);
    Value* const first = frame.base + (routine.onGlobals ? MostGlobals : 0);
    for (Value *slot = first, *const end = frame.base + routine.slots; slot < end; ++slot) slot->LetGo();
    if (frame.executed) [[unlikely]]
        frame.executed.reset();
    --depth_;
    *frame.result = std::move(result);
}

/// What an assignment without Set does.
[[gnu::always_inline]] inline void Machine::LetValue(Value& target, Value& source, bool mayMove) {
    if (source.Is(VarType::Object) || source.Is(VarType::Array) || target.Is(VarType::Array)) [[unlikely]]
        LetCompound(target, source, mayMove);
    else if (mayMove)
        target = std::move(source);
    else
        target = source;
}

inline void Machine::PassByValue(const Routine& routine, Value* base) {
    for (std::size_t i = 0; i < routine.parameters; ++i) {
        if (routine.passing[i] == Routine::Passing::ByReference || !base[i].Is(VarType::Reference)) continue;
        Value& argument = base[i].Target();
        if (routine.passing[i] == Routine::Passing::Unseen)
            base[i] = argument;
        else
            base[i] = argument.Assigned();
    }
}

}  // namespace tessaloom::vbscript

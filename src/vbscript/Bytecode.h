#pragma once

#include <cstdint>

namespace tessaloom::vbscript {

/// The instructions of the machine. `a`, `b` and `c` are registers of the running routine unless said
/// otherwise; K: a constant of the routine; D: the 32-bit number made of `b` and `c`. "+target": the word
/// behind holds, in its D, the place to go on at.
// clang-format off
#define TESSALOOM_OPCODES(X) \
    X(LoadConstant)     /* a = K[D] */ \
    X(Copy)             /* a = b as it is, objects too */ \
    X(LoadParameter)    /* a = what parameter b holds or refers to */ \
    X(LoadGlobal)       /* a = global b */ \
    X(LoadField)        /* a = field b of Me */ \
    X(LoadMe)           /* a = Me */ \
    X(LoadName)         /* a = whatever global b has become; c: slot + 1 of the local that stands in */ \
    X(Let)              /* a = value of b; c: b may be used up */ \
    X(LetParameter) X(LetGlobal) X(LetField) \
    X(Set)              /* a = object b; c as above */ \
    X(SetParameter) X(SetGlobal) X(SetField) \
    X(Put)              /* a = b as it is: the item of For Each */ \
    X(PutParameter) X(PutGlobal) X(PutField) \
    X(LetName) X(SetName) /* global b, known only now, = a */ \
    X(RefLocal)         /* a = reference to b */ \
    X(RefParameter) X(RefGlobal) X(RefField) \
    X(RefName)          /* as LoadName, by reference where it is a variable */ \
    X(Index)            /* a = b(c) */ \
    X(IndexMany)        /* a = b(a, a+1 .. of count c) */ \
    X(LetIndex)         /* b(c) = a */ \
    X(LetIndexMany)     /* b(a, a+1 .. of count c) = the register behind them */ \
    X(SetIndexMany) \
    X(Plain)            /* the b registers from a on: objects become the values of their default members */ \
    X(RefElement)       /* a = reference to b(a, a+1 .. of count c), to be used up at once */ \
    X(WriteBack)        /* b(a, a+1 .. of count c) = the register behind them, if b is an array */ \
    X(Add) X(Subtract) X(Multiply) X(Divide) X(IntegerDivide) X(Modulo) X(Power) X(Concatenate) \
    X(And) X(Or) X(Xor) X(Eqv) X(Imp) X(Is) \
    X(Equal) X(NotEqual) X(Less) X(Greater) X(LessOrEqual) X(GreaterOrEqual) \
    X(AddK) X(SubtractK) X(MultiplyK) X(DivideK) X(IntegerDivideK) X(ModuloK) X(PowerK) X(ConcatenateK) \
    X(AndK) X(OrK) X(XorK) X(EqvK) X(ImpK) X(IsK) \
    X(EqualK) X(NotEqualK) X(LessK) X(GreaterK) X(LessOrEqualK) X(GreaterOrEqualK) \
    X(Negate) X(Not)    /* a = op b */ \
    X(Append)           /* a = a & b */ \
    X(AppendMany)       /* a = a & b & b+1 .. of count c */ \
    X(Jump)             /* to D */ \
    X(LoopBack)         /* the same backwards, watching the time */ \
    X(JumpIfFalse)      /* a, to D */ \
    X(JumpIfTrue) \
    X(UnlessEqual) X(UnlessNotEqual) X(UnlessLess) X(UnlessGreater) X(UnlessLessOrEqual) \
    X(UnlessGreaterOrEqual) \
    X(UnlessEqualK) X(UnlessNotEqualK) X(UnlessLessK) X(UnlessGreaterK) X(UnlessLessOrEqualK) \
    X(UnlessGreaterOrEqualK) /* jump unless a op b; +target */ \
    X(CaseEqual)        /* jump if a = b; +target */ \
    X(ForPrepare)       /* a, a+1: limit and step from b+1, b+2; b: the start as a number */ \
    X(ForEnter)         /* jump if b is beyond limit a; +target */ \
    X(ForStep)          /* b += step of a */ \
    X(ForBack)          /* jump unless b is beyond limit a; +target */ \
    X(ForNext)          /* ForStep and ForBack; +target */ \
    X(ForEachPrepare)   /* a: an iterator along b */ \
    X(ForEachNext)      /* b: the next item of a; Empty at the end */ \
    X(ForEachBack)      /* jump to D while a has items */ \
    X(PrepareWith)      /* a = object b */ \
    X(CallRoutine)      /* global b with c arguments from a on; the result to a */ \
    X(CallOwn)          /* member b of Me's class, the same way */ \
    X(CallBuiltin)      /* built-in b, the same way */ \
    X(CallName)         /* what global b has become; the word behind: a slot + 1, b a NameUse */ \
    X(CallValue)        /* default member of b as a statement, arguments as above */ \
    X(CallMember)       /* of object a, c arguments behind it; b a CallKind; the word behind: D the site, a how many \
                           WriteBack follow */ \
    X(GetItem)          /* CallMember for Get with one argument */ \
    X(GetMember)        /* a = member of object b, without arguments; c the site */ \
    X(LetMember)        /* member of object b = the register behind a; c the site */ \
    X(GetHostMember)    /* a = global b, a host's member without arguments */ \
    X(CallHostMember)   /* global b, a host's member, c arguments from a; the word behind: b a CallKind */ \
    X(CallSpecial)      /* SpecialCall b with c arguments from a on; the result to a */ \
    X(New)              /* a = new object of the class named D */ \
    X(Return) \
    X(Release)          /* empties b registers from a on */ \
    X(MakeArray)        /* a = new array of bounds D */ \
    X(ReDim)            /* variable b, c bounds from a on; the word behind: b Preserve */ \
    X(Erase)            /* variable a */ \
    X(ResumeNext) X(ErrorGoTo0) \
    X(Raise)            /* error D */
// clang-format on

enum class Opcode : std::uint16_t {
#define X(name) name,
    TESSALOOM_OPCODES(X)
#undef X
};

struct Instruction {
    Opcode code;
    std::uint16_t a;
    std::uint16_t b;
    std::uint16_t c;

    std::int32_t D() const { return static_cast<std::int32_t>(b | static_cast<std::uint32_t>(c) << 16); }
    void SetD(std::int32_t number) {
        b = static_cast<std::uint16_t>(number);
        c = static_cast<std::uint16_t>(static_cast<std::uint32_t>(number) >> 16);
    }
};

static_assert(sizeof(Instruction) == 8);

/// A CallKind in `b` of CallMember with this bit set reaches private members.
inline constexpr std::uint16_t OwnAccess = 0x100;

/// How a name that was unknown when its text was compiled is used.
enum class NameUse : std::uint16_t {
    Value,      ///< Alone in an expression.
    Called,     ///< With parentheses in an expression.
    Statement,
};

/// Functions that need the machine itself.
enum class SpecialCall : std::uint16_t { Eval, Execute, ExecuteGlobal, GetRef, Randomize };

}  // namespace tessaloom::vbscript

// CStringT::Format and AppendFormat: the framework's printf spellings, checked, then
// handed to {fmt}'s printf. Included by CString.h; not a header of its own.
//
// The format is read once to learn what each argument must be, and every argument
// is converted to exactly that before {fmt} sees it:
//   %d %i %o %u %x %X   an integer (or character, bool, enum) of the size the
//                       modifier gives: none and l 32 bits (the framework's long),
//                       h 16, hh 8, ll, I64 and j 64, I32 32, I, z and t the
//                       pointer's size; the value is cut to that size as the
//                       framework reads it
//   %e %E %f %F %g %G %a %A  a floating-point number (l and L allowed)
//   %s  a text of the format's own width, %S one of the other width; %hs narrow
//       and %ls or %ws wide whatever the format's width. A text is a character
//       pointer or a CString/CStringA; the other width is converted through the
//       ANSI code page; a null pointer prints "(null)"
//   %c  a character of the format's own width, %C one of the other width; %hc
//       narrow, %lc or %wc wide (any integer is taken as the character's code)
//   %p  a pointer, as the framework prints it: upper-case hexadecimal, two digits
//       per byte of a pointer
//   *   as width or precision: an int argument
// Anything else (an unknown conversion, %n, a positional %1$d, a size that does
// not go with its conversion, a text where a number is due or the reverse, a text
// of the wrong width, too few arguments) raises the invalid-argument exception,
// as the framework's run-time check does:
//     try { s.Format(pszFromResources, n); }
//     catch (CInvalidArgException* e) { ...; e->Delete(); }
// or, in the framework's macros,
//     TRY { s.Format(pszFromResources, n); }
//     CATCH (CInvalidArgException, e) { ... }   // deleted by END_CATCH
//     END_CATCH
// Arguments of a type printf cannot take at all (a std::string, a struct) do not
// compile. Arguments beyond those the format uses are ignored, as printf does.
#pragma once

#include <fmt/args.h>
#include <fmt/printf.h>
#include <fmt/xchar.h>

#include <cstdint>
#include <type_traits>
#include <vector>

namespace prefa_printf
{

// What one argument of a format must be.
enum class Kind : unsigned char
{
    Integer,
    Floating,
    Text,
    OtherText,
    Character,
    OtherCharacter,
    Pointer,
    Star // a width or precision given as an argument
};

struct Slot
{
    Kind kind;
    unsigned char nBits; // of an Integer
    bool bSigned;        // of an Integer: %d and %i
};

// A format rewritten for {fmt} (sizes dropped, texts as %s, characters as %c,
// pointers as texts) and the argument each of its conversions takes, in order.
template <typename CharT>
struct Plan
{
    std::basic_string<CharT> format;
    std::vector<Slot> places;
};

// Reads a format; raises the invalid-argument exception when it is malformed.
template <typename CharT>
Plan<CharT> Parse(const CharT* pszFormat);

template <typename CharT>
using OtherChar = std::conditional_t<std::is_same<CharT, wchar_t>::value, char, wchar_t>;

template <typename CharT>
using Store = fmt::dynamic_format_arg_store<fmt::basic_printf_context_t<CharT>>;

// One character of the other width in this width, through the ANSI code page.
inline wchar_t Widen(char c)
{
    std::wstring w = AfxAnsiToWide(&c, 1);
    return w.empty() ? L'?' : w[0];
}
inline char Narrow(wchar_t c)
{
    std::string a = AfxWideToAnsi(&c, 1);
    return a.empty() ? '?' : a[0];
}
inline std::basic_string<wchar_t> Convert(const char* p, const wchar_t*) { return AfxAnsiToWide(p, std::strlen(p)); }
inline std::basic_string<char> Convert(const wchar_t* p, const char*) { return AfxWideToAnsi(p, std::wcslen(p)); }

template <typename CharT>
std::basic_string<CharT> Null()
{
    const char text[] = "(null)";
    return std::basic_string<CharT>(text, text + 6);
}

// The pointer as the framework prints %p.
template <typename CharT>
std::basic_string<CharT> PointerText(const void* p)
{
    std::string hex = fmt::format("{:0{}X}", (std::uintptr_t)p, 2 * sizeof(void*));
    return std::basic_string<CharT>(hex.begin(), hex.end());
}

// The argument's value as text of width C, when it is one.
template <typename C, typename D>
const C* TextOf(const D& a)
{
    if constexpr (std::is_same<D, const C*>::value || std::is_same<D, C*>::value)
        return a;
    else
        return a.GetString();
}

template <typename CharT, typename T>
void Push(Store<CharT>& store, const Slot& slot, const T& arg)
{
    using D = std::decay_t<const T&>; // an array argument decays to a pointer to const
    using O = OtherChar<CharT>;
    constexpr bool bInteger = std::is_integral<D>::value || std::is_enum<D>::value;
    constexpr bool bFloating = std::is_floating_point<D>::value;
    constexpr bool bOwnText = std::is_same<D, const CharT*>::value || std::is_same<D, CharT*>::value ||
                              std::is_same<D, CStringT<CharT>>::value;
    constexpr bool bOtherText = std::is_same<D, const O*>::value || std::is_same<D, O*>::value ||
                                std::is_same<D, CStringT<O>>::value;
    constexpr bool bPointer = std::is_pointer<D>::value || std::is_same<D, std::nullptr_t>::value;
    static_assert(bInteger || bFloating || bOwnText || bOtherText || bPointer,
                  "CString::Format takes numbers, characters, texts (character pointers, CString, CStringA) "
                  "and pointers");
    const D& a = arg;

    switch (slot.kind)
    {
    case Kind::Integer:
    case Kind::Star:
        if constexpr (bInteger)
        {
            using U = std::conditional_t<std::is_enum<D>::value, std::underlying_type<D>, std::common_type<D>>;
            unsigned long long v = (unsigned long long)(typename U::type)a;
            if (slot.kind == Kind::Star)
                store.push_back((int)v);
            else if (slot.nBits == 64)
                slot.bSigned ? store.push_back((long long)v) : store.push_back(v);
            else
            {
                // The low nBits as the framework reads them, then sign-extended for %d.
                unsigned long long mask = (1ull << slot.nBits) - 1, low = v & mask;
                if (slot.bSigned)
                    store.push_back((int)(long long)((low ^ (mask ^ (mask >> 1))) - (mask ^ (mask >> 1))));
                else
                    store.push_back((unsigned)low);
            }
            return;
        }
        break;
    case Kind::Floating:
        if constexpr (bFloating)
        {
            store.push_back((double)a);
            return;
        }
        break;
    case Kind::Character:
    case Kind::OtherCharacter:
        if constexpr (bInteger)
        {
            // A character of the other width, given as such or asked for by %C, is
            // converted; any other integer is this width's character code.
            if (slot.kind == Kind::OtherCharacter || std::is_same<D, O>::value)
            {
                if constexpr (std::is_same<CharT, wchar_t>::value)
                    store.push_back(Widen((char)a));
                else
                    store.push_back(Narrow((wchar_t)a));
            }
            else
                store.push_back((CharT)a);
            return;
        }
        break;
    case Kind::Text:
        if constexpr (bOwnText)
        {
            const CharT* p = TextOf<CharT>(a);
            p ? store.push_back(p) : store.push_back(Null<CharT>());
            return;
        }
        break;
    case Kind::OtherText:
        if constexpr (bOtherText)
        {
            const O* p = TextOf<O>(a);
            store.push_back(p ? Convert(p, (const CharT*)nullptr) : Null<CharT>());
            return;
        }
        break;
    case Kind::Pointer:
        if constexpr (bPointer)
        {
            store.push_back(PointerText<CharT>((const void*)a));
            return;
        }
        break;
    }
    AfxThrowInvalidArgException();
}

template <typename CharT, typename... Args>
std::basic_string<CharT> Sprintf(const CharT* pszFormat, const Args&... args)
{
    Plan<CharT> plan = Parse(pszFormat);
    if (plan.places.size() > sizeof...(Args))
        AfxThrowInvalidArgException();
    Store<CharT> store;
    store.reserve(plan.places.size(), plan.places.size());
    std::size_t i = 0;
    // Each argument the format uses, in order; the rest are ignored.
    auto push = [&](const auto& a) {
        if (i < plan.places.size())
            Push<CharT>(store, plan.places[i], a);
        ++i;
    };
    (void)push;
    (push(args), ...);
    try
    {
        return fmt::vsprintf(fmt::basic_string_view<CharT>(plan.format), store);
    }
    catch (const fmt::format_error&)
    {
        AfxThrowInvalidArgException();
    }
}

} // namespace prefa_printf

template <typename CharT>
template <typename... Args>
void CStringT<CharT>::Format(PCXSTR pszFormat, const Args&... args)
{
    m_s = prefa_printf::Sprintf<CharT>(pszFormat ? pszFormat : EmptyLiteral(), args...);
}

template <typename CharT>
template <typename... Args>
void CStringT<CharT>::AppendFormat(PCXSTR pszFormat, const Args&... args)
{
    m_s += prefa_printf::Sprintf<CharT>(pszFormat ? pszFormat : EmptyLiteral(), args...);
}

// Reading the framework's printf formats (see CStringFormat.h).
#include "CString.h"

namespace prefa_printf
{
namespace
{
bool IsDigit(int c)
{
    return c >= '0' && c <= '9';
}

// The size modifier of a conversion, as written.
enum class Size
{
    None,
    hh,
    h,
    l,
    ll,
    L,
    w,
    I,
    I32,
    I64,
    j,
    z,
    t
};

template <typename CharT>
Size ReadSize(const CharT*& p)
{
    auto next = [&](const char* text) {
        std::size_t n = std::char_traits<char>::length(text);
        for (std::size_t i = 0; i < n; ++i)
            if (p[i] != (CharT)text[i])
                return false;
        p += n;
        return true;
    };
    if (next("hh")) return Size::hh;
    if (next("h")) return Size::h;
    if (next("ll")) return Size::ll;
    if (next("l")) return Size::l;
    if (next("L")) return Size::L;
    if (next("w")) return Size::w;
    if (next("I64")) return Size::I64;
    if (next("I32")) return Size::I32;
    if (next("I")) return Size::I;
    if (next("j")) return Size::j;
    if (next("z")) return Size::z;
    if (next("t")) return Size::t;
    return Size::None;
}

// Bits of an integer conversion with this size; 0 when the size does not go with one.
unsigned char IntegerBits(Size size)
{
    switch (size)
    {
    case Size::None:
    case Size::l:
    case Size::I32: return 32;
    case Size::hh: return 8;
    case Size::h: return 16;
    case Size::ll:
    case Size::I64:
    case Size::j: return 64;
    case Size::I:
    case Size::t: return (unsigned char)(8 * sizeof(void*));
    case Size::z: return (unsigned char)(8 * sizeof(std::size_t));
    default: return 0;
    }
}

// The kind of a %c or %s argument: own width unless the case or the size says the
// other one (bWide tells whether the format is wide).
bool OtherWidth(Size size, bool bUpper, bool bWide, bool* pOk)
{
    *pOk = true;
    switch (size)
    {
    case Size::None: return bUpper;
    case Size::h: return bWide;
    case Size::l:
    case Size::w: return !bWide;
    default: *pOk = false; return false;
    }
}
} // namespace

template <typename CharT>
Plan<CharT> Parse(const CharT* p)
{
    const bool bWide = std::is_same<CharT, wchar_t>::value;
    Plan<CharT> plan;
    std::basic_string<CharT>& out = plan.format;
    out.reserve(std::char_traits<CharT>::length(p) + 8);
    while (*p)
    {
        if (*p != '%')
        {
            out += *p++;
            continue;
        }
        ++p;
        if (*p == '%')
        {
            out.append(2, (CharT)'%');
            ++p;
            continue;
        }
        // %[flags][width][.precision][size]type
        std::basic_string<CharT> flags, width, precision;
        while (*p == '-' || *p == '+' || *p == ' ' || *p == '#' || *p == '0')
            flags += *p++;
        if (*p == '*')
        {
            width += *p++;
            plan.places.push_back({Kind::Star, 0, false});
        }
        else
            while (IsDigit(*p))
                width += *p++;
        if (*p == '.')
        {
            precision += *p++;
            if (*p == '*')
            {
                precision += *p++;
                plan.places.push_back({Kind::Star, 0, false});
            }
            else
                while (IsDigit(*p))
                    precision += *p++;
        }
        const Size size = ReadSize(p);
        const CharT type = *p ? *p++ : 0;
        Slot slot{Kind::Integer, 0, false};
        char conversion = (char)type;
        bool ok = true;
        switch (type)
        {
        case 'd':
        case 'i':
        case 'o':
        case 'u':
        case 'x':
        case 'X':
            slot.nBits = IntegerBits(size);
            slot.bSigned = type == 'd' || type == 'i';
            ok = slot.nBits != 0;
            break;
        case 'e':
        case 'E':
        case 'f':
        case 'F':
        case 'g':
        case 'G':
        case 'a':
        case 'A':
            slot.kind = Kind::Floating;
            ok = size == Size::None || size == Size::l || size == Size::L;
            break;
        case 'c':
        case 'C':
            slot.kind = OtherWidth(size, type == 'C', bWide, &ok) ? Kind::OtherCharacter : Kind::Character;
            conversion = 'c';
            break;
        case 's':
        case 'S':
            slot.kind = OtherWidth(size, type == 'S', bWide, &ok) ? Kind::OtherText : Kind::Text;
            conversion = 's';
            break;
        case 'p':
            // Printed as the text of the pointer: its width and justification stay.
            slot.kind = Kind::Pointer;
            ok = size == Size::None;
            conversion = 's';
            flags = flags.find((CharT)'-') == std::basic_string<CharT>::npos ? std::basic_string<CharT>()
                                                                               : std::basic_string<CharT>(1, '-');
            precision.clear();
            break;
        default:
            // %n, %Z, a positional argument, an unknown letter, the end of the text.
            ok = false;
        }
        if (!ok)
            AfxThrowInvalidArgException();
        plan.places.push_back(slot);
        out += (CharT)'%';
        out += flags;
        out += width;
        out += precision;
        out += (CharT)conversion;
    }
    return plan;
}

template Plan<char> Parse(const char*);
template Plan<wchar_t> Parse(const wchar_t*);

} // namespace prefa_printf

#include "utility/format.h"

#include "utility/text_writer.h"

namespace {

constexpr ULONG kLongestString = 512;
constexpr ULONG kLargestNumber = 99999; // of a width or a precision

struct Conversion {
    bool left = false;
    bool zero = false;
    bool has_precision = false;
    ULONG width = 0;
    ULONG precision = 0;
};

ULONG WrittenLength(const char*, ULONG length, WCHAR) { return length; }
ULONG WrittenLength(const char*, ULONG length, char) { return length; }
ULONG WrittenLength(const WCHAR*, ULONG length, WCHAR) { return length; }
ULONG WrittenLength(const WCHAR* text, ULONG length, char)
{
    ULONG octets = 0;
    ForEachUtf8(text, length, [&octets](const char*, ULONG count) { octets += count; });
    return octets;
}

template <class Char>
struct OtherWidth;
template <>
struct OtherWidth<char> {
    using Type = WCHAR;
};
template <>
struct OtherWidth<WCHAR> {
    using Type = char;
};

template <class Char>
class Formatter {
public:
    Formatter(Char* out, ULONG room, va_list arguments) : m_out(out, room) { va_copy(m_arguments, arguments); }
    ~Formatter() { va_end(m_arguments); }
    Formatter(const Formatter&) = delete;
    Formatter& operator=(const Formatter&) = delete;

    ULONG Run(const Char* format)
    {
        if (!format) Text(Conversion(), format);
        while (format && *format && !m_out.Full()) {
            if (*format == '%') {
                format = Convert(format);
            } else {
                m_out.Put(*format++);
            }
        }
        return m_out.Finish();
    }

private:
    static ULONG ReadNumber(const Char*& at)
    {
        ULONG number = 0;
        for (; *at >= '0' && *at <= '9'; ++at) {
            if (number <= kLargestNumber) number = number * 10 + static_cast<ULONG>(*at - '0');
        }
        return number < kLargestNumber ? number : kLargestNumber;
    }

    // Writes the conversion at `start` and returns where the format goes on.
    const Char* Convert(const Char* start)
    {
        const Char* at = start + 1;
        Conversion conversion;
        for (; *at == '-' || *at == '0'; ++at)
            (*at == '-' ? conversion.left : conversion.zero) = true;
        conversion.width = ReadNumber(at);
        if (*at == '.') {
            ++at;
            conversion.has_precision = true;
            conversion.precision = ReadNumber(at);
        }
        if (*at == 'l') {
            ++at;
        } else if (*at == 'h') {
            at += at[1] == 'h' ? 2 : 1;
        }

        switch (*at) {
        case 'd':
        case 'i':
            Signed(conversion, va_arg(m_arguments, int32_t));
            break;
        case 'u':
            Integer(conversion, va_arg(m_arguments, ULONG), false, 10, 'A');
            break;
        case 'x':
            Integer(conversion, va_arg(m_arguments, ULONG), false, 16, 'a');
            break;
        case 'X':
            Integer(conversion, va_arg(m_arguments, ULONG), false, 16, 'A');
            break;
        case 'p':
            Pointer(conversion, va_arg(m_arguments, const void*));
            break;
        case 'c':
            Padded(conversion, 1, [&] { m_out.Put(static_cast<Char>(va_arg(m_arguments, int))); });
            break;
        case 's':
            Text(conversion, va_arg(m_arguments, const Char*));
            break;
        case 'S':
            Text(conversion, va_arg(m_arguments, const typename OtherWidth<Char>::Type*));
            break;
        case '%':
            m_out.Put('%');
            break;
        default:
            PutText(m_out, start, static_cast<ULONG>(at - start));
            return at;
        }
        return at + 1;
    }

    void Signed(const Conversion& conversion, int32_t value)
    {
        const ULONG bits = static_cast<ULONG>(value);
        Integer(conversion, value < 0 ? 0u - bits : bits, value < 0, 10, 'A');
    }

    void Pointer(Conversion conversion, const void* pointer)
    {
        conversion.has_precision = true;
        conversion.precision = 8;
        Integer(conversion, static_cast<ULONG>(reinterpret_cast<uintptr_t>(pointer)), false, 16, 'A');
    }

    void Integer(const Conversion& conversion, ULONG magnitude, bool negative, ULONG base, char letter)
    {
        Char digits[10]; // of the largest number, the last digit first
        ULONG count = 0;
        for (; magnitude > 0; magnitude /= base) {
            const ULONG digit = magnitude % base;
            digits[count++] = static_cast<Char>(digit < 10 ? '0' + digit : static_cast<ULONG>(letter) + digit - 10);
        }
        const ULONG sign = negative ? 1 : 0;
        ULONG least = conversion.has_precision ? conversion.precision : 1;
        if (conversion.zero && !conversion.left && !conversion.has_precision && conversion.width > least + sign) {
            least = conversion.width - sign;
        }
        const ULONG zeros = least > count ? least - count : 0;
        Padded(conversion, sign + zeros + count, [&] {
            if (negative) m_out.Put('-');
            Repeat('0', zeros);
            while (count > 0)
                m_out.Put(digits[--count]);
        });
    }

    template <class From>
    void Text(const Conversion& conversion, const From* text)
    {
        if (!text) return Text(conversion, "(null)");
        const bool cut = conversion.has_precision && conversion.precision < kLongestString;
        const ULONG length = BoundedLength(text, cut ? conversion.precision : kLongestString);
        Padded(conversion, WrittenLength(text, length, Char()), [&] { PutText(m_out, text, length); });
    }

    // Calls `put`, which writes `length` characters, with the blanks that the width asks for on the proper side.
    template <class Put>
    void Padded(const Conversion& conversion, ULONG length, Put put)
    {
        const ULONG blanks = conversion.width > length ? conversion.width - length : 0;
        if (!conversion.left) Repeat(' ', blanks);
        put();
        if (conversion.left) Repeat(' ', blanks);
    }

    void Repeat(Char character, ULONG count)
    {
        for (; count > 0 && !m_out.Full(); --count)
            m_out.Put(character);
    }

    TextWriter<Char> m_out;
    va_list m_arguments;
};

} // namespace

ULONG FormatNarrow(char* out, ULONG room, const char* format, va_list arguments)
{
    return Formatter<char>(out, room, arguments).Run(format);
}

ULONG FormatWide(WCHAR* out, ULONG room, const WCHAR* format, va_list arguments)
{
    return Formatter<WCHAR>(out, room, arguments).Run(format);
}

ULONG PrintNarrow(char* out, ULONG room, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const ULONG length = FormatNarrow(out, room, format, arguments);
    va_end(arguments);
    return length;
}

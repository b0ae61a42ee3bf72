// One call of an entry point: it takes the sim lock, writes the journal line, applies the fault rules, and writes the
// outputs, as a healthy library would or as the hostile rule of the entry point says.
//
//     extern "C" ULONG GetSessionState(ULONG* state)
//     {
//         Call call(EntryPoint::GetSessionState);
//         if (const ULONG refused = call.Refused()) return refused;
//         call.Put(state, TheModule().session.state);
//         return call.Done();
//     }
#pragma once

#include <string.h>

#include "sim/faults.h"
#include "sim/module.h"

namespace sim {

// How an argument stands in the journal line. Integers and texts stand as they are.
struct CallbackArgument { // set, or null
    bool set;
};
template <class T>
struct PointedArgument { // the value at a pointer, or null: the capacity that an in/out count declares
    const T* value;
};
template <class T>
PointedArgument<T> At(const T* value)
{
    return {value};
}
// A member of a record, or null for a null record.
template <class T, class M>
PointedArgument<M> MemberOf(const T* record, M T::*member)
{
    return {record ? &(record->*member) : nullptr};
}
struct CountedText { // "text", or null
    const BYTE* octets;
    ULONG length;
};
// As much of it as there is room for in its array.
template <ULONG kRoom>
CountedText Bounded(const BYTE (&octets)[kRoom], ULONG length)
{
    return {octets, length < kRoom ? length : kRoom};
}
template <class T>
struct ArrayArgument { // [1 2 3], or null
    const T* values;
    ULONG count;
};

class Call {
public:
    // `arguments`: the inputs, in order.
    template <class... Arguments>
    explicit Call(EntryPoint entry, const Arguments&... arguments) : m_entry(entry)
    {
        char line[640];
        Writer writer(line, sizeof(line));
        writer.Add(NameOf(entry)).Character('(');
        [[maybe_unused]] bool first = true;
        ((first ? writer : writer.Add(", "), first = false, WriteArgument(writer, arguments)), ...);
        writer.Character(')');
        Begin(line);
    }

    // The status of a fault rule, or 0.
    ULONG Fault() const { return m_fault; }
    // The same, and also the refusal of a module that is absent.
    ULONG Refused() const;
    // The status of a call whose outputs have been put: of the first one that failed, or 0.
    ULONG Done() const { return m_status; }

    // Writes one value. A null pointer makes the call fail with kInvalidArgument.
    template <class T>
    void Put(T* out, T value)
    {
        if (!out) return Fail(kInvalidArgument);
        if (Scribbles()) value = static_cast<T>(~T{0});
        *out = value;
    }
    template <class T>
    void PutOptional(T* out, T value)
    {
        if (out) Put(out, value);
    }
    // Writes nothing, but what the hostile rule says: an output of a call that fails.
    template <class T>
    void ScribbleOn(T* out)
    {
        if (out && Scribbles()) *out = static_cast<T>(~T{0});
    }
    // Writes 64 bits, wherever the pointer points.
    void PutLong(void* out, ULONGLONG value);
    // Writes a text into `room` octets: cut there, and terminated if there is room for that.
    void PutText(char* out, ULONG room, const char* text);
    // The same in 16-bit characters, of a text in UTF-8.
    void PutWideText(WCHAR* out, ULONG room, const char* text);
    // Writes a text without a terminator: `*length` is its room, then its length.
    void PutCountedText(WORD* length, BYTE* out, const char* text);
    // Writes as many of `available` values as the room allows. `value(i)` gives one.
    template <class T, class Values>
    void PutArray(T* out, ULONG room, ULONG available, Values value)
    {
        PutRecords<T>(out, room, available, value);
    }
    // The same into a buffer that the interface declares as octets; `room` counts records.
    template <class T, class Values>
    void PutRecords(void* out, ULONG room, ULONG available, Values value)
    {
        if (!out) return Fail(kInvalidArgument);
        if (Scribbles()) {
            memset(out, 0xFF, sizeof(T) * room);
            return;
        }
        const ULONG count = ArrayCount(room, available);
        for (ULONG i = 0; i < count; ++i) {
            const T one = available > 0 ? value(i % available) : T{};
            memcpy(static_cast<BYTE*>(out) + i * sizeof(T), &one, sizeof(T));
        }
    }
    // Writes one record.
    template <class T>
    void PutRecord(T* out, const T& record)
    {
        PutRecords<T>(out, 1, 1, [&](ULONG) { return record; });
    }
    // A count or length within a record: `count`, or what the hostile rule says.
    template <class T>
    T Told(T count) const
    {
        return m_hostile.kind == Hostility::Count ? static_cast<T>(m_hostile.count) : count;
    }
    // Writes how many values PutArray wrote, after it: the count is also the room. Null is taken as room 0.
    template <class T>
    void PutCount(T* count, ULONG available)
    {
        if (!count) return Fail(kInvalidArgument);
        if (Scribbles())
            *count = static_cast<T>(~T{0});
        else if (m_hostile.kind == Hostility::Count)
            *count = static_cast<T>(m_hostile.count);
        else if (available < *count)
            *count = static_cast<T>(available);
    }
    // Writes how many values there are, even where PutArray had room for fewer.
    template <class T>
    void PutTotal(T* count, ULONG available)
    {
        if (m_hostile.kind == Hostility::Count) available = m_hostile.count;
        Put(count, static_cast<T>(available));
    }
    template <class T>
    static ULONG Room(const T* count)
    {
        return count ? *count : 0;
    }

    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

private:
    static void WriteArgument(Writer& writer, const char* text) { writer.Quoted(text, 200); }
    static void WriteArgument(Writer& writer, char* text) { writer.Quoted(text, 200); }
    static void WriteArgument(Writer& writer, ULONG value) { writer.Unsigned(value); }
    static void WriteArgument(Writer& writer, CountedText text)
    {
        if (text.octets)
            writer.QuotedOctets(text.octets, text.length, 200);
        else
            writer.Add("null");
    }
    static void WriteArgument(Writer& writer, CallbackArgument callback) { writer.Add(callback.set ? "set" : "null"); }
    template <class T>
    static void WriteArgument(Writer& writer, PointedArgument<T> argument)
    {
        if (argument.value)
            writer.Unsigned(*argument.value);
        else
            writer.Add("null");
    }
    template <class T>
    static void WriteArgument(Writer& writer, ArrayArgument<T> argument)
    {
        if (!argument.values) {
            writer.Add("null");
            return;
        }
        writer.Character('[');
        for (ULONG i = 0; i < argument.count; ++i) {
            if (i > 0) writer.Character(' ');
            writer.Number(argument.values[i]);
        }
        writer.Character(']');
    }

    void Begin(const char* line);
    void Fail(ULONG status)
    {
        if (m_status == 0) m_status = status;
    }
    bool Scribbles() const { return m_hostile.kind == Hostility::Scribble; }
    // A hostile count comes with all of the room written.
    ULONG ArrayCount(ULONG room, ULONG available) const
    {
        return available < room && m_hostile.kind == Hostility::None ? available : room;
    }

    Guard m_guard;
    const EntryPoint m_entry;
    HostileRule m_hostile = {};
    ULONG m_fault = 0;
    ULONG m_status = 0;
};

} // namespace sim

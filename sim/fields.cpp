#include "sim/fields.h"

#include <string.h>

namespace sim {

constexpr const FieldTable* kTables[] = {
    &kConnectionFields,  &kIdentityFields,      &kPowerFields,      &kNetworkFields,    &kSessionFields,
    &kFirmwareFields,    &kSmsFields,           &kUimFields,        &kPositionFields,   &kImagesFields,
    &kAudioFields,       &kM2mAudioFields,      &kDataFields,       &kProfileFields,    &kMobileIPFields,
    &kNetworkScanFields, &kCdmaFields,          &kSubscriberFields, &kManagementFields, &kExtendedManagementFields,
    &kCallsFields,       &kSupplementaryFields, &kUssdFields,       &kPhonebookFields,  &kCellFields,
    &kAtFields,          &kSimFileFields,       &kOperatorFields};

static const Field* FindField(Command& command)
{
    const char* name = command.Word("field");
    if (command.Failed()) return nullptr;
    for (const FieldTable* table : kTables) {
        for (ULONG i = 0; i < table->count; ++i) {
            if (Equal(table->fields[i].name, name)) return &table->fields[i];
        }
    }
    command.Fail().Add("unknown field ").Quoted(name, 64);
    return nullptr;
}

static ULONGLONG LoadNumber(const Field& field)
{
    ULONGLONG value = 0; // both hosts are little-endian
    memcpy(&value, field.storage, field.size);
    return value;
}

// A list's storage: the count, then the rows.
static ULONG* ListCount(const Field& field) { return static_cast<ULONG*>(field.storage); }
static int32_t* ListRow(const Field& field, ULONG row)
{
    return reinterpret_cast<int32_t*>(ListCount(field) + 1) + size_t{row} * field.columns;
}

// "-70:5" into one row. Only the first column has the field's limits. Returns what follows it.
static const char* SetRow(Command& command, const Field& field, const char* word, int32_t* row)
{
    for (ULONG column = 0; column < field.columns; ++column) {
        char part[16];
        ULONG length = 0;
        while (*word && *word != ':' && *word != ' ' && length + 1 < sizeof(part))
            part[length++] = *word++;
        part[length] = 0;
        const bool separated = column + 1 < field.columns ? *word == ':' : *word == 0 || *word == ' ';
        bool negative = false;
        ULONGLONG magnitude = 0;
        if (!separated || !ParseNumber(part, &negative, &magnitude) || magnitude > 0x7FFFFFFF) {
            command.Fail().Add(field.name).Add(" takes rows of ").Unsigned(field.columns).Add(" numbers joined by ':'");
            return "";
        }
        if (*word == ':') ++word;
        const int64_t value = negative ? -static_cast<int64_t>(magnitude) : static_cast<int64_t>(magnitude);
        const int64_t low = column == 0 ? field.low : 0;
        const int64_t high = column == 0 ? static_cast<int64_t>(field.high) : 0x7FFFFFFF;
        if (value < low || value > high) {
            command.Fail().Add(part).Add(" is not within ").Number(low).Add(" and ").Number(high);
            return "";
        }
        row[column] = static_cast<int32_t>(value);
    }
    while (*word == ' ')
        ++word;
    return word;
}

static void SetList(Command& command, const Field& field)
{
    constexpr ULONG kMaxValues = 256;
    int32_t values[kMaxValues];
    ULONG rows = 0;
    if (command.Take("none")) command.End();
    while (command.More()) {
        const char* word = command.Word("row"); // or several, quoted as one word
        do {
            if (rows == field.room) {
                command.Fail().Add(field.name).Add(" has more than ").Unsigned(field.room).Add(" rows");
                return;
            }
            word = SetRow(command, field, word, values + size_t{rows} * field.columns);
            ++rows;
        } while (*word && !command.Failed());
    }
    if (command.Failed()) return;
    *ListCount(field) = rows;
    memcpy(ListRow(field, 0), values, size_t{rows} * field.columns * sizeof(int32_t));
}

static void SetAddress(Command& command, const Field& field)
{
    const char* word = command.Word("address");
    BYTE address[4];
    for (ULONG i = 0; i < 4 && !command.Failed(); ++i) {
        ULONG value = 0;
        ULONG digits = 0;
        for (; *word >= '0' && *word <= '9' && digits < 4; ++word, ++digits)
            value = value * 10 + ULONG(*word - '0');
        const bool separated = i < 3 ? *word == '.' : *word == 0;
        if (digits == 0 || value > 255 || !separated) {
            command.Fail().Add(field.name).Add(" takes an address such as 192.0.2.1");
            return;
        }
        address[i] = static_cast<BYTE>(value);
        if (*word == '.') ++word;
    }
    command.End();
    if (!command.Failed()) memcpy(field.storage, address, sizeof(address));
}

void SetField(Command& command)
{
    const Field* field = FindField(command);
    if (!field) return;
    switch (field->kind) {
    case FieldKind::Number: {
        const ULONGLONG value = command.Unsigned(field->name, field->high);
        command.End();
        if (!command.Failed()) memcpy(field->storage, &value, field->size);
        return;
    }
    case FieldKind::Text: {
        const char* text = command.Word("text");
        command.End();
        if (command.Failed()) return;
        if (!Copy(static_cast<char*>(field->storage), field->room, text)) {
            command.Fail().Add(field->name).Add(" takes at most ").Unsigned(field->room - 1).Add(" octets");
        }
        return;
    }
    case FieldKind::List:
        SetList(command, *field);
        return;
    case FieldKind::Octets: {
        BYTE octets[1024];
        const ULONG room = field->room < sizeof(octets) ? field->room : ULONG(sizeof(octets));
        const ULONG count = command.HexOctets(field->name, octets, room);
        command.End();
        if (command.Failed()) return;
        *ListCount(*field) = count;
        memcpy(ListCount(*field) + 1, octets, count);
        return;
    }
    case FieldKind::Address:
        SetAddress(command, *field);
        return;
    }
}

static void GetList(const Field& field, Writer& reply)
{
    for (ULONG row = 0; row < *ListCount(field); ++row) {
        if (row > 0) reply.Character(' ');
        for (ULONG column = 0; column < field.columns; ++column) {
            if (column > 0) reply.Character(':');
            reply.Number(ListRow(field, row)[column]);
        }
    }
}

void GetField(Command& command)
{
    const Field* field = FindField(command);
    command.End();
    if (!field || command.Failed()) return;
    Writer& reply = command.Reply();
    switch (field->kind) {
    case FieldKind::Number:
        reply.Unsigned(LoadNumber(*field));
        return;
    case FieldKind::Text:
        reply.Add(static_cast<const char*>(field->storage));
        return;
    case FieldKind::List:
        GetList(*field, reply);
        return;
    case FieldKind::Octets:
        reply.HexOctets(reinterpret_cast<const BYTE*>(ListCount(*field) + 1), *ListCount(*field));
        return;
    case FieldKind::Address: {
        const BYTE* address = static_cast<const BYTE*>(field->storage);
        for (ULONG i = 0; i < 4; ++i) {
            if (i > 0) reply.Character('.');
            reply.Unsigned(address[i]);
        }
        return;
    }
    }
}

void ListFields(Command& command)
{
    command.End();
    if (command.Failed()) return;
    for (const FieldTable* table : kTables) {
        for (ULONG i = 0; i < table->count; ++i) {
            if (command.Reply().Length() > 0) command.Reply().Character('\n');
            command.Reply().Add(table->fields[i].name);
        }
    }
}

} // namespace sim

// The cells that the module hears, and the messages that wait for the subscriber.
#include <iterator>

#include "sim/call.h"
#include "sim/fields.h"
#include "sim/reset.h"

namespace sim {

static constexpr Field kFields[] = {
    NumberField("cell.id", g_module.cell.id),
    NumberField("cell.lac", g_module.cell.lac),
    NumberField("cell.timing-advance", g_module.cell.timing_advance),
    ListField("cell.gsm", g_module.cell.gsm, 0, 1023),
    ListField("cell.umts", g_module.cell.umts, 0, 16383),
    ListField("cell.umts-gsm", g_module.cell.umts_gsm, 0, 1023),
    ListField("cell.latitude", g_module.cell.latitude, -1296000, 1296000),
    ListField("cell.longitude", g_module.cell.longitude, -2592000, 2592000),
    NumberField("cell.sid", g_module.cell.sid, 32767),
    NumberField("cell.nid", g_module.cell.nid),
    NumberField("cell.base", g_module.cell.base),
    NumberField("cell.pn", g_module.cell.pn, 511),
    ListField("waiting.messages", g_module.waiting.messages, 0, 4),
};
const FieldTable kCellFields = {kFields, std::size(kFields)};

template <ULONG kRows, ULONG kColumns, ULONG kGiven>
static void Fill(List<kRows, kColumns>& list, const int32_t (&values)[kGiven][kColumns])
{
    static_assert(kGiven <= kRows);
    list.count = kGiven;
    memcpy(list.values, values, sizeof(values));
}

void ResetCellLocation()
{
    CellState& cell = TheModule().cell;
    cell = {};
    cell.id = 0x1A2B3;
    cell.lac = 0x0101;
    cell.timing_advance = 2;
    Fill(cell.gsm, {{62, 20, 45, 0x1A2B, 0x0101}, {75, 33, 30, 0x1A2C, 0x0101}});
    Fill(cell.umts, {{10700, 120, 75, 6}, {10700, 301, 88, 11}});
    Fill(cell.umts_gsm, {{62, 20, 81}});
    Fill(cell.latitude, {{0}});
    Fill(cell.longitude, {{0}});
    cell.sid = 1;
    cell.nid = 1;
    cell.base = 100;
    cell.pn = 12;
    TheModule().waiting = {};
}

// MCC and MNC of two digits, 3GPP TS 24.008, 10.5.1.3.
static void FillPlmn(BYTE (&plmn)[3])
{
    const NetworkState& network = TheModule().network;
    const ULONG mcc = network.mcc % 1000u;
    const ULONG mnc = network.mnc % 1000u;
    const ULONG third = mnc > 99 ? mnc % 10 : 15; // no third digit
    const ULONG two = mnc > 99 ? mnc / 10 : mnc;
    plmn[0] = static_cast<BYTE>(mcc / 10 % 10 << 4 | mcc / 100);
    plmn[1] = static_cast<BYTE>(third << 4 | mcc % 10);
    plmn[2] = static_cast<BYTE>(two % 10 << 4 | two / 10);
}

static geranCellInfo Geran(const Call& call)
{
    const CellState& cell = TheModule().cell;
    const auto& rows = cell.gsm.values;
    geranCellInfo info = {};
    info.cellId = cell.id & 0xFFFF;
    info.timingAdvance = cell.timing_advance;
    info.lac = cell.lac;
    if (cell.gsm.count > 0) {
        info.arfcn = static_cast<WORD>(rows[0][0]);
        info.bsic = static_cast<BYTE>(rows[0][1]);
        info.rxLevel = static_cast<WORD>(rows[0][2]);
    }
    FillPlmn(info.plmn);
    BYTE count = 0;
    for (ULONG i = 1; i < cell.gsm.count; ++i) {
        geranNeighbourCell& other = info.neighbours[count++];
        other.arfcn = static_cast<WORD>(rows[i][0]);
        other.bsic = static_cast<BYTE>(rows[i][1]);
        other.rxLevel = static_cast<WORD>(rows[i][2]);
        other.cellId = static_cast<ULONG>(rows[i][3]);
        other.lac = static_cast<WORD>(rows[i][4]);
        memcpy(other.plmn, info.plmn, sizeof(other.plmn));
    }
    info.neighbourCount = call.Told(count);
    return info;
}

static umtsCellInfo Umts(const Call& call)
{
    const CellState& cell = TheModule().cell;
    const auto& rows = cell.umts.values;
    umtsCellInfo info = {};
    info.cellId = cell.id;
    info.lac = cell.lac;
    if (cell.umts.count > 0) {
        info.uarfcn = static_cast<WORD>(rows[0][0]);
        info.psc = static_cast<WORD>(rows[0][1]);
        info.rscp = static_cast<int16_t>(-rows[0][2]);
        info.ecio = static_cast<int16_t>(-rows[0][3]);
    }
    FillPlmn(info.plmn);
    BYTE count = 0;
    for (ULONG i = 1; i < cell.umts.count; ++i) {
        info.umts[count++] = {static_cast<WORD>(rows[i][0]), static_cast<WORD>(rows[i][1]),
                              static_cast<int16_t>(-rows[i][2]), static_cast<int16_t>(-rows[i][3])};
    }
    info.umtsCount = call.Told(count);
    const auto& others = cell.umts_gsm;
    for (ULONG i = 0; i < others.count; ++i) {
        info.geran[i] = {static_cast<WORD>(others.values[i][0]), static_cast<int16_t>(-others.values[i][2]),
                         static_cast<BYTE>(others.values[i][1]), 0};
    }
    info.geranCount = call.Told(static_cast<BYTE>(others.count));
    return info;
}

static cdmaCellInfo Cdma()
{
    const CellState& cell = TheModule().cell;
    const int32_t latitude = cell.latitude.count > 0 ? cell.latitude.values[0][0] : 0;
    const int32_t longitude = cell.longitude.count > 0 ? cell.longitude.values[0][0] : 0;
    return {latitude, longitude, cell.sid, cell.nid, cell.base, cell.pn};
}

// Which records have something to tell: those of the radio interfaces in use.
static ULONG CellsPresent()
{
    const NetworkState& network = TheModule().network;
    ULONG present = 0;
    for (ULONG i = 0; i < network.interfaces.count && network.registration == 1; ++i) {
        const int32_t radio = network.interfaces.values[i][0];
        if (radio == GOBI_RADIO_GSM) present |= GOBI_CELL_GERAN;
        if (radio == GOBI_RADIO_UMTS) present |= GOBI_CELL_UMTS;
        if (radio == GOBI_RADIO_CDMA_1XRTT || radio == GOBI_RADIO_CDMA_1XEVDO) present |= GOBI_CELL_CDMA;
    }
    return present;
}

} // namespace sim

using namespace sim;

extern "C" ULONG GetCellLocationInfo(geranCellInfo* geran, umtsCellInfo* umts, cdmaCellInfo* cdma, ULONG* present)
{
    Call call(EntryPoint::GetCellLocationInfo);
    if (const ULONG refused = call.Refused()) return refused;
    const ULONG cells = CellsPresent();
    call.PutRecord(geran, cells & GOBI_CELL_GERAN ? Geran(call) : geranCellInfo{});
    call.PutRecord(umts, cells & GOBI_CELL_UMTS ? Umts(call) : umtsCellInfo{});
    call.PutRecord(cdma, cells & GOBI_CELL_CDMA ? Cdma() : cdmaCellInfo{});
    call.Put(present, cells);
    return call.Done();
}

extern "C" ULONG GetWaitingMsgInfo(waitingMsgInfo* info)
{
    Call call(EntryPoint::GetWaitingMsgInfo);
    if (const ULONG refused = call.Refused()) return refused;
    const auto& messages = TheModule().waiting.messages;
    waitingMsgInfo told = {};
    for (ULONG i = 0; i < messages.count; ++i) {
        const auto& row = messages.values[i];
        told.entries[i] = {static_cast<BYTE>(row[0]), static_cast<BYTE>(row[1]), static_cast<BYTE>(row[2])};
    }
    told.count = call.Told(static_cast<BYTE>(messages.count));
    call.PutRecord(info, told);
    return call.Done();
}

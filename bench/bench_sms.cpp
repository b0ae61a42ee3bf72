// How long the message codecs take. bench_sms_instructions counts what they execute, which tells more on a busy
// machine.
#include <benchmark/benchmark.h>

#include "bench/goals.h"
#include "bench/module.h"
#include "bench/sms_cases.h"

namespace {

void Decode(benchmark::State& state, const sms_cases::Deliver& message)
{
    static ORV_GSM_SMS_IN record;
    ORV_RCODE result = ORV_RCODE_FAILED;
    for (auto _ : state)
        benchmark::DoNotOptimize(result = DecodeCompletePDU(message.pdu, message.length, &record));
    if (result != ORV_RCODE_OK || record.uUserDataLen == 0) state.SkipWithError("not decoded");
}

void Deliver(benchmark::State& state) { Decode(state, sms_cases::DeliverPlain()); }
void DeliverConcatenated(benchmark::State& state) { Decode(state, sms_cases::DeliverConcatenated()); }
void DeliverUcs2(benchmark::State& state) { Decode(state, sms_cases::DeliverUcs2()); }
BENCHMARK(Deliver);
BENCHMARK(DeliverConcatenated);
BENCHMARK(DeliverUcs2);

void Submit(benchmark::State& state)
{
    const ORV_GSM_SMS_OUT record = sms_cases::Submit();
    BYTE pdu[300];
    WORD length = 0;
    for (auto _ : state) {
        length = sizeof pdu;
        benchmark::DoNotOptimize(EncodeMOPDU(&record, pdu, &length));
    }
    if (length < 140) state.SkipWithError("not encoded");
}
BENCHMARK(Submit);

void CdmaWithFree(benchmark::State& state)
{
    static ORV_CDMA_SMS record;
    ORV_RCODE result = ORV_RCODE_FAILED;
    for (auto _ : state) {
        benchmark::DoNotOptimize(result = DecodeCompleteMTSms(sms_cases::kCdma, sizeof sms_cases::kCdma, &record));
        HeapBuffer::Free(record.pUserData);
    }
    if (result != ORV_RCODE_OK || record.uUserDataLen != 4) state.SkipWithError("not decoded");
}
BENCHMARK(CdmaWithFree);

constexpr Goal kGoals[] = {
    {"SMS-DELIVER, 160 septets", "Deliver", nullptr, Goal::Ns, 100},
    {"SMS-DELIVER, concatenated", "DeliverConcatenated", nullptr, Goal::Ns, 150},
    {"SMS-DELIVER, UCS2", "DeliverUcs2", nullptr, Goal::Ns, 100},
    {"SMS-SUBMIT, 160 septets", "Submit", nullptr, Goal::Ns, 100},
    {"CDMA message, with its block", "CdmaWithFree", nullptr, Goal::Ns, 300},
};

} // namespace

int main(int argc, char** argv)
{
    RefuseLog();
    return RunWithGoals(argc, argv, kGoals, sizeof kGoals / sizeof *kGoals);
}

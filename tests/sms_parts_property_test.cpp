// Any text arrives whole, however its parts come (RC_PARAMS="seed=…" repeats a run).
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <numeric>

#include "tests/support/sms_parts.h"

namespace {

using namespace sms_parts;

// A text of characters of one, two or any number of septets or units.
std::string GeneratedText(bool gsm_only)
{
    static const std::vector<std::string> kGsm = {"a", "@", "€", "{", "Δ", "é", "\n"};
    static const std::vector<std::string> kAny = {"a", "€", "ш", "漢", "😀", "\U0010FFFF"};
    const auto& set = gsm_only ? kGsm : kAny;
    std::string text;
    const auto choices = *rc::gen::container<std::vector<size_t>>(*rc::gen::inRange<size_t>(0, 1200),
                                                                  rc::gen::inRange<size_t>(0, set.size()));
    for (const size_t choice : choices)
        text += set[choice];
    return text;
}

RC_GTEST_PROP(SmsParts, AnyTextArrivesWhole, (bool gsm_only, bool wide, bool ucs2))
{
    const std::string text = GeneratedText(gsm_only);
    ORV_SMS_OPTIONS options = Options(*rc::gen::arbitrary<WORD>(), wide);
    options.bUcs2 = ucs2;
    const Records parts = Deliver(text, options);
    if (parts.size() == 1) {
        char out[1000];
        ULONG length = 0;
        RC_ASSERT(OrvGsmSmsToText(&parts[0], out, sizeof out, &length) == ORV_RCODE_OK);
        RC_ASSERT(std::string(out, length) == text);
        return;
    }
    std::vector<size_t> order(parts.size());
    std::iota(order.begin(), order.end(), size_t{0});
    for (size_t i = order.size(); i > 1; --i)
        std::swap(order[i - 1], order[*rc::gen::inRange<size_t>(0, i)]);
    Joiner joiner(static_cast<ULONG>(parts.size()));
    for (const size_t i : order)
        RC_ASSERT(joiner.Add(parts[i]) == ULONG(i == order.back() ? ORV_SMS_JOIN_COMPLETE : ORV_SMS_JOIN_ADDED));
    RC_ASSERT(joiner.Text() == text);
}

} // namespace

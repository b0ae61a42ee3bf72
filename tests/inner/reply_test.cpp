#include "at/reply.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/log_capture.h"

namespace {

using Lines = std::vector<std::string>;
constexpr const WCHAR* kLogSource = TXT(".\\ReplyTest.cpp");

TEST(AtReply, KeepsTheFirstFaultAndIgnoresLaterSteps)
{
    const struct {
        const char* name;
        const char* text;
        bool read;
        ULONG first, second;
        const char* rest;
        Lines log;
    } rows[] = {
        {"whole", "AT+X?\r\r\n+X: 1,2\r\n\r\nOK\r\n", true, 1, 2, "\r\nOK\r\n", {}},
        {"no echo", "\r\n+X: 1,2\r\n", true, 1, 2, "", {"MatchStringBeginning failed (echo ) "}},
        {"no line break in front", "AT+X?\r+X: 1 , 002 \r\n", true, 1, 2, "", {}},
        {"other prefix", "AT+X?\r\r\n+Y: 1,2\r\n", false, 0, 0, "+Y: 1,2\r\n", {"prefix"}},
        {"no first value", "AT+X?\r\r\n+X: ,2\r\n", false, 0, 0, ",2\r\n", {"first"}},
        {"no comma", "AT+X?\r\r\n+X: 1 2\r\n", false, 1, 0, "2\r\n", {"comma"}},
        {"no second value", "AT+X?\r\r\n+X: 1,\r\n", false, 1, 0, "\r\n", {"second"}},
        {"no line break behind", "AT+X?\r\r\n+X: 1,2", false, 1, 2, "", {"line break"}},
        {"nothing", "", false, 0, 0, "", {"MatchStringBeginning failed (echo ) ", "prefix"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        LogCapture log;
        Reply reply(kLogSource, row.text, "AT+X?\r");
        reply.SkipEcho();
        reply.OptionalLineBreak();
        reply.Expect("+X: ", "prefix");
        EXPECT_EQ(reply.Number("first"), row.first);
        reply.Expect(",", "comma");
        EXPECT_EQ(reply.Number("second"), row.second);
        reply.LineBreak("line break");
        EXPECT_EQ(reply.Finish(), row.read);
        EXPECT_STREQ(reply.Rest(), row.rest);
        EXPECT_EQ(log.Texts(), row.log);
    }
}

TEST(AtReply, LogsAFaultAsTheCallersOwn)
{
    LogCapture log;
    Reply reply(kLogSource, "", "");
    const int line = __LINE__ + 1;
    reply.Expect("OK", "100 %s of it");
    ASSERT_EQ(log.Count("100 %s of it"), 1) << "a text, not a format" << log.Dump();
    EXPECT_EQ(log.Records()[0].function, "LogC");
    EXPECT_EQ(log.Records()[0].module, "ReplyTest");
    EXPECT_EQ(log.Records()[0].line, line);
}

} // namespace

// The client's commands for device management and for the file of roaming indicators.

#include "tests/support/scratch_folder.h"
#include "tests/support/talvekctl.h"

#include <gtest/gtest.h>

namespace {

using namespace talvekctl;

class CtlManagement : public ::testing::Test {
protected:
    Result Run(const std::string& scenario, Texts arguments)
    {
        arguments.insert(arguments.begin(), {"--sim", "cdma"});
        return RunClient(arguments, {{"TALVEK_SIM_SCENARIO", m_folder.Write("setup.sim", scenario)}});
    }
    ScratchFolder m_folder;
};

TEST_F(CtlManagement, AnswersWithWhatTheModuleSays)
{
    const struct {
        const char* scenario; // what is set
        Texts arguments;
        const char* text;   // a part of the answer without --json
        const char* result; // members of the answer with it
    } rows[] = {
        // clang-format off
        {"omadm.prl-update 0", {"omadm", "features"}, "roaming list (PRL)  off",
         R"({"action": "get", "device_configuration": true, "prl_update": false})"},
        {"omadm.prl-update 0", {"omadm", "features", "--prl", "on", "--configuration", "off"}, "configuration       off",
         R"({"action": "set", "device_configuration": false, "prl_update": true})"},
        {"omadm.state 0", {"omadm", "start", "activation"}, "4 (activation)", R"({"type": 4, "type_name": "activation"})"},
        {"omadm.state 2\nset omadm.failure-reason 3\nset omadm.type 4", {"omadm", "status"}, "0x503 (ended: failed)",
         R"({"busy": false, "idle": false, "error": 1283, "type": 2, "type_name": "PRL update",
             "source": 3, "source_name": "network", "pause_seconds": 10})"},
        {"omadm.has-update 1", {"omadm", "start", "prl", "--watch"}, "State 0x000  connecting",
         R"({"type": 2, "type_name": "PRL update", "outcome": "done"})"},
        {"omadm.has-update 0", {"omadm", "start", "prl", "--watch"}, "State 0x502  ended: there is no update",
         R"({"outcome": "no update", "delivered": 3})"},
        {"omadm.limit-seconds 0", {"omadm", "start", "prl", "--watch"}, "Outcome  failed", R"({"outcome": "failed"})"},
        {"omadm.state 4", {"omadm", "cancel"}, "cancelled", R"({"cancelled": true})"},
        {"omadm.state 0", {"omadm", "alert"}, "No session", R"({"pending": false})"},
        {"omadm.pending-prl 7\nset omadm.pending-configuration 8", {"omadm", "alert"}, "2 (PRL update)",
         R"({"pending": true, "session_id": 7, "type": 2, "type_name": "PRL update"})"},
        {"omadm.pending-configuration 8", {"omadm", "answer", "reject"}, "2 (rejected)",
         R"({"session_id": 8, "type": 1, "type_name": "device configuration", "status": 2, "status_name": "rejected"})"},
        {"omadm.pending-prl 7", {"omadm", "answer", "accept", "--watch"}, "Answer   0 (accepted)\nState",
         R"({"session_id": 7, "type": 2, "status": 0, "status_name": "accepted", "outcome": "done"})"},
        {"omadm.pending-prl 7", {"omadm", "answer", "reject", "--watch"}, "Outcome  not begun",
         R"({"outcome": "not begun", "delivered": 0})"},
        {"omaex.begun 0", {"omaex", "settings", "--firmware", "off", "--auto-accept", "on"}, "firmware               off",
         R"({"action": "set", "provisioning": true, "prl_update": true, "firmware_update": false,
             "client_initiated": true, "network_initiated": true, "auto_accept": true})"},
        {"omaex.state 2\nset omaex.failure-reason 4", {"omaex", "status"}, "4 (retries used up)",
         R"({"state": 2, "state_name": "ended: failed", "type": 0, "type_name": "device configuration",
             "failure_reason": 4, "failure_reason_name": "retries used up", "retry_count": 0, "pause_seconds": 0,
             "remaining_seconds": 0, "package_size": 0})"},
        {"omaex.begun 1", {"omaex", "start", "firmware", "--watch"}, "The package waits for an answer: omaex answer accept",
         R"({"type": 6, "type_name": "firmware update", "state": 11, "delivered": 3})"},
        {"omaex.begun 1", {"omaex", "start", "firmware", "--accept", "--watch"}, "State 0 (done, or none)",
         R"({"state": 0, "delivered": 5})"},
        {"omaex.begun 1\nset omaex.alert 4", {"omaex", "answer", "accept"}, "yes", R"({"accepted": true})"},
        {"omaex.begun 1", {"omaex", "end"}, "ended", R"({"ended": true})"},
        {"eri.file 004142ff\nset eri.size 18", {"eri", "get", "--name", "eri_nam2"},
         "00000000  00 41 42 ff 00 00 00 00 00 00 00 00 00 00 00 00  .AB.............\n00000010  00 00",
         R"({"name": "eri_nam2", "size": 18, "data": "004142ff0000000000000000000000000000"})"},
        // clang-format on
    };
    for (const auto& row : rows) {
        Texts arguments = row.arguments;
        const std::string scenario =
            std::string("set omadm.step-ms 50\nset omaex.step-ms 50\nset ") + row.scenario + "\n";
        const Result text = Run(scenario, arguments);
        SCOPED_TRACE(text.output);
        EXPECT_EQ(text.status, 0) << text.error;
        EXPECT_TRUE(Contains(text.output, row.text)) << row.text;
        arguments.push_back("--json");
        const Json answer = Parse(Run(scenario, arguments).lines.back()), expected = Parse(row.result);
        for (const auto& [key, value] : expected.items())
            EXPECT_EQ(answer["result"][key], value) << key;
    }
}

TEST_F(CtlManagement, AnEriFileOfAnySizeIsWrittenToAFile)
{
    const std::string path = m_folder.Path("eri.bin");
    for (const size_t size : {0, 10240, 10241, 65535}) {
        const Result result = Run("set eri.size " + std::to_string(size) + "\n", {"eri", "get", path});
        EXPECT_EQ(result.status, 0) << result.error;
        EXPECT_EQ(m_folder.Read("eri.bin").size(), size);
    }
    EXPECT_EQ(m_folder.Read("eri.bin").substr(0, 5), std::string("\0\3\0\0\1", 5));
    EXPECT_TRUE(Contains(Run("set eri.size 65536\n", {"eri", "get", path}).error, "65536 octets: too many"));
    EXPECT_TRUE(Contains(Run("", {"eri", "get", m_folder.Path("no/folder")}).error, "cannot be written"));
    EXPECT_EQ(Run("", {"omadm", "answer", "maybe"}).status, 2);
    EXPECT_EQ(Run("", {"omadm", "answer", "accept"}).status, 1) << "nothing waits";
    EXPECT_EQ(Run("", {"omaex", "start", "firmware", "--accept"}).status, 2) << "without --watch";
}

} // namespace

// The client's commands for CDMA modules.

#include "tests/support/scratch_folder.h"
#include "tests/support/talvekctl.h"

#include <gtest/gtest.h>

using namespace talvekctl;

TEST(CtlCdma, AnswersWithWhatTheModuleSaysAndWithNullForWhatItDoesNot)
{
    const ScratchFolder folder;
    const std::string lacking =
        folder.Write("lacking.sim",
                     "set identity.esn \"\"\nset identity.meid \"\"\nset network.interfaces 1\nset signal.pairs none\n"
                     "set rf.instances none\nset time.stamp 4\nset time.source 9\nset package.model OM9000\n");
    const struct {
        Texts command;
        const char *result, *text; // parts of the answer with --json and without
        bool is_lacking = false;
    } rows[] = {
        {{"cdma", "identity"},
         R"("esn":2162542701,"meid":"A1000000000001","pesn":2162542701,"phone_number":"2025550123",)"
         R"("prl_version":50001,"home":{"sid":4107,"nid":65535},"carrier":{"id":5,"name":"Verizon"})",
         "5 (Verizon)"},
        {{"cdma", "identity"}, R"("esn":null,"meid":null,"pesn":null,)", "MEID                         -", true},
        {{"cdma", "radio"}, R"("cdma_rssi_dbm":-75,"hdr_rssi_dbm":-80,"band_class":0,"channel":384,)", "-80 dBm"},
        {{"cdma", "radio"},
         R"("cdma_rssi_dbm":null,"hdr_rssi_dbm":null,"band_class":null,"channel":null,)",
         "no signal",
         true},
        {{"cdma", "service"},
         R"({"service":2,"hdr_service":4,"roaming":0,"hdr_roaming":0,"base_station":6})",
         "6 (CDMA)"},
        {{"cdma", "service"}, R"("hdr_service":null,"roaming":0,"hdr_roaming":null,)", "not served there", true},
        {{"cdma", "time"}, R"("source":1,"source_name":"1xRTT"})", "2025-01-01T00:00:00."},
        {{"cdma", "time"}, R"({"time":"1980-01-06T00:00:00.0)", "9", true},
        {{"banner"}, R"({"name":"Verizon"})", "Verizon", true},
        {{"banner"}, R"({"name":null})", "Banner  -"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.command.back() + " " + row.text);
        const Environment environment = {{"TALVEK_SIM_SCENARIO", row.is_lacking ? lacking : ""}};
        Texts arguments = {"--sim", "cdma"};
        arguments.insert(arguments.end(), row.command.begin(), row.command.end());
        EXPECT_TRUE(Contains(RunClient(arguments, environment).output, row.text));
        arguments.push_back("--json");
        EXPECT_TRUE(Contains(RunClient(arguments, environment).output, row.result));
        arguments[1] = "umts";
        EXPECT_TRUE(Contains(RunClient(arguments, environment).output, R"("code":1)")) << "on another module";
    }
}

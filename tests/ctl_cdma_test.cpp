// The client's commands for CDMA modules.

#include "tests/support/scratch_folder.h"
#include "tests/support/talvekctl.h"

#include <gtest/gtest.h>

namespace {

using namespace talvekctl;

TEST(CtlCdma, AnswersWithWhatTheModuleSaysAndWithNullForWhatItDoesNot)
{
    const ScratchFolder folder;
    const std::string lacking = folder.Write(
        "lacking.sim",
        "set identity.esn \"\"\nset identity.meid \"\"\nset package.model OM9000\nset firmware.carrier 110\n"
        "set network.interfaces 1\nset signal.pairs none\nset rf.instances none\n"
        "set time.stamp 4\nset time.source 9\n");
    const std::string named = folder.Write("named.sim", "set package.model OM9000\nset firmware.carrier 108\n");
    const struct {
        const char *command, *scenario, *result; // as a part of the line
        const char* text;                        // as a part of the answer without --json
    } rows[] = {
        {"identity", "",
         R"("esn":2162542701,"meid":"A1000000000001","pesn":2162542701,"phone_number":"2025550123",)"
         R"("prl_version":50001,"home":{"sid":4107,"nid":65535},"carrier":{"id":5,"name":"Verizon"})",
         "5 (Verizon)"},
        {"identity", lacking.c_str(), R"("esn":null,"meid":null,"pesn":null,)", "MEID                         -"},
        {"radio", "", R"({"rssi_dbm":-75,"cdma_rssi_dbm":-75,"hdr_rssi_dbm":-80,"band_class":0,"channel":384,)",
         "-80 dBm"},
        {"radio", lacking.c_str(),
         R"({"rssi_dbm":null,"cdma_rssi_dbm":null,"hdr_rssi_dbm":null,"band_class":null,"channel":null,"hybrid":true})",
         "no signal"},
        {"service", "", R"({"service":2,"hdr_service":4,"roaming":0,"hdr_roaming":0,"base_station":6})", "6 (CDMA)"},
        {"service", lacking.c_str(), R"({"service":2,"hdr_service":null,"roaming":0,"hdr_roaming":null,)",
         "not served there"},
        {"time", "", R"("source":1,"source_name":"1xRTT"})", "2025-01-01T00:00:00."},
        {"time", lacking.c_str(), R"({"time":"1980-01-06T00:00:00.0)", "9"},
        {"banner", named.c_str(), R"({"name":"China Unicom"})", "China Unicom"},
        {"banner", "", R"({"name":null})", "Banner  -"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.command) + " " + row.scenario);
        Texts arguments = {"--sim", "cdma", "cdma", row.command};
        if (row.command == std::string("banner")) arguments.erase(arguments.begin() + 2);
        Environment environment;
        if (*row.scenario) environment = {{"TALVEK_SIM_SCENARIO", row.scenario}};
        const Result text = RunClient(arguments, environment);
        EXPECT_EQ(text.status, 0) << text.error;
        EXPECT_TRUE(Contains(text.output, row.text)) << text.output;
        arguments.push_back("--json");
        const Result json = RunClient(arguments, environment);
        EXPECT_TRUE(Contains(json.output, row.result)) << json.output;
        arguments[1] = "umts";
        EXPECT_TRUE(Contains(RunClient(arguments, environment).output, R"("code":1)")) << "on another module";
    }
}

} // namespace

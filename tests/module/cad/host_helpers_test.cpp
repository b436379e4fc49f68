#include "module/cad/group_list.h"
#include "module/cad/lisp_symbols.h"
#include "module/cad/loaded_modules.h"
#include "module/cad/progress_meter.h"

#include <gtest/gtest.h>

#include "module/cad/ads_owners.h"
#include "module/cad/call.h"
#include "tests/module/host_double.h"

using namespace norvane;

namespace {

TEST(HostHelpers, SymbolsAreReadAsText) {
    HostDoubleBackend backend;
    std::string value = "old";
    EXPECT_EQ(GetLispValue(value, "lspdir$"), 0);
    EXPECT_EQ(value, "");
    host().symbols["cc_lspdir$"] = "/second/";
    EXPECT_EQ(GetLispValue(value, "lspdir$"), 1);
    EXPECT_EQ(value, "/second/");
    SetLispString("lspdir$", "/first/");
    EXPECT_EQ(GetLispValue(value, "lspdir$"), 1);
    EXPECT_EQ(value, "/first/");
    EXPECT_EQ(GetLispValue(value, "usrdir$"), 0);
}

TEST(HostHelpers, AModuleIsFoundByItsBaseName) {
    HostDoubleBackend backend;
    EXPECT_EQ(IsArxLoaded("capture"), 0);
    host().modules = {"norvane_gis.arx", "capture.arx"};
    EXPECT_EQ(IsArxLoaded("CAPTURE"), 1);
    EXPECT_EQ(IsArxLoaded("capt"), 0);
}

TEST(HostHelpers, TheMeterIsForLongWalks) {
    HostDoubleBackend backend;
    auto walk = [](long total) {
        host().meter.clear();
        {
            ProgressMeter meter("Audit", total);
            for (long i = 0; i < total; ++i) meter.advance();
        }
        return host().meter;
    };
    EXPECT_EQ(walk(150), "");
    EXPECT_EQ(walk(151), "Audit 0-2 1 2 restored");
    EXPECT_EQ(walk(450), "Audit 0-4 1 2 3 4 restored");
}

TEST(HostHelpers, APointWithoutAHeightHasNone) {
    const ads_point at = {1, 2, 3};
    ResultBuffers list(acutBuildList(RTPOINT, at, RT3DPOINT, at, RTREAL, 4.0, 0));
    ArgumentReader arguments(list.get());
    ads_point flat, whole;
    ASSERT_TRUE(arguments.point(flat));
    ASSERT_TRUE(arguments.point(whole));
    EXPECT_FALSE(arguments.point(flat)) << "a number is no point, and stays";
    EXPECT_EQ(std::vector<double>(flat, flat + 3), (std::vector<double>{1, 2, 0}));
    EXPECT_EQ(std::vector<double>(whole, whole + 3), (std::vector<double>{1, 2, 3}));
    double number = 0;
    EXPECT_TRUE(arguments.real(number));
    EXPECT_EQ(number, 4.0);
}

TEST(HostHelpers, ItemsOfAListAreFoundByGroup) {
    ResultBuffers list(acutBuildList(RTDXF0, "INSERT", 8, "POLES", 1000, "x", 8, "y", 0));
    EXPECT_EQ(GroupText(list.get(), 8), "POLES");
    EXPECT_EQ(GroupText(FindResultBuffer(list.get(), 1000), 8), "y");
    EXPECT_EQ(FindResultBuffer(list.get(), 62), nullptr);
    EXPECT_EQ(GroupText(nullptr, 8), "");
}

}  // namespace

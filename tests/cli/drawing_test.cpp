// Drawings on the command line.
#include <gtest/gtest.h>

#include "cli/command_line.h"

namespace kv_tr::test {
namespace {

TEST_F(CommandLine, TransformsDrawingsAndLeavesNothingHalfWritten) {
    const std::string begin = "0\nSECTION\n2\nENTITIES\n0\nPOINT\n10\n1\n20\n2\n";
    const std::string end = "0\nENDSEC\n0\nEOF\n";
    const std::string transform = " --params shift.trp --type helmert ";
    WriteFile(work + "shift.trp", "100\n1\n0\n200\n0\n1\n");
    WriteFile(work + "a.dxf", begin + end);
    WriteFile(work + "solid.dxf", begin + "0\nREGION\n5\n1F\n" + end);
    WriteFile(work + "cut.dxf", begin);
    EXPECT_EQ(Run("kv_tr transform a.dxf --output b.DXF" + transform), 0) << err;
    EXPECT_EQ(Files()["b.DXF"], "0\nSECTION\n2\nENTITIES\n0\nPOINT\n10\n101\n20\n202\n" + end);
    EXPECT_EQ(err, "a.dxf: 1 entities were transformed\n");
    EXPECT_EQ(Run("kv_tr transform b.DXF --output c.dxf --inverse --axes ne" + transform), 0);
    EXPECT_EQ(Files()["c.dxf"], "0\nSECTION\n2\nENTITIES\n0\nPOINT\n10\n-99\n20\n102\n" + end);
    const auto before = Files();
    EXPECT_EQ(Run("kv_tr transform a.dxf --output b.DXF" + transform), 1);
    EXPECT_NE(err.find("--overwrite"), err.npos) << err;
    EXPECT_EQ(Run("kv_tr transform cut.dxf --output b.DXF --overwrite --keep-going" + transform),
              1);
    EXPECT_NE(err.find("cut.dxf, line 10: "), err.npos) << err;
    EXPECT_EQ(Run("kv_tr transform solid.dxf --output d.dxf" + transform), 1);
    EXPECT_NE(err.find("line 12: REGION 1."), err.npos) << err;
    EXPECT_EQ(Run("kv_tr transform a.dxf --output d.dxf --curve-tolerance 0" + transform), 2);
    EXPECT_TRUE(Files() == before);
    EXPECT_EQ(Run("kv_tr transform solid.dxf --output d.dxf --keep-going" + transform), 1);
    EXPECT_NE(Files()["d.dxf"].find("101\n20\n202\n0\nREGION\n5\n1F\n"), std::string::npos);
}

}  // namespace
}  // namespace kv_tr::test

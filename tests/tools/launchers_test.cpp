#include "tools/launchers.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

TEST(Launchers, ProgramsGetTheTextOneAsParameterAndFolder) {
    for (const ShellRequest& request : {calculator(), imageConverter("C:\\T\\")}) {
        EXPECT_EQ(request.operation, "Open");
        EXPECT_EQ(request.parameters, "1");
        EXPECT_EQ(request.workingFolder, "1");
        EXPECT_EQ(request.showState, 1);
    }
}

TEST(Launchers, OnlyTheCalculatorLiesOutsideTheProgramFolder) {
    EXPECT_EQ(calculator().file, "calc.exe");
    EXPECT_EQ(imageConverter("C:\\T\\").file, "C:\\T\\msximg.exe");
    EXPECT_EQ(imageConverter("C:\\T").file, "C:\\T\\msximg.exe");
    EXPECT_EQ(pascalReference("C:\\T\\"), "C:\\T\\tp3reference.chm");
}

} // namespace
} // namespace tavrel

// Runs the tests of the component in an apartment, as hosts with windows have one.
#include <gtest/gtest.h>

#include "com/com_client.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    return RUN_ALL_TESTS();
}

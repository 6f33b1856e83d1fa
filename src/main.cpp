// SPDX-License-Identifier: MIT
#include "driver.h"

int main(int argc, char *argv[])
{
    return runDriver(argc, argv);
}

// SPDX-License-Identifier: MIT
#include "status/statusprogram.h"

int main(int argc, char *argv[])
{
    return runStatus(argc, argv);
}

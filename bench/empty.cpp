// SPDX-License-Identifier: MIT
#include <QCoreApplication>

/// What every QtCore program costs before it does anything.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return 0;
}

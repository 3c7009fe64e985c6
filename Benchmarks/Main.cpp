#include "Benchmarks/Harness.h"

#include <cstdio>
#include <cstring>

/// "--only NAME" runs the comparisons whose name holds the text. Status 1: a limit was missed.
int main(int iArguments, char** ppArguments)
{
    if (iArguments == 3 && std::strcmp(ppArguments[1], "--only") == 0)
        bench::setFilter(ppArguments[2]);
    else if (iArguments != 1)
    {
        std::fprintf(stderr, "usage: Benchmarks [--only NAME]\n");
        return 2;
    }
    int iMissed = 0;
    for (const bench::Group fnGroup : bench::groups())
        iMissed += fnGroup();
    std::printf("%d limits missed\n", iMissed);
    return iMissed ? 1 : 0;
}

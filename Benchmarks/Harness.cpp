#include "Benchmarks/Harness.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

namespace bench
{

namespace
{

constexpr size_t s_uRounds = 9;
std::string s_sFilter;

std::vector<Group>& registered()
{
    static std::vector<Group> s_vecGroups;
    return s_vecGroups;
}

double measure(const std::function<void()>& fnBefore, const std::function<void()>& fnWork, int iRepeat)
{
    if (fnBefore)
        fnBefore();
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < iRepeat; ++i)
        fnWork();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count() /
           iRepeat;
}

double median(std::array<double, s_uRounds> arrTimes)
{
    std::ranges::sort(arrTimes);
    return arrTimes[s_uRounds / 2];
}

} // namespace

Registration::Registration(Group fnGroup)
{
    registered().push_back(fnGroup);
}

const std::vector<Group>& groups()
{
    return registered();
}

void setFilter(std::string sPart)
{
    s_sFilter = std::move(sPart);
}

bool isWanted(std::string_view sName)
{
    return sName.find(s_sFilter) != std::string_view::npos;
}

bool run(const Comparison& comparison)
{
    if (!isWanted(comparison.sName))
        return true;
    std::array<double, s_uRounds> arrFloor;
    std::array<double, s_uRounds> arrProduct;
    measure(comparison.fnBeforeFloor, comparison.fnFloor, 1); // warms caches and worker threads
    measure(comparison.fnBeforeProduct, comparison.fnProduct, 1);
    for (size_t i = 0; i < s_uRounds; ++i)
    {
        arrFloor[i] = measure(comparison.fnBeforeFloor, comparison.fnFloor, comparison.iRepeat);
        arrProduct[i] = measure(comparison.fnBeforeProduct, comparison.fnProduct, comparison.iRepeat);
    }
    const double fFloor = median(arrFloor);
    const double fProduct = median(arrProduct);
    const bool bEqual = !comparison.fnEqual || comparison.fnEqual();
    const bool bTooLong = comparison.fMaxMs > 0.0 && fProduct > comparison.fMaxMs;
    const bool bGood = bEqual && fProduct <= fFloor * comparison.fLimit && !bTooLong;
    std::printf("%-52s floor %9.4f ms  product %9.4f ms  ratio %6.3f  limit %5.3f  %s%s\n",
                comparison.sName.c_str(), fFloor, fProduct, fProduct / fFloor, comparison.fLimit,
                bGood ? "ok" : "MISSED", bEqual ? "" : " (RESULTS DIFFER)");
    if (comparison.fMaxMs > 0.0)
        std::printf("%-52s product %9.4f ms  limit %9.4f ms  %s\n", "", fProduct, comparison.fMaxMs,
                    bTooLong ? "MISSED" : "ok");
    std::fflush(stdout);
    return bGood;
}

} // namespace bench

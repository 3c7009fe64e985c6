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
    std::array<double, s_uRounds> arrFloor{};
    std::array<double, s_uRounds> arrProduct{};
    const auto floor = [&](int iRepeat)
    { return comparison.fnFloor ? measure(comparison.fnBeforeFloor, comparison.fnFloor, iRepeat) : 0.0; };
    const auto product = [&](int iRepeat)
    { return measure(comparison.fnBeforeProduct, comparison.fnProduct, iRepeat); };
    floor(1); // warms caches and worker threads
    product(1);
    for (size_t i = 0; i < s_uRounds; ++i)
    {
        arrFloor[i] = floor(comparison.iRepeat);
        arrProduct[i] = product(comparison.iRepeat);
    }
    return report(comparison, median(arrFloor), median(arrProduct),
                  !comparison.fnEqual || comparison.fnEqual());
}

bool report(const Comparison& comparison, double fFloor, double fProduct, bool bEqual)
{
    const bool bTooSlow = comparison.fLimit > 0.0 && fProduct > fFloor * comparison.fLimit;
    const bool bTooLong = comparison.fMaxMs > 0.0 && fProduct > comparison.fMaxMs;

    std::printf("%-52s ", comparison.sName.c_str());
    if (fFloor > 0.0)
        std::printf("floor %9.4f ms  product %9.4f ms  ratio %6.3f", fFloor, fProduct, fProduct / fFloor);
    else
        std::printf("%20s product %9.4f ms", "", fProduct);
    if (comparison.fLimit > 0.0)
        std::printf("  limit %5.3f", comparison.fLimit);
    if (comparison.fMaxMs > 0.0)
        std::printf("  limit %.0f ms", comparison.fMaxMs);
    const bool bGood = bEqual && !bTooSlow && !bTooLong;
    std::printf("  %s%s\n", bGood ? "ok" : "MISSED", bEqual ? "" : " (RESULTS DIFFER)");
    std::fflush(stdout);
    return bGood;
}

} // namespace bench

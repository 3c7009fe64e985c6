#pragma once // Compares the product with the least work that the machine needs for the same result.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace bench
{

/// One line of the table. Floor and product run in turn, nine times each; the medians count.
struct Comparison
{
    std::string sName;
    double fLimit = 0.0;             ///< product / floor at most; 0: none
    std::function<void()> fnFloor{}; ///< may be empty, for a limit in milliseconds alone
    std::function<void()> fnProduct{};
    std::function<bool()> fnEqual{};         ///< whether both gave the same; asked once, at the end
    std::function<void()> fnBeforeFloor{};   ///< untimed
    std::function<void()> fnBeforeProduct{}; ///< untimed
    int iRepeat = 1;                         ///< runs in one measurement, for short work
    double fMaxMs = 0.0;                     ///< the product's own limit in milliseconds; 0: none
};

/// Runs a comparison and prints milliseconds, ratio and limits. False: not equal, or a limit passed.
bool run(const Comparison& comparison);

/// The same for times that were measured elsewhere, in milliseconds.
bool report(const Comparison& comparison, double fFloor, double fProduct, bool bEqual);

/// Takes a name part from "--only"; an empty one lets all pass.
void setFilter(std::string sPart);
[[nodiscard]] bool isWanted(std::string_view sName);

/// Keeps a value from being optimised away.
template <class T>
void keep(const T& value)
{
    asm volatile("" : : "g"(&value) : "memory");
}

/// A group of comparisons; returns how many failed.
using Group = int (*)();
struct Registration
{
    explicit Registration(Group fnGroup);
};
[[nodiscard]] const std::vector<Group>& groups();

/// Loads the tile of a folder and saves it again, for a process of its own whose memory is
/// measured. The exit status.
int loadAndSave(const std::string& sFolder);

} // namespace bench

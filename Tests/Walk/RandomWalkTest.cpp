// Everything that is kept beside the entities stays true whatever a user does, in whatever order.

#include "Tests/Walk/WalkActions.h"
#include "Tests/Walk/WalkChecks.h"

#include <cstdlib>
#include <gtest/gtest.h>

using namespace tilebuilder;

namespace
{

#if defined(__SANITIZE_ADDRESS__)
constexpr bool s_bSanitized = true;
#elif defined(__has_feature)
constexpr bool s_bSanitized = __has_feature(address_sanitizer);
#else
constexpr bool s_bSanitized = false;
#endif
constexpr int s_iWalks = 4;
constexpr int s_iActions = (s_bSanitized ? 200 : 2000) / s_iWalks; ///< of one walk

struct RandomWalkTest : testing::TestWithParam<uint32_t>
{
};

TEST_P(RandomWalkTest, whatIsKeptAgreesWithWhatIsThere)
{
    WalkWorld walk(GetParam());
    walk.settle();
    WalkChecks checks(walk);
    checks.check("start");
    std::string sTrail;
    for (int i = 0; i < s_iActions; ++i)
    {
        const WalkAction& action = someWalkAction(walk);
        sTrail = (sTrail + "\n" + std::to_string(i) + " " + action.pName);
        action.fnDo(walk);
        walk.settle();
        checks.check(action.pName);
        ASSERT_FALSE(HasFailure()) << sTrail.substr(sTrail.size() - std::min<size_t>(sTrail.size(), 400));
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomWalkTest, testing::Range(1u, 1u + s_iWalks));

} // namespace

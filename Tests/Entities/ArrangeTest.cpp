#include "TileEditorCommon/Entities/EntityArrange.h"

#include "TileEditorCommon/Entities/EntityTypeI.h"

#include <cmath>
#include <glm/geometric.hpp>
#include <glm/trigonometric.hpp>
#include <gtest/gtest.h>

using namespace tilebuilder;

namespace
{

constexpr glm::vec3 s_x(1.0f, 0.0f, 0.0f);
constexpr glm::vec3 s_y(0.0f, 1.0f, 0.0f);
constexpr glm::vec3 s_z(0.0f, 0.0f, 1.0f);

ArrangedThing at(const glm::vec3& position, const glm::quat& rotation = {1.0f, 0.0f, 0.0f, 0.0f})
{
    ArrangedThing thing;
    thing.pivot.position = position;
    thing.pivot.rotation = rotation;
    thing.centre = position;
    thing.uScaleFlags = ScaleCan;
    return thing;
}

glm::quat turn(float fDegrees, const glm::vec3& axis)
{
    return glm::angleAxis(glm::radians(fDegrees), axis);
}

/// The same numbers over and over.
RandomSource numbers(std::vector<uint32_t> vecNumbers)
{
    return [vecNumbers = std::move(vecNumbers), uNext = size_t{0}]() mutable
    { return vecNumbers[uNext++ % vecNumbers.size()]; };
}

void expectNear(const glm::vec3& actual, const glm::vec3& expected, float fError = 1e-4f)
{
    EXPECT_LT(glm::length(actual - expected), fError)
        << actual.x << " " << actual.y << " " << actual.z << " instead of " << expected.x << " " << expected.y
        << " " << expected.z;
}

void expectSameTurn(const glm::quat& actual, const glm::quat& expected)
{
    EXPECT_GT(std::abs(glm::dot(actual, expected)), 0.99999f)
        << actual.x << " " << actual.y << " " << actual.z << " " << actual.w;
}

TEST(Arrange, resetKnowsPrefabsAndQuarterScales)
{
    std::vector<ArrangedThing> vecThings{at({1, 2, 3}, turn(33.0f, s_y)), at({1, 2, 3}, turn(33.0f, s_y))};
    vecThings[0].uScaleFlags = ScaleCan | ScaleQuarter;
    vecThings[1].bPrefab = true;
    arrange::resetRotation(vecThings);
    arrange::resetScale(vecThings);
    EXPECT_EQ(vecThings[0].pivot.rotation, glm::quat(0.70710677f, 0.70710677f, 0.0f, 0.0f));
    EXPECT_EQ(vecThings[1].pivot.rotation, glm::quat(1.0f, 0.0f, 0.0f, 0.0f));
    EXPECT_EQ(vecThings[0].pivot.scale, glm::vec3(0.25f));
    EXPECT_EQ(vecThings[1].pivot.scale, glm::vec3(1.0f));
    expectNear(arrange::upright() * s_y, s_z); // a model's up
}

TEST(Arrange, eulerAnglesComeBackAlsoStraightUp)
{
    for (const glm::vec3& degrees :
         {glm::vec3(90.0f, 0.0f, 37.0f), glm::vec3(-170.0f, 45.0f, 179.0f), glm::vec3(10.0f, 89.9f, -20.0f),
          glm::vec3(15.0f, 90.0f, 40.0f), glm::vec3(15.0f, -90.0f, 40.0f), glm::vec3(0.0f)})
    {
        const glm::quat rotation(glm::radians(degrees));
        expectSameTurn(glm::quat(arrange::eulerAngles(rotation)), rotation);
    }
    expectNear(glm::degrees(arrange::eulerAngles(arrange::upright())), {90.0f, 0.0f, 0.0f}, 1e-3f);
}

TEST(Arrange, roundsToTheNearestMultiples)
{
    std::vector<ArrangedThing> vecThings{at({1.13f, -0.3f, 0.62f})};
    Transform& pivot = vecThings[0].pivot;
    arrange::roundPosition(vecThings, 4.0f);
    EXPECT_EQ(pivot.position, glm::vec3(1.25f, -0.25f, 0.5f));
    arrange::roundPosition(vecThings, 2.0f);
    EXPECT_EQ(pivot.position, glm::vec3(1.5f, -0.5f, 0.5f)); // halves go away from zero
    arrange::roundPosition(vecThings, 1.0f);
    EXPECT_EQ(pivot.position, glm::vec3(2.0f, -1.0f, 1.0f));

    // An upright model that was turned about the world's Z stays upright.
    pivot.rotation = turn(57.0f, s_z) * arrange::upright();
    arrange::roundRotation(vecThings, 10.0f);
    expectSameTurn(pivot.rotation, turn(60.0f, s_z) * arrange::upright());
    arrange::roundRotation(vecThings, 90.0f);
    expectSameTurn(pivot.rotation, turn(90.0f, s_z) * arrange::upright());

    pivot.scale = {0.26f, 0.238f, 1.0f};
    arrange::roundScale(vecThings);
    expectNear(pivot.scale, {0.25f, 0.25f, 1.0f});
}

TEST(Arrange, randomTurnsKeepTheirAxis)
{
    std::vector<ArrangedThing> vecThings{at({0, 0, 0})};
    const glm::quat& rotation = vecThings[0].pivot.rotation;
    // A quarter of the numbers is a quarter of a turn, backwards.
    arrange::randomTurn(vecThings, 1, numbers({8192}));
    expectNear(rotation * s_y, s_z); // about its own up it stays upright
    expectNear(rotation * s_x, -s_y, 1e-3f);
    arrange::randomTurn(vecThings, 0, numbers({8192}));
    expectNear(rotation * s_x, s_x);
    arrange::randomTurn(vecThings, 1, numbers({0}));
    expectSameTurn(rotation, arrange::upright());
    arrange::randomRotation(vecThings, numbers({8192, 0, 16384}));
    expectSameTurn(rotation, glm::quat(glm::radians(glm::vec3(-90.0028f, 0.0f, -180.0055f))));
}

TEST(Arrange, tiltGoesAndTheHeadingStays)
{
    std::vector<ArrangedThing> vecThings{
        at({0, 0, 0}, turn(30.0f, s_z) * turn(50.0f, s_x) * turn(20.0f, s_y)),
        at({0, 0, 0}, turn(90.0f, s_x))}; // looks straight up
    arrange::resetTilt(vecThings);
    expectSameTurn(vecThings[0].pivot.rotation, turn(30.0f, s_z));
    expectNear(vecThings[1].pivot.rotation * s_z, s_z);
    expectNear(vecThings[1].pivot.rotation * s_x, s_x);
    arrange::clearRotation(vecThings);
    EXPECT_EQ(vecThings[0].pivot.rotation, glm::quat(1.0f, 0.0f, 0.0f, 0.0f));
}

TEST(Arrange, lookAtTurnsAllButTheActiveOne)
{
    const glm::quat odd = turn(77.0f, s_y);
    std::vector<ArrangedThing> vecThings{at({5, 0, 0}, odd), at({10, 10, 0}, odd), at({10, 0, 9}, odd),
                                         at({10, 0, 0}, odd)};
    vecThings[0].pivot.position = {10, 0, 0}; // where the active one stands
    arrange::lookAtLast(vecThings);
    EXPECT_EQ(vecThings[0].pivot.rotation, odd);
    EXPECT_EQ(vecThings[3].pivot.rotation, odd);
    expectNear(vecThings[1].pivot.rotation * s_y, -s_y);
    expectNear(vecThings[1].pivot.rotation * s_z, s_z);
    expectNear(vecThings[2].pivot.rotation * s_y, -s_z); // straight down has no right of its own
    std::vector<ArrangedThing> vecOne{at({5, 0, 0}, odd)};
    arrange::lookAtLast(vecOne);
    EXPECT_EQ(vecOne[0].pivot.rotation, odd);
}

TEST(Arrange, tangentGoesOnWhereTheFirstTwoLead)
{
    std::vector<ArrangedThing> vecThings{at({1, 0, 0}, turn(10.0f, s_z)), at({3, 1, 0}, turn(30.0f, s_z)),
                                         at({99, 99, 99}), at({7, 7, 7})};
    arrange::continueTangent(vecThings);
    expectNear(vecThings[2].pivot.position, {5.0f, 2.0f, 0.0f});
    expectSameTurn(vecThings[2].pivot.rotation, turn(50.0f, s_z));
    expectNear(vecThings[3].pivot.position, {7.0f, 7.0f, 7.0f});
}

TEST(Arrange, groupsMoveByTheirMeanAndCentresByTheirs)
{
    std::vector<ArrangedThing> vecThings{at({0, 0, 0}), at({4, 2, 0})};
    arrange::moveGroupTo(vecThings, {10, 10, 10});
    expectNear(vecThings[0].pivot.position, {8.0f, 9.0f, 10.0f});
    expectNear(vecThings[1].pivot.position, {12.0f, 11.0f, 10.0f});
    arrange::moveCoordinate(vecThings, 1, -3.0f);
    expectNear(vecThings[1].pivot.position, {12.0f, -3.0f, 10.0f});
    arrange::moveLastToOrigin(vecThings);
    expectNear(vecThings[0].pivot.position, {-4.0f, 0.0f, 0.0f});
    EXPECT_EQ(vecThings[1].pivot.position, glm::vec3(0.0f));

    vecThings[0].centre = {2, 0, 6};
    vecThings[1].centre = {4, 0, 2};
    arrange::gather(vecThings);
    for (const ArrangedThing& thing : vecThings)
        EXPECT_EQ(thing.pivot.position, glm::vec3(3.0f, 0.0f, 4.0f));
    std::vector<ArrangedThing> vecOne{at({1, 2, 3})};
    vecOne[0].centre = glm::vec3(50.0f);
    arrange::gather(vecOne);
    EXPECT_EQ(vecOne[0].pivot.position, glm::vec3(1.0f, 2.0f, 3.0f)) << "one alone stays";
}

TEST(Arrange, scattersWithinTheGridsReach)
{
    std::vector<ArrangedThing> vecThings{at({0, 0, 0})};
    const glm::vec3& position = vecThings[0].pivot.position;
    const glm::vec3 middle(10.0f, 20.0f, 5.0f);
    arrange::scatterOnDisc(vecThings, middle, 16.0f, numbers({0, 32767}));
    expectNear(position, {26.0f, 20.0f, 5.0f});
    arrange::scatterOnDisc(vecThings, middle, 16.0f, numbers({8192, 16383}));
    expectNear(position, {10.0f, 28.0f, 5.0f}, 2e-3f);

    arrange::scatterInBall(vecThings, middle, 16.0f, numbers({32767, 32767, 0}));
    expectNear(position, {10.0f, 20.0f, 21.0f}, 2e-3f); // straight up
    arrange::scatterInBall(vecThings, middle, 16.0f, numbers({4096, 16384, 0}));
    expectNear(position, {18.0f, 20.0f, 5.0f}, 2e-3f); // an eighth of the volume is half of the way
    arrange::scatterInBall(vecThings, middle, 16.0f, numbers({32767, 16384, 32767}));
    expectNear(position, {10.0f, 36.0f, 5.0f}, 3e-3f);
    for (uint32_t u = 0; u < 200; ++u)
    {
        arrange::scatterInBall(vecThings, middle, 16.0f, numbers({u * 163, u * 911 % 32768, u * 77}));
        EXPECT_LT(glm::length(position - middle), 16.001f);
    }
}

TEST(Arrange, dropsToTheGroundAndAlignsWithIt)
{
    const glm::vec3 slope = glm::normalize(glm::vec3(0.0f, -1.0f, 1.0f)); // rises along +Y
    const auto ground = [&](const glm::vec3& from, const glm::vec3& to) -> std::optional<GroundSpot>
    {
        EXPECT_EQ(from, glm::vec3(to.x, to.y, 10000.0f));
        EXPECT_EQ(to.z, -10000.0f);
        if (from.x < 0.0f)
            return std::nullopt;
        return GroundSpot{{from.x, from.y, from.y}, slope * 3.0f};
    };
    const glm::quat heading = turn(90.0f, s_z);
    std::vector<ArrangedThing> vecThings{at({5, 7, 90}, heading), at({-1, 7, 90}, heading),
                                         at({5, 7, 90}, heading * arrange::upright()), at({5, 7, 90})};
    vecThings[2].bUprightModel = true;
    vecThings[3].pivot.rotation = glm::quat(0.0f, 0.0f, 1.0f, 0.0f); // upside down
    arrange::dropToGround(vecThings, ground, false);
    EXPECT_EQ(vecThings[0].pivot.position, glm::vec3(5.0f, 7.0f, 7.0f));
    EXPECT_EQ(vecThings[1].pivot.position, glm::vec3(-1.0f, 7.0f, 90.0f)) << "no ground there";
    EXPECT_EQ(vecThings[0].pivot.rotation, heading);

    arrange::dropToGround(vecThings, ground, true);
    EXPECT_EQ(vecThings[1].pivot.rotation, heading);
    expectNear(vecThings[0].pivot.rotation * s_z, slope);
    expectNear(vecThings[0].pivot.rotation * s_y, -s_x); // its heading lies in the slope
    expectNear(vecThings[3].pivot.rotation * s_z, slope);
    // A model with Y up still stands, and its right is where it was.
    expectNear(vecThings[2].pivot.rotation * s_y, slope);
    expectNear(vecThings[2].pivot.rotation * -s_z, -s_x);
}

TEST(Arrange, inBetweenSpreadsWhatIsAsked)
{
    std::vector<ArrangedThing> vecThings{at({0, 0, 0}), at({50, 50, 50}, turn(70.0f, s_x)),
                                         at({4, 8, 0}, turn(80.0f, s_z))};
    vecThings[2].pivot.scale = glm::vec3(3.0f);
    const auto vecBefore = vecThings;
    arrange::spreadInBetween(vecThings, arrange::Spread::Position);
    expectNear(vecThings[1].pivot.position, {2.0f, 4.0f, 0.0f});
    EXPECT_EQ(vecThings[1].pivot.rotation, vecBefore[1].pivot.rotation);
    EXPECT_EQ(vecThings[1].pivot.scale, glm::vec3(1.0f));
    arrange::spreadInBetween(vecThings, arrange::Spread::All);
    expectSameTurn(vecThings[1].pivot.rotation, turn(40.0f, s_z));
    expectNear(vecThings[1].pivot.scale, glm::vec3(2.0f));
    EXPECT_EQ(vecThings[0].pivot, vecBefore[0].pivot);
    EXPECT_EQ(vecThings[2].pivot, vecBefore[2].pivot);
    std::vector<ArrangedThing> vecTwo{at({0, 0, 0}), at({4, 8, 0})};
    arrange::spreadInBetween(vecTwo, arrange::Spread::All);
    EXPECT_EQ(vecTwo[1].pivot.position, glm::vec3(4.0f, 8.0f, 0.0f));
}

TEST(Arrange, pastedScalesFollowTheFlags)
{
    Transform copied;
    copied.scale = {2.0f, 3.0f, 4.0f};
    const auto pasted = [&](int iFlags)
    {
        std::vector<ArrangedThing> vecThings{at({0, 0, 0})};
        vecThings[0].pivot.scale = glm::vec3(7.0f);
        vecThings[0].uScaleFlags = static_cast<uint8_t>(iFlags);
        arrange::pasteScale(vecThings, copied);
        return vecThings[0].pivot.scale;
    };
    EXPECT_EQ(pasted(ScaleQuarter | ScaleUniform), glm::vec3(7.0f));
    EXPECT_EQ(pasted(ScaleCan), glm::vec3(2.0f, 3.0f, 4.0f));
    EXPECT_EQ(pasted(ScaleCan | ScaleQuarter), glm::vec3(0.5f, 0.75f, 1.0f));
    EXPECT_EQ(pasted(ScaleCan | ScaleUniform), glm::vec3(2.0f));
    EXPECT_EQ(pasted(ScaleCan | ScaleKeepY), glm::vec3(2.0f, 7.0f, 4.0f));
    EXPECT_EQ(pasted(ScaleCan | ScaleUniform | ScaleQuarter), glm::vec3(0.5f));
}

} // namespace

#include "KestrelCommon/Core/EulerAngles.h"

#include <gtest/gtest.h>

namespace
{

void expectSameTurn(const EulerAngles& degrees)
{
    const glm::quat rotation = rotationFrom(degrees);
    const float fSame = std::abs(glm::dot(rotation, rotationFrom(eulerAngles(rotation))));
    EXPECT_GT(fSame, 0.99999f) << degrees[0] << " " << degrees[1] << " " << degrees[2];
}

TEST(EulerAngles, turnsComeBackAlsoWhereTwoAxesMeet)
{
    for (int x = -180; x <= 180; x += 45)
        for (int y = -180; y <= 180; y += 45)
            for (int z = -170; z <= 190; z += 40)
                expectSameTurn({static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)});
}

TEST(EulerAngles, anglesAreThoseThatPeopleMean)
{
    // Upright models are turned a quarter around X.
    const EulerAngles upright = eulerAngles(glm::quat(0.70710677f, 0.70710677f, 0.0f, 0.0f));
    EXPECT_NEAR(upright[0], 90.0f, 1e-3f);
    EXPECT_NEAR(upright[1], 0.0f, 1e-3f);
    EXPECT_NEAR(upright[2], 0.0f, 1e-3f);
    // A turn around the world's Z goes on top of it.
    const EulerAngles turned = eulerAngles(rotationFrom({90.0f, 0.0f, 30.0f}));
    EXPECT_NEAR(turned[0], 90.0f, 1e-3f);
    EXPECT_NEAR(turned[2], 30.0f, 1e-3f);
    const glm::vec3 east = rotationFrom({0.0f, 0.0f, 90.0f}) * glm::vec3(1.0f, 0.0f, 0.0f);
    EXPECT_NEAR(east.y, 1.0f, 1e-5f);
}

} // namespace
